#pragma once

#include "XPError.h"

#include <QImage>
#include <QObject>
#include <functional>
#include <memory>

// Slow work of the scan window, one piece after the other on a thread of its own, answered on the
// main thread. What was asked for is finished before the end; nobody is told any more then.
// Threads: main.
class XPPageLoader : public QObject
{
    Q_OBJECT

public:
    XPPageLoader();
    ~XPPageLoader() override;

    // A page's picture, no larger than a screen needs.
    void load(const QString &path, std::function<void(const QImage &)> done);
    // Any other work.
    void run(std::function<void()> work, std::function<void()> done);

    static constexpr int screenSide = 1600;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

#pragma once

#include "XPError.h"
#include "XPMainThread.h"
#include "XPMutex.h"
#include "XPProgress.h"

#include <QObject>
#include <QTimer>
#include <functional>
#include <optional>
#include <vector>

// Opens documents with other programs. To start one takes long enough that hundreds would freeze
// the window: they are started one after the other between the window's own work, shown and
// stopped as other long work. The first that fails ends it: the next would for the same reason.
// Threads: main. Goes when it is done.
class KPOpening : public QObject
{
    Q_OBJECT

public:
    struct Start
    {
        QString name; // of the document, for people
        std::function<std::optional<XPError>()> open;
    };
    // The first is started at once.
    static void run(std::vector<Start> starts, QObject *parent) XP_REQUIRES(xpGuiThread);
    ~KPOpening() override;

private:
    KPOpening(std::vector<Start> starts, QObject *parent);
    void next() XP_REQUIRES(xpGuiThread);
    void finish();

    const std::vector<Start> m_starts;
    const XPProgress::Task m_task;
    QTimer m_timer;
};

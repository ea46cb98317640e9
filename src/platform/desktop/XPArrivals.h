#pragma once

#include "XPFileDescriptor.h"

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>
#include <memory>

// Tells when other programs put files into one folder: once each is written and closed, or was
// moved there, and nothing more came for a moment. By inotify(7). Threads: main.
class XPArrivals : public QObject
{
    Q_OBJECT

public:
    // A folder that cannot be watched is never told of.
    explicit XPArrivals(const QString &folder, QObject *parent = nullptr);

Q_SIGNALS:
    void arrived();

private:
    void read();

    XPFileDescriptor m_notices;
    std::unique_ptr<QSocketNotifier> m_notifier;
    QTimer m_quiet;
};

#pragma once

#include <QObject>

class QSocketNotifier;

// Turns SIGINT, SIGTERM and SIGHUP into something to be asked for, so that work ends at a clean
// place. Made before any thread is started: threads take over which signals wait.
// Threads: main.
class KPInterrupt : public QObject
{
    Q_OBJECT

public:
    KPInterrupt();
    ~KPInterrupt() override;

    // Whether there was one; without an event loop too.
    bool happened();

Q_SIGNALS:
    void interrupted(); // by the event loop

private:
    const int m_descriptor;
    bool m_happened = false;
};

#pragma once

#include <QObject>
#include <QString>

class QProcess;

// Whether the system's packages hold a newer version of the program. Only the package manager's own
// lists are asked, which it brings up to date by itself: nothing goes over the network.
// Threads: main. It deletes itself when it has answered.
class KPUpdates : public QObject
{
    Q_OBJECT

public:
    struct Answer
    {
        QString installed; // empty: the program does not come from a package
        QString candidate;
    };

    // Asks, and shows what came of it, with a button that opens the desktop's updates where there
    // is a program for them.
    static void check();

    // Reads what `apt-cache policy` prints.
    static Answer read(const QByteArray &output);

private:
    explicit KPUpdates();
    void answered(const Answer &answer);

    QProcess *m_process;
};

#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QJsonDocument>
#include <sys/types.h>

// One run of the built murnctl. Words and outputs are bytes: QProcess would decode them.
class Murnctl
{
public:
    // Starts it in `folder`, reading nothing, writing to pipes.
    Murnctl(const QByteArrayList &words, const QString &folder);
    ~Murnctl();
    Murnctl(const Murnctl &) = delete;
    Murnctl &operator=(const Murnctl &) = delete;

    void send(int signal);
    // SIGINT, once it waits for that.
    void interrupt();
    // Waits for that line of standard output; false at the end of the output.
    bool waitForLine(const QByteArray &line);
    // Closes the reading end, as `| head` does.
    void stopReading();
    // Waits for the end: the exit status, or minus the signal that ended it.
    int wait();

    QByteArray out; // complete after wait()
    QByteArray err;

private:
    bool readMore();

    pid_t m_process = -1;
    int m_out = -1;
    int m_err = -1;
};

struct MurnctlResult
{
    int status;
    QByteArray out;
    QByteArray err;

    QByteArrayList lines() const; // of the output, sorted
    QJsonDocument json() const;   // null unless it is valid
};

MurnctlResult murnctl(const QByteArrayList &words, const QString &folder);

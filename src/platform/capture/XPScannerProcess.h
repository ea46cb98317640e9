#pragma once

#include <QJsonObject>
#include <QObject>
#include <QProcess>
#include <QTimer>
#include <chrono>

// The process that talks to scanners: started when something is asked of it, replaced when it dies
// or keeps silent for too long.
//
// Requests and answers are in docs/formats.md ("Messages of the scanner's process").
// Threads: main.
class XPScannerProcess : public QObject
{
    Q_OBJECT

public:
    // `program`: empty is ours, where it is installed.
    explicit XPScannerProcess(const QByteArray &program = {}, QObject *parent = nullptr);
    ~XPScannerProcess() override;

    // `patience`: how long nothing may be heard before the process is given up.
    void ask(const QJsonObject &request, std::chrono::milliseconds patience);
    // Asks the page that is read to stop. Its failure says so soon, or the process is given up.
    void cancel();
    // Ends it, and with it whatever it holds open.
    void end();
    bool isRunning() const { return m_process.state() != QProcess::NotRunning; }

Q_SIGNALS:
    void answered(const QJsonObject &answer);
    // It died, could not be started, or was given up; what was asked is not answered any more.
    void lost(const QString &reason);

private:
    void start();
    void read();
    void finished();
    void write(const QJsonObject &request);
    void loseIt(const QString &reason);

    const QString m_program;
    QProcess m_process;
    QTimer m_silence;
    std::chrono::milliseconds m_patience{0};
    bool m_isWaiting = false;
};

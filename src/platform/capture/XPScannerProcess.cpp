#include "XPScannerProcess.h"

#include "XPPath.h"
#include "XPPrograms.h"

#include <QFile>
#include <QJsonDocument>
#include <csignal>

using namespace std::chrono_literals;

static constexpr auto patienceAfterCancel = 5s; // then a driver hangs
static constexpr auto patienceAtEnd = 500ms;
static constexpr qint64 longestLine = 1 << 20;

XPScannerProcess::XPScannerProcess(const QByteArray &program, QObject *parent)
    : QObject(parent),
      m_program(XPPath::decode(program.isEmpty() ? XPPrograms::helper("murn-scanner") : program))
{
    m_silence.setSingleShot(true);
    connect(&m_silence, &QTimer::timeout, this, [this] { loseIt(qtTrId("KPScannerSilent")); });
    m_process.setProcessChannelMode(QProcess::SeparateChannels);
    m_process.setStandardErrorFile(QProcess::nullDevice());
    // An interrupt on the terminal is ours to answer: the scanner is stopped in good order.
    m_process.setChildProcessModifier([] { ::signal(SIGINT, SIG_IGN); });
    connect(&m_process, &QProcess::readyReadStandardOutput, this, &XPScannerProcess::read);
    connect(&m_process, &QProcess::finished, this, &XPScannerProcess::finished);
    connect(&m_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            loseIt(m_process.errorString());
    });
}

XPScannerProcess::~XPScannerProcess()
{
    disconnect(&m_process, nullptr, this, nullptr);
    end();
}

void XPScannerProcess::start()
{
    m_process.start(m_program, QStringList());
}

void XPScannerProcess::ask(const QJsonObject &request, std::chrono::milliseconds patience)
{
    if (!isRunning())
        start();
    if (!isRunning())
        return; // lost() said so
    m_isWaiting = true;
    m_patience = patience;
    m_silence.start(patience);
    write(request);
}

void XPScannerProcess::write(const QJsonObject &request)
{
    m_process.write(QJsonDocument(request).toJson(QJsonDocument::Compact) + '\n');
}

void XPScannerProcess::cancel()
{
    if (!isRunning() || !m_isWaiting)
        return;
    write({{QStringLiteral("do"), QStringLiteral("cancel")}});
    m_patience = patienceAfterCancel;
    m_silence.start(m_patience);
}

void XPScannerProcess::end()
{
    m_silence.stop();
    m_isWaiting = false;
    if (!isRunning())
        return;
    // Its input ends, so it closes the scanner; a driver that hangs is not waited for.
    m_process.closeWriteChannel();
    if (!m_process.waitForFinished(static_cast<int>(patienceAtEnd.count()))) {
        m_process.kill();
        m_process.waitForFinished();
    }
}

void XPScannerProcess::read()
{
    while (m_process.canReadLine()) {
        const QByteArray line = m_process.readLine(longestLine);
        const QJsonObject answer = QJsonDocument::fromJson(line).object();
        const QString event = answer.value(QStringLiteral("event")).toString();
        if (event.isEmpty())
            continue;
        m_isWaiting = event == u"progress";
        if (m_isWaiting)
            m_silence.start(m_patience);
        else
            m_silence.stop();
        Q_EMIT answered(answer);
    }
    if (m_process.bytesAvailable() > longestLine)
        loseIt(qtTrId("KPScannerSilent"));
}

void XPScannerProcess::finished()
{
    if (m_isWaiting)
        loseIt(qtTrId("KPScannerDied"));
}

void XPScannerProcess::loseIt(const QString &reason)
{
    m_silence.stop();
    m_isWaiting = false;
    if (isRunning()) {
        const QSignalBlocker quiet(m_process);
        m_process.kill();
        m_process.waitForFinished();
    }
    Q_EMIT lost(reason);
}

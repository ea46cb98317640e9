#include "XPUserService.h"

#include <QCoreApplication>
#include <QProcess>
#include <utility>

XPUserService::XPUserService(const QString &unit, QObject *parent) : QObject(parent), m_unit(unit)
{
    refresh();
}

// The program's, so that what was asked is done when nobody looks any more.
void XPUserService::run(const QStringList &arguments, const Done &done)
{
    m_process = new QProcess(QCoreApplication::instance());
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("SYSTEMD_COLORS"), QStringLiteral("0"));
    m_process->setProcessEnvironment(environment);
    const auto end = [this, done](bool worked) {
        QProcess *process = std::exchange(m_process, nullptr);
        if (process == nullptr)
            return;
        const QByteArray output = process->readAllStandardOutput();
        done(worked, output.isEmpty() ? process->readAllStandardError() : output);
        if (m_wanted && !m_process)
            setOn(*std::exchange(m_wanted, {}));
    };
    connect(m_process, &QProcess::finished, m_process, &QObject::deleteLater);
    connect(m_process, &QProcess::finished, this, [end](int status, QProcess::ExitStatus how) {
        end(status == 0 && how == QProcess::NormalExit);
    });
    connect(m_process, &QProcess::errorOccurred, this, [this, end](QProcess::ProcessError error) {
        if (error != QProcess::FailedToStart)
            return;
        m_process->deleteLater();
        end(false);
    });
    m_process->start(QStringLiteral("systemctl"),
                     QStringList{QStringLiteral("--user"), QStringLiteral("--no-pager")} +
                         arguments + QStringList{m_unit},
                     QIODevice::ReadOnly);
}

void XPUserService::refresh()
{
    if (m_process)
        return;
    run({QStringLiteral("is-enabled")}, [this](bool, const QByteArray &output) {
        const QByteArray answer = output.trimmed();
        m_state = answer == "enabled"    ? State::On
                  : answer == "disabled" ? State::Off
                                         : State::Absent;
        Q_EMIT changed();
    });
}

void XPUserService::setOn(bool on)
{
    if (m_process) {
        m_wanted = on;
        return;
    }
    run({on ? QStringLiteral("enable") : QStringLiteral("disable"), QStringLiteral("--now")},
        [this](bool worked, const QByteArray &output) {
            if (!worked)
                Q_EMIT failed(QString::fromUtf8(output).trimmed());
            refresh();
        });
}

#include "KPUpdates.h"

#include "XPPrompts.h"

#include <QCoreApplication>
#include <QProcess>
#include <QStandardPaths>

namespace {

struct Updater
{
    const char *program;
    QStringList arguments;
};

} // namespace

// The programs of the desktops that install updates, the first that is there.
static std::optional<Updater> findUpdater()
{
    const Updater known[] = {
        {"gnome-software", {QStringLiteral("--mode=updates")}},
        {"plasma-discover", {QStringLiteral("--mode"), QStringLiteral("update")}},
        {"mintupdate", {}},
        {"update-manager", {}}};
    for (const Updater &updater : known) {
        if (!QStandardPaths::findExecutable(QString::fromLatin1(updater.program)).isEmpty())
            return updater;
    }
    return {};
}

KPUpdates::KPUpdates() : QObject(QCoreApplication::instance()), m_process(new QProcess(this))
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));
    m_process->setProcessEnvironment(environment);
    connect(m_process, &QProcess::finished, this,
            [this] { answered(read(m_process->readAllStandardOutput())); });
    connect(m_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            answered({});
    });
    m_process->start(QStringLiteral("apt-cache"),
                     {QStringLiteral("policy"), QStringLiteral("murn")}, QIODevice::ReadOnly);
}

void KPUpdates::check()
{
    new KPUpdates; // the application's until it has answered
}

KPUpdates::Answer KPUpdates::read(const QByteArray &output)
{
    Answer answer;
    for (const QByteArray &line : output.split('\n')) {
        const QByteArray trimmed = line.trimmed();
        const auto value = [&](const char *name) {
            const QByteArray text = trimmed.mid(static_cast<qsizetype>(qstrlen(name))).trimmed();
            return text == "(none)" ? QString() : QString::fromUtf8(text);
        };
        if (trimmed.startsWith("Installed:"))
            answer.installed = value("Installed:");
        else if (trimmed.startsWith("Candidate:"))
            answer.candidate = value("Candidate:");
    }
    return answer;
}

void KPUpdates::answered(const Answer &answer)
{
    deleteLater();
    XPPrompts::Question question;
    const auto updater = findUpdater();
    if (answer.installed.isEmpty()) {
        question.title = qtTrId("KPUpdatesNoPackage");
        question.text =
            qtTrId("KPUpdatesNoPackageText").arg(QCoreApplication::applicationVersion());
    } else if (answer.candidate.isEmpty() || answer.candidate == answer.installed) {
        question.title = qtTrId("KPUpdatesNone");
        question.text = qtTrId("KPUpdatesNoneText").arg(answer.installed);
    } else {
        question.title = qtTrId("KPUpdatesFound").arg(answer.candidate);
        question.text = updater ? qtTrId("KPUpdatesFoundText").arg(answer.installed)
                                : qtTrId("KPUpdatesFoundShell").arg(answer.installed);
        if (updater)
            question.buttons.append(qtTrId("KPUpdatesOpen"));
    }
    question.buttons.append(qtTrId("KPDone"));
    question.cancelButton = static_cast<int>(question.buttons.size()) - 1;
    XPPrompts::current().ask(question, [updater, close = question.cancelButton](int button) {
        if (button != close)
            QProcess::startDetached(QString::fromLatin1(updater->program), updater->arguments);
    });
}

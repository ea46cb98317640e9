#include "KPImporterStatus.h"

#include "CagedImporter.h"
#include "XPPath.h"
#include "XPPrograms.h"

static QString describe(const ImportHello &hello)
{
    const QString landlock = hello.landlock > 0
                                 ? QStringLiteral("Landlock %1").arg(hello.landlock)
                                 : QStringLiteral("no Landlock: the kernel has none");
    const QString seccomp = hello.seccomp ? QStringLiteral("seccomp")
                                          : QStringLiteral("no seccomp: the kernel has none");
    return QStringLiteral("reads documents shut in by %1, %2").arg(landlock, seccomp);
}

KPImporterStatus::KPImporterStatus(const QString &storePath)
{
    ImportWorker worker({.program = XPPrograms::helper("murn-importer"), .idle = false});
    const auto hello = worker.hello();
    m_cage = hello ? describe(*hello) : hello.error().message;
    m_isWhole = hello && hello->isWhole();
    if (!hello)
        m_problem = QStringLiteral("documents cannot be read: ") + m_cage;
    else if (!m_isWhole)
        m_problem = QStringLiteral("documents are read with less protection: ") + m_cage;
    for (const auto &one : ImportAttempts::notRead(CagedImporter::attemptsOf(storePath)))
        m_notRead.append(
            {XPPath::decode(one.path),
             documentFailureName(one.failure) + QStringLiteral(": ") + one.reason +
                 (one.isLeftAlone() ? QString() : QStringLiteral("; is tried once more later"))});
}

QString KPImporterStatus::problem() const
{
    return m_problem;
}

void KPImporterStatus::printText(KPCommandOutput &output) const
{
    output.write("Importer:   " + XPPath::printable(m_cage).toUtf8() + '\n');
    for (const NotRead &one : m_notRead)
        output.write("Not read:   " + output.name(one.path) + "  (" +
                     XPPath::printable(one.reason).toUtf8() + ")\n");
}

void KPImporterStatus::printJson(KPCommandOutput &output) const
{
    QByteArrayList alone;
    for (const NotRead &one : m_notRead)
        alone.append("{\"path\": " + KPCommandOutput::json(one.path) +
                     ", \"reason\": " + KPCommandOutput::json(one.reason) + '}');
    output.write(",\n  \"importer\": " + KPCommandOutput::json(m_cage) + ",\n  \"caged\": " +
                 (m_isWhole ? "true" : "false") + ",\n  \"notRead\": [" + alone.join(", ") + ']');
}

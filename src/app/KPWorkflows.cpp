#include "KPWorkflows.h"

#include "KPInstalledFiles.h"
#include "XPAtomicFile.h"
#include "XPFileMover.h"
#include "XPFilingWork.h"
#include "XPFolders.h"
#include "XPPath.h"
#include "XPPrompts.h"

#include <QStandardPaths>
#include <array>
#include <cerrno>

namespace {

struct Workflow
{
    const char *script;
    const char *title; // which the menu shows
};

constexpr std::array workflows = {
    Workflow{"workflows/murn-tag.sh", QT_TRID_NOOP("KPWorkflowTag")},
    Workflow{"workflows/murn-file.sh", QT_TRID_NOOP("KPWorkflowFile")},
    Workflow{"workflows/murn-show.sh", QT_TRID_NOOP("KPWorkflowShow")},
};

} // namespace

bool KPWorkflows::isPossible()
{
    return !KPInstalledFiles::path(QString::fromLatin1(workflows.front().script)).isEmpty() &&
           !QStandardPaths::findExecutable(QStringLiteral("nautilus")).isEmpty();
}

std::optional<XPError> KPWorkflows::installOne(const QString &script, const QString &target)
{
    const auto wanted = XPAtomicFile::read(script);
    if (!wanted)
        return wanted.error();
    const auto there = XPAtomicFile::read(target);
    if (there && *there == *wanted)
        return {};
    if (!there && there.error().kind == XPError::Kind::NotFound)
        return XPFileMover::copy(script, target);
    const auto replaced = XPFileMover::copyReplacing(script, target);
    return replaced ? std::nullopt : std::optional(replaced.error());
}

static std::optional<XPError> installAll(const QString &folder, const QStringList &scripts,
                                         const QStringList &names)
{
    auto error = XPFolders::create(folder);
    for (qsizetype i = 0; !error && i < scripts.size(); ++i)
        error = KPWorkflows::installOne(scripts[i], folder + u'/' + names[i]);
    return error;
}

void KPWorkflows::installWorkflows()
{
    const QString folder = XPFolders::applicationSupport() + QStringLiteral("/nautilus/scripts");
    QStringList scripts;
    QStringList names;
    for (const Workflow &workflow : workflows) {
        scripts.append(KPInstalledFiles::path(QString::fromLatin1(workflow.script)));
        names.append(qtTrId(workflow.title));
    }
    XPFilingWork::run(
        [folder, scripts, names] { return installAll(folder, scripts, names); },
        [names](const std::optional<XPError> &error) {
            xpGuiThread.assertHere();
            if (error)
                XPPrompts::current().alert(qtTrId("KPWorkflowsFailed"),
                                           XPPath::printable(error->path) + QStringLiteral(": ") +
                                               error->reason());
            else
                XPPrompts::current().ask(
                    {qtTrId("KPWorkflowsDone"),
                     qtTrId("KPWorkflowsDoneText").arg(names.join(QStringLiteral(", "))),
                     {qtTrId("KPDone")},
                     0},
                    [](int) {});
        });
}

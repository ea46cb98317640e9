// murnctl manage and unmanage: whether files are documents of the library.
#include "KPFileSteps.h"
#include "XPFileInfo.h"
#include "XPFiledDocuments.h"

using Step = XPFileStep;

static Step mark(const QString &path, bool managed, bool isDryRun)
{
    Step step{path, path, Step::Action::Marked, {}, {}};
    const auto info = XPFileInfo::read(path);
    if (!info)
        step.problem = info.error();
    else if (managed && !XPFiledDocuments::pathOKForManaged(path))
        step.problem = XPError::make(
            XPError::Kind::NotPermitted,
            QStringLiteral("lies among files of other programs; 'murnctl file' takes a copy"),
            path);
    else if (!isDryRun)
        step.problem = XPFiledDocuments::setManaged(managed, path);
    if (step.problem) {
        step.action = Step::Action::Failed;
        step.to.clear();
    }
    return step;
}

static int mark(bool managed, const KPCommand &command, const KPCommandLine &line,
                KPCommandOutput &output)
{
    if (line.operands().isEmpty())
        return kpReportUsage(&command, QStringLiteral("files are needed"));
    if (const auto error = line.onlyOneOf({"--json", "--print0"}))
        return kpReportUsage(&command, error->message);
    KPInterrupt interrupt;
    KPProgressLine progress;
    XPFileReport report;
    const QStringList paths = KPFileSteps::operands(line.operands());
    const bool isDryRun = line.has("--dry-run");
    const auto options = KPFileSteps::options(isDryRun, paths.size(), interrupt, progress);
    for (const QString &path : paths) {
        report.wasStopped = !options.progress(report.steps.size());
        if (report.wasStopped)
            break;
        report.steps.append(mark(path, managed, isDryRun));
    }
    progress.clear();
    return KPFileSteps::print(report, output);
}

static int manage(const KPCommandLine &line, KPCommandOutput &output)
{
    return mark(true, kpManageCommand, line, output);
}

static int unmanage(const KPCommandLine &line, KPCommandOutput &output)
{
    return mark(false, kpUnmanageCommand, line, output);
}

const KPCommand kpManageCommand = {
    "manage",
    "[OPTION]… FILE…",
    "Marks files as documents of the library, where they lie.",
    "Prints each file that has the mark then.\n",
    {{"--dry-run", nullptr, "change nothing, only print what would be"},
     {"--json", nullptr, "print a list of objects"},
     {"--print0", nullptr, "a NUL after each path"}},
    manage};

const KPCommand kpUnmanageCommand = {
    "unmanage",
    "[OPTION]… FILE…",
    "Takes the mark of the library's documents off files.",
    "Prints each file that is no document of the library then.\n",
    {{"--dry-run", nullptr, "change nothing, only print what would be"},
     {"--json", nullptr, "print a list of objects"},
     {"--print0", nullptr, "a NUL after each path"}},
    unmanage};

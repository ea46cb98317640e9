// murnctl manage and unmanage: whether files are documents of the library.
#include "KPFileSteps.h"
#include "XPFilingRun.h"

static int mark(XPFilingRun::Marks marks, const KPCommand &command, const KPCommandLine &line,
                KPCommandOutput &output)
{
    if (line.operands().isEmpty())
        return kpReportUsage(&command, QStringLiteral("files are needed"));
    if (const auto error = line.onlyOneOf({"--json", "--print0"}))
        return kpReportUsage(&command, error->message);
    KPInterrupt interrupt;
    KPProgressLine progress;
    const QStringList paths = KPFileSteps::operands(line.operands());
    XPFilingRun run(KPFileSteps::options(line.has("--dry-run"), paths.size(), interrupt, progress));
    run.setMarks(paths, marks);
    progress.clear();
    return KPFileSteps::print(run.report(), output);
}

static int manage(const KPCommandLine &line, KPCommandOutput &output)
{
    return mark(line.has("--if-unmarked") ? XPFilingRun::Marks::ManagedIfNoStateFound
                                          : XPFilingRun::Marks::Managed,
                kpManageCommand, line, output);
}

static int unmanage(const KPCommandLine &line, KPCommandOutput &output)
{
    return mark(XPFilingRun::Marks::Unmanaged, kpUnmanageCommand, line, output);
}

const KPCommand kpManageCommand = {
    "manage",
    "[OPTION]… FILE…",
    "Marks files as documents of the library, where they lie.",
    "Prints each file that has the mark then.\n",
    {{"--if-unmarked", nullptr, "leave files that were marked or unmarked before as they are"},
     {"--dry-run", nullptr, "change nothing, only print what would be"},
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

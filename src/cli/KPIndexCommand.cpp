// murnctl index: looks after the metadata index.
#include "KPIndexActions.h"

#include <algorithm>
#include <array>

static constexpr std::array actions = {
    KPIndexAction{"status", false, KPIndexActions::status},
    KPIndexAction{"sync", false, KPIndexActions::sync},
    KPIndexAction{"verify", false, KPIndexActions::verify},
    KPIndexAction{"rebuild", false, KPIndexActions::rebuild},
    KPIndexAction{"pause", false, KPIndexActions::pause},
    KPIndexAction{"resume", false, KPIndexActions::resume},
    KPIndexAction{"roots", false, KPIndexActions::roots},
    KPIndexAction{"add", true, KPIndexActions::add},
    KPIndexAction{"remove", true, KPIndexActions::remove},
    KPIndexAction{"exclude", true, KPIndexActions::exclude},
    KPIndexAction{"include", true, KPIndexActions::include},
};

static int run(const KPCommandLine &line, KPCommandOutput &output)
{
    QStringList words = line.operands();
    if (words.isEmpty())
        return kpReportUsage(&kpIndexCommand, QStringLiteral("says what to do with the index"));
    const QString name = words.takeFirst();
    const auto *action =
        std::find_if(actions.begin(), actions.end(),
                     [&](const KPIndexAction &each) { return name == QLatin1String(each.name); });
    if (action == actions.end())
        return kpReportUsage(&kpIndexCommand, QStringLiteral("no such thing to do: %1").arg(name));
    if (action->takesOperand != (words.size() == 1) || words.size() > 1)
        return kpReportUsage(&kpIndexCommand,
                             (action->takesOperand ? QStringLiteral("%1 needs one DIR or PATTERN")
                                                   : QStringLiteral("%1 takes nothing more"))
                                 .arg(name));
    if (action->takesOperand && words.first().isEmpty())
        return kpReportUsage(&kpIndexCommand, QStringLiteral("%1 needs a text").arg(name));
    return action->run(words.value(0), line, output);
}

const KPCommand kpIndexCommand = {
    "index",
    "status | sync | verify | rebuild | pause | resume | roots [OPTION]…\n"
    "       murnctl index add DIR | remove DIR | exclude PATTERN | include PATTERN",
    "Looks after the metadata index: what it holds, whether it is right, what it covers.",
    "  status   what the index holds and does, and in words what is degraded\n"
    "  sync     returns when files, attributes and contents are up to date\n"
    "  verify   compares every file with the disk; succeeds only when all agrees\n"
    "  rebuild  throws the index away and builds it anew; your files are not touched\n"
    "  pause    has the reading of contents stand still until resume\n"
    "  roots    prints the folders that are indexed\n"
    "  add      indexes a folder too; remove does so no more\n"
    "  exclude  leaves out the folders of this name (node_modules, *.tmp), or this folder (a path\n"
    "           that begins with / or ~/); include takes them back in\n",
    {{"--no-content", nullptr, "sync, rebuild: leave the contents of files to later"},
     {"--json", nullptr, "status, roots: print an object; verify: an array of differences"},
     {"--print0", nullptr, "roots: end each path with NUL"}},
    run};

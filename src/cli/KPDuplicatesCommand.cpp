// murnctl duplicates: documents of the same contents.
#include "KPProgressLine.h"
#include "KPResultsRun.h"
#include "KPStatePaths.h"
#include "XPDuplicates.h"
#include "XPPath.h"

static void print(const XPDuplicates::Result &result, KPCommandOutput &output)
{
    QByteArrayList groups;
    for (const auto &group : result.groups) {
        if (output.isJson()) {
            groups.append("  {\"size\": " + QByteArray::number(group.size) +
                          ", \"paths\": " + KPCommandOutput::json(group.paths) + '}');
            continue;
        }
        for (const QString &path : group.paths)
            output.writeRecord(output.name(path));
        output.writeRecord({});
    }
    if (output.isJson())
        output.write("[\n" + groups.join(",\n") + "\n]\n");
    else if (!output.isSeparatingByNul())
        output.write(
            QStringLiteral("%1 groups; %2 bytes are kept more than once\n")
                .arg(QString::number(result.groups.size()), QString::number(result.bytesToFree()))
                .toUtf8());
}

static int run(const KPCommandLine &line, KPCommandOutput &output)
{
    if (!line.operands().isEmpty() || line.values("--in").contains(QString()))
        return kpReportUsage(&kpDuplicatesCommand,
                             QStringLiteral("takes no words, and folders after --in only"));
    if (const auto error = line.onlyOneOf({"--json", "--print0"}))
        return kpReportUsage(&kpDuplicatesCommand, error->message);
    const QStringList folders = KPResultsRun::foldersOf(line, output);
    if (line.has("--in") && folders.isEmpty())
        return output.exitStatus();
    auto state = KPStatePaths::stateOfFiles(line.values("--state"), output);
    if (!state)
        return output.exitStatus();
    if (!folders.isEmpty())
        state = state->searchStateWithNewContstraintFolders(folders);
    KPIndexSession session(output);
    const auto paths = KPStatePaths::find(state, session, output);
    if (!paths)
        return KPExitInterrupted;
    KPProgressLine progress;
    const auto result = XPDuplicates::find(*paths, [&](qint64 done, qint64 total) {
        progress.show(QStringLiteral("murnctl: %1 of %2 MiB").arg(done >> 20).arg(total >> 20));
        return !session.interrupt().happened();
    });
    progress.clear();
    if (result.stopped)
        return KPExitInterrupted;
    print(result, output);
    for (const XPError &failure : result.failures)
        output.fail(failure.path, failure.reason());
    return output.exitStatus();
}

const KPCommand kpDuplicatesCommand = {
    "duplicates",
    "[--in DIR]… [--state FILE]… [--json | --print0]",
    "Prints documents of the same contents, in groups.",
    "By size first, then by their bytes. Those that take most room come first; an empty line "
    "(with\n"
    "--print0 an empty record) ends each group. Empty files are left out, and further names of "
    "one\n"
    "file count once. Nothing is ever deleted.\n",
    {{"--in", "DIR", "only in this folder, or these"},
     {"--state", "FILE", "only among the documents of a search state"},
     {"--json", nullptr, "print a list of objects"},
     {"--print0", nullptr, "end each path with NUL"}},
    run};

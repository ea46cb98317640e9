// murnctl tags: shows the tags of files.
#include "KPAllTags.h"
#include "KPCommandOutput.h"
#include "Karvex.h"
#include "KarvexPrefs.h"

#include <QSet>

static void printList(const QString &path, const QStringList &tags, bool isOnly, bool isPrint0,
                      KPCommandOutput &output)
{
    if (isOnly || isPrint0) {
        for (const QString &tag : tags) {
            if (!isOnly)
                output.writeRecord(output.name(path));
            output.writeRecord(output.name(tag));
        }
        return;
    }
    QByteArray line = output.name(path);
    for (const QString &tag : tags)
        line += '\t' + output.name(tag);
    output.writeRecord(line);
}

static void printJson(const QStringList &paths, KPCommandOutput &output)
{
    QSet<QString> seen;
    QByteArray separator = "{\n  ";
    for (const QString &path : paths) {
        if (seen.contains(path))
            continue;
        seen.insert(path);
        const auto tags = Karvex::getUserTags(path);
        if (!tags) {
            output.fail(path, "tags cannot be read", tags.error());
            continue;
        }
        output.write(separator + KPCommandOutput::json(path) + ": " + KPCommandOutput::json(*tags));
        separator = ",\n  ";
    }
    output.write(separator.startsWith('{') ? "{}\n" : "\n}\n");
}

static int printRecentTags(KPCommandOutput &output)
{
    const QStringList tags = KarvexPrefs::recentTags();
    if (output.isJson())
        output.write(KPCommandOutput::json(tags) + '\n');
    else
        printList({}, tags, true, false, output);
    return output.exitStatus();
}

static int run(const KPCommandLine &line, KPCommandOutput &output)
{
    const QStringList &paths = line.operands();
    if (line.has("--all"))
        return KPAllTags::print(line, output);
    for (const char *option : {"--count", "--tree"}) {
        if (line.has(option))
            return kpReportUsage(&kpTagsCommand,
                                 QStringLiteral("%1 goes with --all").arg(QLatin1String(option)));
    }
    if (const auto error = line.onlyOneOf({"--json", "--print0"}))
        return kpReportUsage(&kpTagsCommand, error->message);
    if (line.has("--recent") != paths.isEmpty())
        return kpReportUsage(&kpTagsCommand, line.has("--recent")
                                                 ? QStringLiteral("--recent takes no files")
                                                 : QStringLiteral("no files given"));
    if (line.has("--recent"))
        return printRecentTags(output);
    if (output.isJson()) {
        printJson(paths, output);
        return output.exitStatus();
    }
    for (const QString &path : paths) {
        if (const auto tags = Karvex::getUserTags(path))
            printList(path, *tags, paths.size() == 1, line.has("--print0"), output);
        else
            output.fail(path, "tags cannot be read", tags.error());
    }
    return output.exitStatus();
}

const KPCommand kpTagsCommand = {
    "tags",
    "[--json | --print0] FILE…\n"
    "       murnctl tags --recent [--json | --print0]\n"
    "       murnctl tags --all [--count | --tree] [--json | --print0]",
    "Shows the tags of files, in their order.",
    "Of one file, each tag is a line. Of several, each file is a line: the name as it was\n"
    "given, then each tag after a tab character.\n",
    {{"--json", nullptr, "print an object: name of the file to array of tags"},
     {"--print0", nullptr, "end each tag with NUL; of several files, name and tag in turn"},
     {"--recent", nullptr, "show the tags entered last instead, newest first"},
     {"--all", nullptr, "show all tags of the indexed files instead, by name"},
     {"--count", nullptr, "with the number of files after a tab character"},
     {"--tree", nullptr, "tags below others (a/b) below them, with the files of the branch"}},
    run};

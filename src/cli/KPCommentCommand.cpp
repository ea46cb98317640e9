// murnctl comment: shows and sets the comments of files.
#include "KPCommandOutput.h"
#include "KPDocEdits.h"

static void show(const QStringList &paths, KPCommandOutput &output)
{
    QByteArray separator = "{\n  ";
    for (const QString &path : paths) {
        const auto comment = KPDocEdits::comment(path);
        if (!comment) {
            output.fail(path, "the comment cannot be read", comment.error());
        } else if (output.isJson()) {
            output.write(separator + KPCommandOutput::json(path) + ": " +
                         KPCommandOutput::json(*comment));
            separator = ",\n  ";
        } else {
            if (paths.size() > 1)
                output.writeRecord(output.name(path));
            output.writeRecord(comment->toUtf8());
        }
    }
    if (output.isJson())
        output.write(separator.startsWith('{') ? "{}\n" : "\n}\n");
}

static int run(const KPCommandLine &line, KPCommandOutput &output)
{
    const QStringList texts = line.values("--write");
    if (line.operands().isEmpty())
        return kpReportUsage(&kpCommentCommand, QStringLiteral("no files given"));
    if (texts.size() > 1)
        return kpReportUsage(&kpCommentCommand, QStringLiteral("--write may be given once"));
    if (const auto error = line.onlyOneOf({"--json", "--print0", "--write"}))
        return kpReportUsage(&kpCommentCommand, error->message);
    QStringList paths = line.operands();
    paths.removeDuplicates();
    if (texts.isEmpty()) {
        show(paths, output);
        return output.exitStatus();
    }
    for (const QString &path : paths) {
        // What cannot be read is not written over.
        if (const auto present = KPDocEdits::comment(path); !present)
            output.fail(path, "the comment cannot be read", present.error());
        else if (const auto error = KPDocEdits::setComment(texts.first(), path))
            output.fail(path, "the comment cannot be changed", *error);
    }
    return output.exitStatus();
}

const KPCommand kpCommentCommand = {
    "comment",
    "[--write TEXT] FILE…",
    "Shows the comments of files, or writes one.",
    "Of several files each is named on a line before its comment.\n"
    "A file whose present comment cannot be read is left as it is.\n",
    {{"--write", "TEXT", "the new comment of all of them; an empty one takes it off"},
     {"--json", nullptr, "an object of the files and their comments"},
     {"--print0", nullptr, "ends each name and each comment with NUL"}},
    run};

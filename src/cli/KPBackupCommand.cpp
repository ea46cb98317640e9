// murnctl backup: backs up the tags and ratings of all indexed files.
#include "KPIndexSession.h"
#include "KPProgressLine.h"
#include "KarvexBackup.h"
#include "XPPath.h"

static QByteArray jsonOf(const KarvexBackup::Result &result)
{
    return "{\"status\": " + KPCommandOutput::json(result.status) +
           ", \"worked\": " + (result.worked ? "true" : "false") +
           ", \"itemCount\": " + QByteArray::number(result.itemCount) +
           ", \"written\": " + KPCommandOutput::json(result.written) + "}\n";
}

static int run(const KPCommandLine &line, KPCommandOutput &output)
{
    const QStringList to = line.values("--to");
    if (!line.operands().isEmpty() || to.size() > 1 || to.contains(QString()))
        return kpReportUsage(&kpBackupCommand,
                             QStringLiteral("takes one file at most, after --to"));
    const QString path =
        to.isEmpty() ? KarvexBackupFile::defaultPath() : XPPath::absolute(to.first());
    KPIndexSession session(output);
    if (!session.catchUp(false))
        return KPExitInterrupted;
    KPProgressLine progress;
    const auto show = [&](qsizetype done, qsizetype total) {
        progress.show(QStringLiteral("murnctl: %1 of %2 files").arg(done).arg(total));
    };
    const auto result = KarvexBackup::writeSingleFile(
        session.index().source(), {path}, {show, [&] { return session.interrupt().happened(); }});
    progress.clear();
    if (result.stopped)
        return KPExitInterrupted;
    for (const QString &note : result.notes)
        KPCommandOutput::note(note);
    for (const QString &problem : result.problems)
        output.fail(problem);
    if (output.isJson())
        output.write(jsonOf(result));
    else if (result.worked)
        output.write(XPPath::printable(result.status).toUtf8() + '\n');
    if (!result.worked && result.problems.isEmpty())
        output.fail(result.status);
    return output.exitStatus();
}

const KPCommand kpBackupCommand = {
    "backup",
    "[--to FILE] [--json]",
    "Backs up the tags and ratings of all indexed files to one file.",
    "What is backed up already stays: also of files that are gone, or lost their tags. Without\n"
    "--to it is the backup that the window keeps too. Where tags or a rating cannot be read the\n"
    "backup keeps what it has of them. A file that is no backup is set aside, which is said on\n"
    "standard error and is no failure.\n",
    {{"--to", "FILE", "the backup"},
     {"--json", nullptr, "print an object that says what was done"}},
    run};

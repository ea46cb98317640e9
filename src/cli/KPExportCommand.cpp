// murnctl export: documents with their tags in one archive.
#include "KPFileSteps.h"
#include "KPStatePaths.h"
#include "XPDocumentExport.h"
#include "XPFiledDocuments.h"
#include "XPPath.h"

#include <limits>

static QByteArray jsonOf(const XPDocumentExport::Result &result, const QString &archive)
{
    return "{\"archive\": " + KPCommandOutput::json(archive) +
           ", \"documents\": " + QByteArray::number(result.documents) +
           ", \"bytes\": " + QByteArray::number(result.bytes) +
           ", \"size\": " + QByteArray::number(result.archiveSize) + "}\n";
}

static int write(QStringList paths, const QString &archive, KPInterrupt &interrupt,
                 KPCommandOutput &output)
{
    paths.removeDuplicates();
    KPProgressLine progress;
    XPDocumentExport::Options options;
    options.progress = [&, total = paths.size()](qint64 done) {
        progress.show(QStringLiteral("murnctl: %1 of %2 documents").arg(done).arg(total));
        return !interrupt.happened();
    };
    options.failed = [&](const QString &path, const XPError &error) {
        progress.clear();
        output.fail(path, error.reason());
    };
    const auto result = XPDocumentExport::run(paths, archive, options);
    progress.clear();
    if (result.error && result.error->kind == XPError::Kind::Cancelled)
        return KPExitInterrupted;
    if (result.error)
        output.fail(archive, result.error->reason());
    else if (output.isJson())
        output.write(jsonOf(result, archive));
    else
        output.write(QStringLiteral("%1 documents of %2 bytes are in %3, which has %4\n")
                         .arg(QString::number(result.documents), QString::number(result.bytes),
                              XPPath::printable(archive), QString::number(result.archiveSize))
                         .toUtf8());
    return output.exitStatus();
}

static int exportState(const KPCommandLine &line, const QString &archive, KPCommandOutput &output)
{
    const auto state = KPStatePaths::stateOfFiles(line.values("--state"), output);
    if (!state)
        return output.exitStatus();
    KPIndexSession session(output);
    const auto paths = KPStatePaths::find(state, session, output);
    return paths ? write(*paths, archive, session.interrupt(), output) : KPExitInterrupted;
}

static int run(const KPCommandLine &line, KPCommandOutput &output)
{
    const QStringList to = line.values("--to");
    if (to.size() != 1 || to.contains(QString()))
        return kpReportUsage(&kpExportCommand, QStringLiteral("needs --to and the archive"));
    if (line.has("--state") != line.operands().isEmpty())
        return kpReportUsage(&kpExportCommand,
                             QStringLiteral("takes either files or search states"));
    const QString archive = KPFileSteps::operand(to.first());
    if (line.has("--state"))
        return exportState(line, archive, output);
    QList<XPFileStep> unread;
    const QStringList paths = XPFiledDocuments::digForFilesInsideFolders(
        KPFileSteps::operands(line.operands()), &unread, std::numeric_limits<qsizetype>::max());
    for (const XPFileStep &step : unread)
        output.fail(step.from, step.problem->reason());
    KPInterrupt interrupt;
    return write(paths, archive, interrupt, output);
}

const KPCommand kpExportCommand = {
    "export",
    "--to ARCHIVE (FILE… | --state FILE) [--json]",
    "Writes documents, with all that stands on them, to an archive.",
    "For another machine, or a drive that keeps no tags: 'murnctl import-archive' brings them "
    "back.\n"
    "Of a folder, the files in it. In the archive each document has its place below the folder "
    "that\n"
    "all of them have in common. The archive is read back before it gets its name, and replaces\n"
    "no file. Documents that cannot be read are left out, which is a failure.\n",
    {{"--to", "ARCHIVE", "the new archive"},
     {"--state", "FILE",
      "the documents of a search state, as 'murnctl find' does; of several,\n"
      "                    those that fulfil all"},
     {"--json", nullptr, "print an object that says what was written"}},
    run};

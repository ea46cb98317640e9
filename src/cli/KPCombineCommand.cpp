// murnctl combine: makes one PDF of several.
#include "KPCommandOutput.h"
#include "KPInterrupt.h"
#include "KPProgressLine.h"
#include "XPCombinedPDF.h"
#include "XPFiledDocuments.h"
#include "XPPath.h"

static void tell(const XPCombinedPDF::Failure &failure, const QString &target,
                 KPCommandOutput &output)
{
    for (const XPError &error : failure.refused)
        output.fail(error.path, error.reason());
    if (failure.error)
        output.fail(target, failure.error->reason());
    else
        KPCommandOutput::note(QStringLiteral("nothing was written"));
}

static int run(const KPCommandLine &line, KPCommandOutput &output)
{
    const QStringList targets = line.values("-o");
    if (line.operands().isEmpty())
        return kpReportUsage(&kpCombineCommand, QStringLiteral("no file given"));
    if (targets.size() != 1)
        return kpReportUsage(&kpCombineCommand, QStringLiteral("-o names the new document"));
    QStringList paths;
    for (const QString &word : line.operands())
        paths.append(XPPath::absolute(word));
    KPInterrupt interrupt;
    KPProgressLine progress;
    const QString target = XPPath::absolute(targets.first());
    const auto result = XPCombinedPDF::combine(paths, target, [&](qsizetype done) {
        if (progress.isDue())
            progress.show(
                QStringLiteral("murnctl: document %1 of %2").arg(done + 1).arg(paths.size()));
        return !interrupt.happened();
    });
    progress.clear();
    if (interrupt.happened())
        return KPExitInterrupted;
    if (const auto *failure = std::get_if<XPCombinedPDF::Failure>(&result)) {
        tell(*failure, targets.first(), output);
        return output.exitStatus();
    }
    XPFiledDocuments::runMDImport(target);
    output.write(output.name(targets.first()) + ": " +
                 QByteArray::number(std::get<XPCombinedPDF::Made>(result).pages) + " pages\n");
    return output.exitStatus();
}

const KPCommand kpCombineCommand = {
    "combine",
    "FILE… -o PDF",
    "Makes one PDF document of several.",
    "The pages of each come in the order given, with their links and form fields; the documents\n"
    "themselves stay as they are. The new one gets the tags that all of them share. Where one is\n"
    "encrypted, damaged or without pages, nothing is written, and each such document is said. A\n"
    "file that is there already is never replaced.\n",
    {{"-o", "PDF", "the new document"}},
    run};

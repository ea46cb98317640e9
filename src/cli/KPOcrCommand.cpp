// murnctl ocr: lays recognised text over the pages of PDF documents.
#include "ImportPagePicture.h"
#include "KPCommandOutput.h"
#include "KPInterrupt.h"
#include "KPProgressLine.h"
#include "XPFiledDocuments.h"
#include "XPPath.h"
#include "XPTextLayer.h"

static int run(const KPCommandLine &line, KPCommandOutput &output)
{
    if (line.operands().isEmpty())
        return kpReportUsage(&kpOcrCommand, QStringLiteral("no file given"));
    if (const auto error = line.onlyOneOf({"--redo", "--force"}))
        return kpReportUsage(&kpOcrCommand, error->message);
    using Mode = XPTextLayer::Mode;
    XPTextLayer::Options options;
    options.mode = line.has("--redo") ? Mode::Redo : line.has("--force") ? Mode::Force : Mode::Skip;
    options.languages = line.values("--language");
    KPInterrupt interrupt;
    KPProgressLine progress;
    for (const QString &word : line.operands()) {
        const QString path = XPPath::absolute(word);
        ImportedDocument document(path);
        const auto done = XPTextLayer::recognise(
            path, [&](int page) { return document.picture(page + 1, XPTextLayer::pixelsOfAPage); },
            options,
            [&](int page, int pages) {
                if (progress.isDue())
                    progress.show(
                        QStringLiteral("murnctl: page %1 of %2").arg(page + 1).arg(pages));
                return !interrupt.happened();
            });
        progress.clear();
        if (!done) {
            output.fail(word, done.error().reason());
            if (interrupt.happened())
                return KPExitInterrupted;
            continue;
        }
        XPFiledDocuments::runMDImport(path);
        output.write(output.name(word) + ": " + QByteArray::number(done->size()) + " pages\n");
    }
    return output.exitStatus();
}

const KPCommand kpOcrCommand = {
    "ocr",
    "FILE…",
    "Recognises the text of PDF documents, so that it can be searched.",
    "The text is laid invisibly over the pages; what they show stays as it is, and so do tags and\n"
    "marks. A page that has text is left alone. Needs the package \"tesseract-ocr\" and one for\n"
    "each language.\n",
    {{"--language", "NAME", "as the program calls it, such as deu; may be repeated"},
     {"--redo", nullptr, "make our own layers anew"},
     {"--force", nullptr, "pages that have text too"}},
    run};

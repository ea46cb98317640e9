#include "PdfReader.h"

#include "DocumentFacts.h"
#include "FlowText.h"
#include "PdfDocument.h"
#include "XmpPacket.h"

#include <QDateTime>
#include <QImage>
#include <algorithm>

std::vector<QByteArray> PdfReader::readOnlyFolders() const
{
    // The encodings of East Asian text, and the fonts, that are not embedded.
    return {"/usr/share/poppler", "/usr/share/fonts", "/usr/share/ghostscript/fonts"};
}

static void fillFacts(const Poppler::Document &pdf, DocumentAnswer &answer)
{
    DocumentFacts facts(answer);
    const auto info = [&pdf](const char *key) { return pdf.info(QString::fromLatin1(key)); };
    facts.setTitle(info("Title"));
    facts.addList(DocumentFacts::authors, info("Author"));
    facts.setText(DocumentFacts::subject, info("Subject"));
    facts.addList(DocumentFacts::keywords, info("Keywords"));
    facts.setText(DocumentFacts::creator, info("Creator"));
    facts.addText(QStringLiteral("kMDItemEncodingApplications"), info("Producer"));
    facts.setDate(DocumentFacts::created, pdf.date(QStringLiteral("CreationDate")));
    facts.setText(QStringLiteral("kMDItemVersion"), [&pdf] {
        const auto version = pdf.getPdfVersion();
        return QStringLiteral("%1.%2").arg(version.major).arg(version.minor);
    }());
    XmpPacket::read(pdf.metadata().toUtf8(), facts);
    answer.pages = pdf.numPages();
}

// In reading order: a column is read to its end before the next one, so that a phrase that runs
// over a line is found.
static void takeText(const Poppler::Page &page, FlowText &flow)
{
    for (const std::unique_ptr<Poppler::TextBox> &word : page.textList()) {
        flow.append(word->text());
        if (!word->nextWord())
            flow.endLine();
        else if (word->hasSpaceAfter())
            flow.addGap();
    }
}

std::optional<DocumentFailure> PdfReader::read(const DocumentSource &source,
                                               DocumentAnswer &answer) const
{
    PdfDocument document;
    if (const auto failure = PdfDocument::open(source, document))
        return failure;
    const Poppler::Document &pdf = document.poppler();
    fillFacts(pdf, answer);
    DocumentFacts facts(answer);
    FlowText flow(answer.text);
    bool isWhole = true;
    for (int i = 0; i < pdf.numPages() && !flow.isFull() && !source.mustStop(); ++i) {
        const std::unique_ptr<Poppler::Page> page = pdf.page(i);
        isWhole = isWhole && page;
        if (!page)
            continue;
        facts.setReal(QStringLiteral("kMDItemPageWidth"), page->pageSizeF().width());
        facts.setReal(QStringLiteral("kMDItemPageHeight"), page->pageSizeF().height());
        takeText(*page, flow);
        flow.endParagraph();
    }
    return isWhole ? std::nullopt : std::optional(DocumentFailure::Damaged);
}

std::optional<DocumentFailure> PdfReader::picture(const DocumentSource &source, int page,
                                                  int pixels, QImage &image) const
{
    PdfDocument document;
    if (const auto failure = PdfDocument::open(source, document))
        return failure;
    if (page > document.poppler().numPages())
        return DocumentFailure::Unsupported;
    const std::unique_ptr<Poppler::Page> drawn = document.poppler().page(page - 1);
    const QSizeF size = drawn ? drawn->pageSizeF() : QSizeF(); // in points of 1/72 inch
    if (size.isEmpty())
        return DocumentFailure::Damaged;
    document.poppler().setRenderHint(Poppler::Document::Antialiasing);
    document.poppler().setRenderHint(Poppler::Document::TextAntialiasing);
    const double resolution = 72.0 * pixels / std::max(size.width(), size.height());
    image = drawn->renderToImage(resolution, resolution);
    return image.isNull() ? std::optional(DocumentFailure::TooLarge) : std::nullopt;
}

#include "OdfReader.h"

#include "DocumentFacts.h"
#include "FlowText.h"
#include "PackagePreview.h"
#include "ReaderChoice.h"
#include "XmlLeaves.h"
#include "ZipPackage.h"

namespace {

// Paragraphs and headings; deleted text, scripts and embedded data are no part of the text.
class OdfText : public XmlEvents
{
public:
    explicit OdfText(FlowText &flow) : m_flow(flow) {}
    int slides() const { return m_slides; }
    int tables() const { return m_tables; }

    void startElement(QByteArrayView name, const Attributes &) override
    {
        if (m_skipped > 0 || isSkipped(name)) {
            ++m_skipped;
            return;
        }
        m_cells += name == "table-cell";
        if (name == "annotation") { // who wrote it and when is no part of the text around
            m_outerParagraphs = std::exchange(m_paragraphs, 0);
            m_flow.addGap();
        }
        m_slides += name == "page";
        m_tables += name == "table";
        m_paragraphs += isParagraph(name);
        if (name == "s" || name == "tab")
            m_flow.addGap();
        else if (name == "line-break")
            m_flow.endLine();
    }

    void endElement(QByteArrayView name) override
    {
        if (m_skipped > 0) {
            --m_skipped;
            return;
        }
        if (name == "annotation") {
            m_paragraphs = m_outerParagraphs;
            m_flow.addGap();
        } else if (isParagraph(name)) {
            --m_paragraphs;
            m_cells > 0 ? m_flow.addGap() : m_flow.endLine();
        } else if (name == "table-cell") {
            --m_cells;
            m_flow.endCell();
        } else if (name == "table-row") {
            m_flow.endLine();
        } else if (name == "table" || name == "page") {
            m_flow.endParagraph();
        }
    }

    void characters(QByteArrayView text) override
    {
        if (m_paragraphs > 0 && m_skipped == 0)
            m_flow.appendCollapsed(text);
    }

    bool isDone() const override { return m_flow.isFull(); }

private:
    static bool isParagraph(QByteArrayView name)
    {
        return name == "p" || name == "h" || name == "title" || name == "desc";
    }
    static bool isSkipped(QByteArrayView name)
    {
        return name == "tracked-changes" || name == "binary-data" || name == "scripts" ||
               name == "meta" || name == "settings";
    }

    FlowText &m_flow;
    int m_skipped = 0; // elements open since the first one that is left out
    int m_paragraphs = 0;
    int m_outerParagraphs = 0;
    int m_cells = 0;
    int m_slides = 0;
    int m_tables = 0;
};

// The properties stand alone, or at the front of a flat document.
class OdfProperties : public XmlLeaves
{
public:
    void startElement(QByteArrayView name, const Attributes &attributes) override
    {
        if (!m_isOver)
            XmlLeaves::startElement(name, attributes);
    }
    void endElement(QByteArrayView name) override
    {
        if (!m_isOver)
            XmlLeaves::endElement(name);
        m_isOver = m_isOver || name == "meta";
    }
    bool isDone() const override { return m_isOver || XmlLeaves::isDone(); }

private:
    bool m_isOver = false;
};

void fillFacts(const XmlLeaves &meta, DocumentAnswer &answer)
{
    DocumentFacts facts(answer);
    facts.setTitle(meta.text("title"));
    facts.addText(DocumentFacts::authors, meta.text("initial-creator"));
    facts.addText(DocumentFacts::authors, meta.text("creator"));
    facts.setText(DocumentFacts::subject, meta.text("subject"));
    facts.setText(DocumentFacts::description, meta.text("description"));
    for (const QString &keyword : meta.texts("keyword"))
        facts.addList(DocumentFacts::keywords, keyword);
    facts.addText(DocumentFacts::languages, meta.text("language"));
    facts.setText(DocumentFacts::creator, meta.text("generator"));
    facts.setIsoDate(DocumentFacts::created, meta.text("creation-date"));
    for (const XmlLeaves::Element &element : meta.elements()) {
        if (element.name == "document-statistic")
            answer.pages = std::clamp(element.value("page-count").toInt(), 0, 1'000'000);
    }
}

std::optional<XPError> readBody(QByteArrayView xml, FlowText &flow, DocumentAnswer &answer,
                                bool isSheet)
{
    OdfText text(flow);
    auto error = text.read(xml);
    if (isSheet && text.tables() > 0)
        answer.pages = text.tables();
    else if (text.slides() > 0)
        answer.pages = text.slides();
    return error;
}

bool isFlat(const DocumentSource &source)
{
    const auto start = source.read(0, 512);
    return start && start->trimmed().startsWith("<?xml");
}

} // namespace

static std::optional<DocumentFailure> readFlat(const DocumentSource &source, DocumentAnswer &answer)
{
    constexpr qsizetype longest = 64 << 20;
    const auto xml = source.readAll(longest);
    if (!xml)
        return documentFailureOf(xml.error());
    OdfProperties meta;
    std::ignore = meta.read(*xml);
    fillFacts(meta, answer);
    FlowText flow(answer.text);
    const bool isSheet = source.type().contains(u"spreadsheet");
    const auto error = readBody(*xml, flow, answer, isSheet);
    return error ? std::optional(documentFailureOf(*error)) : std::nullopt;
}

std::optional<DocumentFailure> OdfReader::read(const DocumentSource &source,
                                               DocumentAnswer &answer) const
{
    if (isFlat(source))
        return readFlat(source, answer);
    const auto package = ZipPackage::read(source, [](QByteArrayView name) {
        return name == "content.xml" || name == "styles.xml" || name == "meta.xml" ||
               name == "mimetype" || name == "META-INF/manifest.xml";
    });
    if (!package) {
        const DocumentReader *other = readerByContent(source, *this);
        return other ? other->read(source, answer) : documentFailureOf(package.error());
    }
    XmlLeaves meta;
    std::ignore = meta.read(package->part("meta.xml"));
    fillFacts(meta, answer);
    if (package->part("META-INF/manifest.xml").contains("encryption-data"))
        return DocumentFailure::Encrypted;
    if (!package->hasPart("content.xml"))
        return package->ending() ? documentFailureOf(*package->ending()) : DocumentFailure::Damaged;
    FlowText flow(answer.text);
    const bool isSheet = package->part("mimetype").contains("spreadsheet");
    auto error = readBody(package->part("content.xml"), flow, answer, isSheet);
    flow.endParagraph();
    OdfText styles(flow); // headers and footers
    std::ignore = styles.read(package->part("styles.xml"));
    if (package->ending()) // a part that was cut is broken too
        error = package->ending();
    return error ? std::optional(documentFailureOf(*error)) : std::nullopt;
}

std::optional<DocumentFailure> OdfReader::picture(const DocumentSource &source, int page,
                                                  int pixels, QImage &image) const
{
    return packagePreview(source, {"Thumbnails/thumbnail.png"}, page, pixels, image);
}

#include "OoxmlReader.h"

#include "DocumentFacts.h"
#include "FlowText.h"
#include "OoxmlText.h"
#include "PackagePreview.h"
#include "ReaderChoice.h"
#include "XmlLeaves.h"
#include "ZipPackage.h"

#include <array>

static bool isWanted(QByteArrayView name)
{
    static constexpr std::array<const char *, 14> starts = {
        "docProps/core",  "docProps/app",  "word/document",    "word/header",      "word/footer",
        "word/footnotes", "word/endnotes", "word/comments",    "xl/sharedStrings", "xl/worksheets/",
        "xl/comments",    "ppt/slides/",   "ppt/notesSlides/", "ppt/comments/"};
    static constexpr std::array<const char *, 3> names = {"xl/workbook.xml", "ppt/presentation.xml",
                                                          "ppt/_rels/presentation.xml.rels"};
    const auto isStart = [name](const char *start) { return name.startsWith(start); };
    const auto isName = [name](const char *other) { return name == other; };
    if (std::any_of(names.begin(), names.end(), isName))
        return true;
    const bool isRelation = name.endsWith(".rels");
    return std::any_of(starts.begin(), starts.end(), isStart) &&
           (name.endsWith(".xml") || (isRelation && name.startsWith("ppt/slides/_rels/")));
}

static void readProperties(const ZipPackage &package, DocumentAnswer &answer)
{
    XmlLeaves core;
    XmlLeaves app;
    const auto ignored = {core.read(package.part("docProps/core.xml")),
                          app.read(package.part("docProps/app.xml"))};
    Q_UNUSED(ignored) // properties that are broken say nothing about the document
    DocumentFacts facts(answer);
    facts.setTitle(core.text("title"));
    facts.addList(DocumentFacts::authors, core.text("creator"));
    facts.addText(DocumentFacts::authors, core.text("lastModifiedBy"));
    facts.setText(DocumentFacts::subject, core.text("subject"));
    facts.setText(DocumentFacts::description, core.text("description"));
    facts.addList(DocumentFacts::keywords, core.text("keywords"));
    facts.addText(DocumentFacts::keywords, core.text("category"));
    facts.addText(DocumentFacts::languages, core.text("language"));
    facts.setIsoDate(DocumentFacts::created, core.text("created"));
    facts.setText(DocumentFacts::creator, app.text("Application"));
    facts.addText(QStringLiteral("kMDItemOrganizations"), app.text("Company"));
    answer.pages = std::clamp(app.text("Pages").toInt(), 0, 1'000'000);
}

// The parts that hold a document's text, and what was the first thing wrong with one.
class Parts
{
public:
    explicit Parts(const ZipPackage &package) : m_package(package) {}

    void read(const QByteArray &name, XmlEvents &events)
    {
        const QByteArray xml = m_package.part(name);
        if (xml.isEmpty())
            return;
        auto error = events.read(xml);
        if (!m_error)
            m_error = std::move(error);
    }

    const std::optional<XPError> &error() const { return m_error; }

private:
    const ZipPackage &m_package;
    std::optional<XPError> m_error;
};

static void readWord(const ZipPackage &package, const DocumentSource &source, Parts &parts,
                     FlowText &flow)
{
    // The body first, as it is what a limit should cut last.
    QList<QByteArray> names = package.names();
    names.removeAll("word/document.xml");
    names.prepend("word/document.xml");
    for (const QByteArray &name : names) {
        if (!name.startsWith("word/") || flow.isFull() || source.mustStop())
            continue;
        OoxmlText text(flow);
        parts.read(name, text);
        flow.endParagraph();
    }
}

static int readWorkbook(const ZipPackage &package, const DocumentSource &source, Parts &parts,
                        FlowText &flow)
{
    XmlLeaves workbook;
    parts.read("xl/workbook.xml", workbook);
    int sheets = 0;
    for (const XmlLeaves::Element &element : workbook.elements()) {
        if (element.name != "sheet")
            continue;
        ++sheets;
        flow.append(QByteArrayView(element.value("name")));
        flow.endLine();
    }
    OoxmlStrings strings;
    parts.read("xl/sharedStrings.xml", strings);
    for (const QByteArray &name : package.names()) {
        if (flow.isFull() || source.mustStop())
            break;
        flow.endParagraph();
        if (name.startsWith("xl/worksheets/")) {
            OoxmlSheet sheet(flow, strings.texts());
            parts.read(name, sheet);
        } else if (name.startsWith("xl/comments")) {
            OoxmlText text(flow);
            parts.read(name, text);
        }
    }
    return sheets;
}

// Where the relations of a part lead, by their ids.
static QHash<QByteArray, QByteArray> relations(const ZipPackage &package, const QByteArray &part)
{
    const qsizetype slash = part.lastIndexOf('/') + 1;
    XmlLeaves leaves;
    std::ignore =
        leaves.read(package.part(part.first(slash) + "_rels/" + part.mid(slash) + ".rels"));
    QHash<QByteArray, QByteArray> targets;
    for (const XmlLeaves::Element &element : leaves.elements()) {
        if (element.name == "Relationship" && element.value("TargetMode") != "External")
            targets.insert(element.value("Id"),
                           ZipPackage::resolved(part, element.value("Target")));
    }
    return targets;
}

static QList<QByteArray> slidesInOrder(const ZipPackage &package)
{
    const auto targets = relations(package, "ppt/presentation.xml");
    OoxmlSlideOrder order;
    std::ignore = order.read(package.part("ppt/presentation.xml"));
    QList<QByteArray> slides;
    for (const QByteArray &id : order.relations()) {
        const QByteArray part = targets.value(id);
        if (package.hasPart(part))
            slides.append(part);
    }
    if (!slides.isEmpty())
        return slides;
    for (const QByteArray &name : package.names()) { // no order is stated: that of their names
        if (name.startsWith("ppt/slides/") && !name.endsWith(".rels"))
            slides.append(name);
    }
    return slides;
}

static int readPresentation(const ZipPackage &package, const DocumentSource &source, Parts &parts,
                            FlowText &flow)
{
    const QList<QByteArray> slides = slidesInOrder(package);
    const auto readPart = [&](const QByteArray &name) {
        OoxmlText text(flow);
        parts.read(name, text);
        flow.endParagraph();
    };
    for (const QByteArray &slide : slides) {
        if (flow.isFull() || source.mustStop())
            break;
        readPart(slide);
        for (const QByteArray &part : relations(package, slide)) {
            if (part.startsWith("ppt/notesSlides/") || part.startsWith("ppt/comments/"))
                readPart(part);
        }
    }
    return static_cast<int>(slides.size());
}

std::optional<DocumentFailure> OoxmlReader::read(const DocumentSource &source,
                                                 DocumentAnswer &answer) const
{
    const auto package = ZipPackage::read(source, isWanted);
    if (!package) {
        const DocumentReader *other = readerByContent(source, *this);
        return other ? other->read(source, answer) : documentFailureOf(package.error());
    }
    readProperties(*package, answer);
    FlowText flow(answer.text);
    Parts parts(*package);
    if (package->hasPart("word/document.xml"))
        readWord(*package, source, parts, flow);
    else if (package->hasPart("xl/workbook.xml"))
        answer.pages = readWorkbook(*package, source, parts, flow);
    else if (package->hasPart("ppt/presentation.xml"))
        answer.pages = readPresentation(*package, source, parts, flow);
    else if (package->hasEncryptedParts())
        return DocumentFailure::Encrypted;
    else if (!package->ending())
        return DocumentFailure::Damaged;
    if (package->ending()) // a part that was cut is broken too
        return documentFailureOf(*package->ending());
    if (parts.error())
        return documentFailureOf(*parts.error());
    return {};
}

std::optional<DocumentFailure> OoxmlReader::picture(const DocumentSource &source, int page,
                                                    int pixels, QImage &image) const
{
    return packagePreview(
        source, {"docProps/thumbnail.jpeg", "docProps/thumbnail.jpg", "docProps/thumbnail.png"},
        page, pixels, image);
}

#include "EpubReader.h"

#include "DocumentFacts.h"
#include "FlowText.h"
#include "HtmlText.h"
#include "PictureDecoding.h"
#include "XmlLeaves.h"
#include "ZipPackage.h"

static bool isWanted(QByteArrayView name)
{
    const QByteArray lower = name.toByteArray().toLower();
    return name.startsWith("META-INF/") || lower.endsWith(".opf") || lower.endsWith(".xhtml") ||
           lower.endsWith(".html") || lower.endsWith(".htm") || lower.endsWith(".xml");
}

// The package document's name, by the container's or, where that is missing, by its extension.
static QByteArray packageName(const ZipPackage &package)
{
    XmlLeaves container;
    std::ignore = container.read(package.part("META-INF/container.xml"));
    for (const XmlLeaves::Element &element : container.elements()) {
        QByteArray name = element.value("full-path");
        if (element.name == "rootfile" && package.hasPart(name))
            return name;
    }
    for (const QByteArray &name : package.names()) {
        if (name.endsWith(".opf"))
            return name;
    }
    return {};
}

static void fillFacts(const XmlLeaves &opf, DocumentAnswer &answer)
{
    DocumentFacts facts(answer);
    facts.setTitle(opf.text("title"));
    for (const QString &author : opf.texts("creator"))
        facts.addText(DocumentFacts::authors, author);
    for (const QString &subject : opf.texts("subject"))
        facts.addText(DocumentFacts::keywords, subject);
    for (const QString &language : opf.texts("language"))
        facts.addText(DocumentFacts::languages, language);
    for (const QString &publisher : opf.texts("publisher"))
        facts.addText(QStringLiteral("kMDItemPublishers"), publisher);
    const QByteArray about = opf.text("description").toUtf8();
    facts.setText(DocumentFacts::description, QString::fromUtf8(HtmlText::plain(about)));
    facts.setText(DocumentFacts::copyright, opf.text("rights"));
    facts.setText(QStringLiteral("kMDItemIdentifier"), opf.text("identifier"));
    facts.setIsoDate(DocumentFacts::created, opf.text("date"));
}

static QList<QByteArray> chapters(const XmlLeaves &opf, const QByteArray &opfName)
{
    QHash<QByteArray, QByteArray> parts;
    QList<QByteArray> names;
    for (const XmlLeaves::Element &element : opf.elements()) {
        if (element.name == "item")
            parts.insert(element.value("id"),
                         QByteArray::fromPercentEncoding(element.value("href")));
        else if (element.name == "itemref")
            names.append(ZipPackage::resolved(opfName, parts.value(element.value("idref"))));
    }
    return names;
}

std::optional<DocumentFailure> EpubReader::read(const DocumentSource &source,
                                                DocumentAnswer &answer) const
{
    const auto package = ZipPackage::read(source, isWanted);
    if (!package)
        return documentFailureOf(package.error());
    const QByteArray name = packageName(*package);
    if (name.isEmpty() && package->ending()) // it may have come after that
        return documentFailureOf(*package->ending());
    if (name.isEmpty())
        return package->hasEncryptedParts() ? DocumentFailure::Encrypted : DocumentFailure::Damaged;
    XmlLeaves opf;
    const auto error = opf.read(package->part(name));
    fillFacts(opf, answer);
    // With rights management the chapters are there, but no text.
    if (package->hasPart("META-INF/rights.xml"))
        return DocumentFailure::Encrypted;
    FlowText flow(answer.text);
    for (const QByteArray &chapter : chapters(opf, name)) {
        if (flow.isFull() || source.mustStop())
            break;
        HtmlText::read(HtmlText::asUtf8(package->part(chapter)), flow, nullptr);
        flow.endParagraph();
    }
    if (package->ending()) // a part that was cut is broken too
        return documentFailureOf(*package->ending());
    if (error)
        return documentFailureOf(*error);
    return {};
}

// The part with the cover: named by a property of the item or, in older books, by a "meta".
static QByteArray coverName(const XmlLeaves &opf, const QByteArray &opfName)
{
    QByteArray byMeta;
    for (const XmlLeaves::Element &element : opf.elements()) {
        if (element.name == "meta" && element.value("name") == "cover")
            byMeta = element.value("content");
    }
    QByteArray found;
    for (const XmlLeaves::Element &element : opf.elements()) {
        if (element.name != "item")
            continue;
        const bool isCover = element.value("properties").split(' ').contains("cover-image");
        if (isCover || (found.isEmpty() && !byMeta.isEmpty() && element.value("id") == byMeta))
            found = QByteArray::fromPercentEncoding(element.value("href"));
        if (isCover)
            break;
    }
    return found.isEmpty() ? found : ZipPackage::resolved(opfName, found);
}

std::optional<DocumentFailure> EpubReader::picture(const DocumentSource &source, int page,
                                                   int pixels, QImage &image) const
{
    const auto book = ZipPackage::read(source, isWanted);
    if (!book || page > 1)
        return DocumentFailure::Unsupported;
    const QByteArray name = packageName(*book);
    XmlLeaves opf;
    std::ignore = opf.read(book->part(name));
    const QByteArray cover = coverName(opf, name);
    if (cover.isEmpty())
        return DocumentFailure::Unsupported;
    const auto pictures =
        ZipPackage::read(source, [&cover](QByteArrayView part) { return part == cover; });
    return pictures && pictures->hasPart(cover)
               ? PictureDecoding::decode(pictures->part(cover), pixels, image)
               : std::optional(DocumentFailure::Unsupported);
}

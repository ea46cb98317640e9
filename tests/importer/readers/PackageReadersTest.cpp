#include "ReaderDocuments.h"

// Office files and books: archives of XML parts.

static const QByteArray xml = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>";
static const QString word = QStringLiteral("org.openxmlformats.wordprocessingml.document");
static const QString sheet = QStringLiteral("org.openxmlformats.spreadsheetml.sheet");
static const QString slides = QStringLiteral("org.openxmlformats.presentationml.presentation");

static QByteArray wordPart(const QByteArray &element, const QByteArray &body)
{
    return xml + "<w:" + element + " xmlns:w=\"urn:w\">" + body + "</w:" + element + ">";
}

static QByteArray paragraph(const QByteArray &text)
{
    return "<w:p><w:r><w:t>" + text + "</w:t></w:r></w:p>";
}

TEST(OoxmlReader, ReadsAllPartsOfADocument)
{
    const QByteArray core =
        xml + "<cp:coreProperties xmlns:cp=\"c\" xmlns:dc=\"d\" xmlns:dcterms=\"t\"><dc:title>Dry "
              "dock</dc:title><dc:creator>Nora; Per</dc:creator><cp:keywords>ship, "
              "dock</cp:keywords><dc:subject>Repairs</dc:subject><dcterms:created>2024-03-02T18:22:"
              "07Z</dcterms:created></cp:coreProperties>";
    const QByteArray body =
        wordPart("document", "<w:body>" + paragraph("The sh\xC3\xBCp &amp; dock") +
                                 "<w:p><w:r><w:t>de</w:t></w:r><w:r><w:t xml:space=\"preserve\">al "
                                 "</w:t><w:tab/><w:t>done</w:t><w:br/><w:t>and</w:t></w:r></w:p>"
                                 "<w:p><w:del><w:r><w:delText>gone</w:delText></w:r></w:del></w:p>"
                                 "<w:tbl><w:tr><w:tc>" +
                                 paragraph("cell") + "</w:tc></w:tr></w:tbl></w:body>");
    const QByteArray file = zipOf({
        {"[Content_Types].xml", "<Types/>"},
        {"word/header1.xml", wordPart("hdr", paragraph("Letterhead"))},
        {"word/document.xml", body},
        {"word/footnotes.xml", wordPart("footnotes", paragraph("a note"))},
        {"word/comments.xml", wordPart("comments", paragraph("a remark"))},
        {"word/media/image1.png", "binary"},
        {"docProps/core.xml", core},
        {"docProps/app.xml", "<Properties><Application>Writer</Application><Pages>7</Pages>"
                             "<Company>Yard</Company></Properties>"},
    });
    expectRead(
        {{"word",
          word,
          file,
          QStringLiteral("Dry dock"),
          QStringLiteral("The sh\u00FCp & dock\ndeal  done\nand\ncell\n\na remark\n\na "
                         "note\n\nLetterhead"),
          {{QStringLiteral("kMDItemAuthors"), QStringLiteral("Nora | Per")},
           {QStringLiteral("kMDItemKeywords"), QStringLiteral("ship | dock")},
           {QStringLiteral("kMDItemSubject"), QStringLiteral("Repairs")},
           {QStringLiteral("kMDItemCreator"), QStringLiteral("Writer")},
           {QStringLiteral("kMDItemOrganizations"), QStringLiteral("Yard")},
           {QStringLiteral("kMDItemContentCreationDate"), QStringLiteral("2024-03-02T18:22:07Z")}},
          7}});
}

TEST(OoxmlReader, ReadsCellsAndSlidesInOrder)
{
    const QByteArray workbook = zipOf({
        {"xl/workbook.xml", "<workbook><sheets><sheet name=\"Costs\"/></sheets></workbook>"},
        {"xl/worksheets/sheet1.xml",
         "<worksheet><sheetData><row><c t=\"s\"><v>1</v></c><c "
         "r=\"D1\"><v>3.5</v></c></row><row><c "
         "t=\"inlineStr\"><is><t>here</t></is></c><c t=\"s\"><v>99</v></c><c t=\"s\"><v>0</v></c>"
         "</row></sheetData></worksheet>"},
        {"xl/sharedStrings.xml", "<sst><si><t>Total</t><rPh><t>sound</t></rPh></si>"
                                 "<si><r><t>Fl</t></r><r><t>at</t></r></si></sst>"},
    });
    const auto slide = [](const QByteArray &text) {
        return QByteArray("<p:sld><a:p><a:r><a:t>" + text + "</a:t></a:r></a:p></p:sld>");
    };
    const auto relation = [](const QByteArray &id, const QByteArray &target) {
        return QByteArray("<Relationship Id=\"" + id + "\" Target=\"" + target + "\"/>");
    };
    const QByteArray presentation = zipOf({
        {"ppt/presentation.xml", "<p:presentation><p:sldIdLst><p:sldId id=\"256\" r:id=\"rId7\"/>"
                                 "<p:sldId id=\"257\" r:id=\"rId2\"/></p:sldIdLst>"
                                 "</p:presentation>"},
        {"ppt/_rels/presentation.xml.rels",
         "<Relationships>" + relation("rId2", "slides/slide1.xml") +
             relation("rId7", "slides/slide10.xml") + "</Relationships>"},
        {"ppt/slides/slide1.xml", slide("last")},
        {"ppt/slides/slide10.xml", slide("first")},
        {"ppt/slides/_rels/slide10.xml.rels",
         "<Relationships>" + relation("rId1", "../notesSlides/notesSlide4.xml") +
             "</Relationships>"},
        {"ppt/notesSlides/notesSlide4.xml", slide("say hello")},
    });
    expectRead({{"sheet",
                 sheet,
                 workbook,
                 {},
                 QStringLiteral("Costs\n\nFlat\t\t\t3.5\nhere\t\tTotal"),
                 {},
                 1},
                {"slides",
                 slides,
                 presentation,
                 {},
                 QStringLiteral("first\n\nsay hello\n\nlast"),
                 {},
                 2}});
}

TEST(OdfReader, ReadsPackedAndFlatDocuments)
{
    const QByteArray meta =
        "<office:meta><dc:title>Strudel</dc:title><meta:initial-creator>Oma</meta:initial-creator>"
        "<meta:keyword>cake</meta:keyword><meta:keyword>apple</meta:keyword><meta:creation-date>"
        "2023-01-02T03:04:05Z</meta:creation-date><meta:document-statistic meta:page-count=\"3\"/>"
        "</office:meta>";
    const QByteArray body =
        "<office:body><office:text><text:tracked-changes><text:p>gone</text:p>"
        "</text:tracked-changes><text:h>Apples</text:h><text:p>one<text:s/>two\n   three"
        "<office:annotation><dc:creator>x</dc:creator><text:p>sour?</text:p></office:annotation>"
        "</text:p></office:text></office:body>";
    const QByteArray root = "<office:document xmlns:office=\"o\" xmlns:text=\"t\" xmlns:dc=\"d\" "
                            "xmlns:meta=\"m\" xmlns:style=\"s\" xmlns:table=\"b\">";
    const QMap<QString, QString> facts = {
        {QStringLiteral("kMDItemAuthors"), QStringLiteral("Oma")},
        {QStringLiteral("kMDItemKeywords"), QStringLiteral("cake | apple")},
        {QStringLiteral("kMDItemContentCreationDate"), QStringLiteral("2023-01-02T03:04:05Z")}};
    const auto part = [&root](const QByteArray &content) {
        return QByteArray(xml + root + content + "</office:document>");
    };
    const QString text = QStringLiteral("Apples\none two three sour?");
    expectRead(
        {{"packed", QStringLiteral("org.oasis-open.opendocument.text"),
          zipOf({{"mimetype", "application/vnd.oasis.opendocument.text"},
                 {"content.xml", part(body)},
                 {"meta.xml", part(meta)},
                 {"styles.xml", part("<style:footer><text:p>page</text:p></style:footer>")}}),
          QStringLiteral("Strudel"), text + QStringLiteral("\n\npage"), facts, 3},
         {"flat", QStringLiteral("org.oasis-open.opendocument.text-flat"), part(meta + body),
          QStringLiteral("Strudel"), text, facts, 3},
         {"sheet",
          QStringLiteral("org.oasis-open.opendocument.spreadsheet"),
          zipOf({{"mimetype", "application/vnd.oasis.opendocument.spreadsheet"},
                 {"content.xml",
                  part("<table:table><table:table-row><table:table-cell><text:p>a</text:p>"
                       "</table:table-cell><table:table-cell><text:p>b</text:p>"
                       "</table:table-cell></table:table-row></table:table>"
                       "<table:table/>")}}),
          {},
          QStringLiteral("a\tb"),
          {},
          2}});
}

TEST(EpubReader, ReadsChaptersInTheirOrder)
{
    const QByteArray opf =
        "<package><metadata><dc:title xmlns:dc=\"d\">Lights</dc:title><dc:creator>A. "
        "Keeper</dc:creator><dc:subject>Sea</dc:subject><dc:description>&lt;p&gt;On "
        "lamps&lt;/p&gt;</dc:description><dc:date>2020-05-06T00:00:00Z</dc:date></metadata>"
        "<manifest><item id=\"b\" href=\"two.xhtml\"/><item id=\"a\" href=\"o%6Ee.xhtml\"/>"
        "</manifest><spine><itemref idref=\"a\"/><itemref idref=\"b\"/></spine></package>";
    const QByteArray book = zipOf(
        {{"mimetype", "application/epub+zip"},
         {"META-INF/container.xml",
          "<container><rootfile full-path=\"OEBPS/book.opf\"/></container>"},
         {"OEBPS/book.opf", opf},
         {"OEBPS/two.xhtml", "<html><body><h1>Two</h1><p>the end</p></body></html>"},
         {"OEBPS/one.xhtml", "<!DOCTYPE html><html><head><title>x</title></head><body><h1>One</h1>"
                             "<p>a&nbsp;lamp</p><script>no()</script></body></html>"}});
    expectRead(
        {{"book",
          QStringLiteral("org.idpf.epub-container"),
          book,
          QStringLiteral("Lights"),
          QStringLiteral("One\n\na\u00A0lamp\n\nTwo\n\nthe end"),
          {{QStringLiteral("kMDItemAuthors"), QStringLiteral("A. Keeper")},
           {QStringLiteral("kMDItemKeywords"), QStringLiteral("Sea")},
           {QStringLiteral("kMDItemDescription"), QStringLiteral("On lamps")},
           {QStringLiteral("kMDItemContentCreationDate"), QStringLiteral("2020-05-06T00:00:00Z")}},
          0}});
}

TEST(ArchiveReader, TellsTheNames)
{
    const QList<std::pair<QByteArray, QByteArray>> files = {{"plans/dock.txt", "x"},
                                                            {"gr\xC3\xBC\xC3\x9F.txt", "y"}};
    const QString names = QStringLiteral("plans/dock.txt\ngr\u00FC\u00DF.txt");
    expectRead(
        {{"zip", QStringLiteral("public.zip-archive"), zipOf(files), {}, names, {}, 0},
         {"7-Zip", QStringLiteral("org.7-zip.7-zip-archive"), sevenZipOf(files), {}, names, {}, 0},
         {"tar and gzip",
          QStringLiteral("org.gnu.gnu-zip-tar-archive"),
          tarballOf(files),
          {},
          names,
          {},
          0}});
}

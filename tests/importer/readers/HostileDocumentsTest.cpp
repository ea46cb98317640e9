#include "ReaderDocuments.h"

#include <QRandomGenerator>
#include <algorithm>

// Documents that mean harm, and broken ones: each has a plain answer, soon and in little memory.

namespace {

struct Hostile
{
    const char *name;
    QString type;
    QByteArray bytes;
    std::optional<DocumentFailure> failure;
};

const QString word = QStringLiteral("org.openxmlformats.wordprocessingml.document");
const QString odt = QStringLiteral("org.oasis-open.opendocument.text");
const QString flat = QStringLiteral("org.oasis-open.opendocument.text-flat");
const QString doc = QStringLiteral("com.microsoft.word.doc");
const QString pdf = QStringLiteral("com.adobe.pdf");
const QString svg = QStringLiteral("public.svg-image");
const QString mail = QStringLiteral("com.apple.mail.email");
const QString html = QStringLiteral("public.html");
const QString rtf = QStringLiteral("public.rtf");
const QString zip = QStringLiteral("public.zip-archive");

const QString epub = QStringLiteral("org.idpf.epub-container");
const QString raw = QStringLiteral("public.camera-raw-image");

const QByteArray xml = "<?xml version=\"1.0\"?>";

QByteArray bomb()
{
    QByteArray text = xml + "<!DOCTYPE svg [<!ENTITY a0 \"ha\">";
    for (int i = 1; i < 30; ++i)
        text += "<!ENTITY a" + QByteArray::number(i) + " \"" +
                ("&a" + QByteArray::number(i - 1) + ";").repeated(10) + "\">";
    return text + "]><svg><text>&a29;</text></svg>";
}

QByteArray nestedMail(int depth)
{
    QByteArray text = "Subject: deep\r\n";
    for (int i = 0; i < depth; ++i)
        text += "Content-Type: message/rfc822\r\n\r\n";
    return text + "Subject: bottom\r\n\r\ntext\r\n";
}

QByteArray loopingPdf()
{
    QByteArray text = pdfOf({"one"});
    text.replace("/Kids[5 0 R ]", "/Kids[2 0 R ]"); // the pages are their own parent
    return text;
}

QByteArray encryptedPdf()
{
    QByteArray text = pdfOf({"one"});
    text.replace("/Root 1 0 R", "/Encrypt<</Filter/Standard/V 1/R 2/P -4/O(" + QByteArray(32, 'x') +
                                    ")/U(" + QByteArray(32, 'y') + ")>>/ID[(a)(b)]/Root 1 0 R");
    return text;
}

// Each entry of its list is the same data: little on the disk, very much when unpacked.
QByteArray overlappingZip(const QByteArray &part, int times)
{
    QByteArray archive = zipOf({{part, QByteArray(4 << 20, ' ')}});
    const qsizetype list = archive.indexOf("PK\x01\x02");
    const qsizetype end = archive.indexOf("PK\x05\x06");
    const QByteArray entry = archive.sliced(list, end - list);
    QByteArray ending = archive.sliced(end);
    const auto count = static_cast<quint16>(times);
    ending.replace(8, 4, little16(count) + little16(count));
    ending.replace(12, 4, little32(static_cast<quint32>(entry.size() * times)));
    return archive.first(list) + entry.repeated(times) + ending;
}

QByteArray zipInZip(int depth)
{
    QByteArray archive = zipOf({{"bottom.txt", QByteArray(40 << 20, ' ')}});
    for (int i = 0; i < depth; ++i)
        archive = zipOf({{"inner.zip", archive}, {"copy.zip", archive}});
    return archive;
}

// Says that its first entry is its own continuation: a chain of sectors that never ends.
QByteArray loopingCompound()
{
    QByteArray file = compoundOf({{QStringLiteral("WordDocument"), QByteArray(8192, 'x')}});
    for (qsizetype at = 512 + 8; at < 1024; at += 4)
        file.replace(at, 4, little32(static_cast<quint32>((at - 512) / 4)));
    return file;
}

} // namespace

TEST(HostileDocuments, HaveAnAnswer)
{
    using F = DocumentFailure;
    const QByteArray huge(40 << 20, ' ');
    const QByteArray docx = zipOf({{"word/document.xml", "<w:document><w:p><w:t>x</w:t></w:p>"
                                                         "</w:document>"}});
    const QByteArray wordHead =
        little16(0xA5EC) + QByteArray(8, '\0') + little16(0x0300) + QByteArray(500, '\0');
    const Hostile rows[] = {
        {"part that unpacks to too much", word, zipOf({{"word/document.xml", huge}}), F::TooLarge},
        {"many parts that do", odt,
         zipOf({{"content.xml", huge}, {"styles.xml", huge}, {"meta.xml", huge}}), F::TooLarge},
        {"chapter that does, before the list of chapters", epub,
         zipOf({{"a.xhtml", huge}, {"b.opf", "<package/>"}}), F::TooLarge},
        {"list of chapters that does", epub, zipOf({{"b.opf", "<package>" + huge + "</package>"}}),
         F::TooLarge},
        {"parts that overlap", odt, overlappingZip("content.xml", 5000), F::Damaged},
        {"parts that overlap in an archive", zip, overlappingZip("a.txt", 5000), {}},
        {"archives in archives", zip, zipInZip(6), {}},
        {"an archive of hardly more than zeros",
         QStringLiteral("org.gnu.gnu-zip-tar-archive"),
         tarballOf({{"zeros", QByteArray(48 << 20, '\0')}}),
         {}},
        {"a tarball that is cut", QStringLiteral("org.gnu.gnu-zip-tar-archive"),
         tarballOf({{"a.txt", QByteArray(1 << 20, 'x')}}).first(200), F::Damaged},
        {"entities that grow", svg, bomb(), F::Unsupported},
        {"the same in an office file", word, zipOf({{"word/document.xml", bomb()}}),
         F::Unsupported},
        {"text that breaks off in an office file", word,
         zipOf({{"word/document.xml", "<w:document><w:p><w:t>x</w:t>"}}), F::Damaged},
        {"elements nested deeply", flat, xml + QByteArray("<text:p>").repeated(1'000'000),
         F::TooLarge},
        {"external entity", svg,
         xml + "<!DOCTYPE svg [<!ENTITY x SYSTEM "
               "\"file:///etc/passwd\">]><svg><text>&x;</text></svg>",
         F::Unsupported},
        {"tags nested deeply", html, QByteArray("<div>").repeated(1'000'000), {}},
        {"formatting nested deeply", html, QByteArray("<b><i><a>").repeated(300'000) + "text", {}},
        {"groups nested deeply", rtf, "{\\rtf1" + QByteArray("{").repeated(1'000'000) + "x", {}},
        {"mail nested deeply", mail, nestedMail(100'000), {}},
        {"pages in a loop", pdf, loopingPdf(), F::Damaged},
        {"sectors in a loop", doc, loopingCompound(), F::Damaged},
        {"encrypted PDF", pdf, encryptedPdf(), F::Encrypted},
        {"encrypted older document", doc, compoundOf({{QStringLiteral("WordDocument"), wordHead}}),
         F::Encrypted},
        {"encrypted newer document", word, compoundOf({{QStringLiteral("EncryptedPackage"), "x"}}),
         F::Encrypted},
        {"encrypted open document", odt,
         zipOf({{"content.xml", "x"}, {"META-INF/manifest.xml", "<m:encryption-data/>"}}),
         F::Encrypted},
        {"empty document", word, {}, F::Damaged},
        {"empty PDF", pdf, {}, F::Damaged},
        {"empty archive file", zip, {}, F::Damaged},
        {"empty picture", QStringLiteral("public.jpeg"), {}, F::Damaged},
        {"camera's file cut in its head", raw, QByteArray("II*\0\0\1\0\0", 8) + QByteArray(50, 'x'),
         F::Damaged},
        {"camera's file of a kind that nobody knows", raw, "a head of its own", F::Unsupported},
        {"empty text", QStringLiteral("public.plain-text"), {}, {}},
        {"no document at all", word, "this is no archive", F::Damaged},
        {"archive without a document", word, zipOf({{"a.txt", "x"}}), F::Damaged},
        {"cut short", word, docx.first(docx.size() / 2), F::Damaged},
        {"mail without a header", mail, "\x01\x02\x03", F::Damaged},
        {"card that is none", QStringLiteral("public.vcard"), "nothing", F::Damaged},
        {"calendar that is none", QStringLiteral("com.apple.ical.ics"), "nothing", F::Damaged},
    };
    for (const Hostile &row : rows)
        EXPECT_EQ(ReaderFile(row.type, row.bytes).read().failure, row.failure) << row.name;
}

// What is called otherwise than it is gets read as what it is.
TEST(HostileDocuments, AreReadByWhatTheyAre)
{
    const QByteArray page = "<!DOCTYPE html><html><body>words</body></html>";
    const QByteArray rich = "{\\rtf1 words}";
    const QByteArray open =
        zipOf({{"word/document.xml", "<w:document><w:p><w:t>words</w:t></w:p></w:document>"}});
    const QString text = QStringLiteral("words");
    expectRead({
        {"rtf as doc", doc, rich, {}, text, {}, 0},
        {"html as xls", QStringLiteral("com.microsoft.excel.xls"), page, {}, text, {}, 0},
        {"docx as doc", doc, open, {}, text, {}, 0},
        {"html as docx", word, page, {}, text, {}, 0},
        {"rtf as odt", odt, rich, {}, text, {}, 0},
    });
}

// Real documents with bytes changed and ends cut off never end the reader, whatever it answers.
TEST(HostileDocuments, NeverEndTheReader)
{
    const std::pair<QString, QByteArray> documents[] = {
        {pdf, pdfOf({"one", "two"}, "/Title(T)")},
        {word, zipOf({{"word/document.xml", "<w:document><w:p><w:t>x</w:t></w:p></w:document>"},
                      {"docProps/core.xml", "<c><dc:title>t</dc:title></c>"}})},
        {doc, compoundOf({{QStringLiteral("WordDocument"), QByteArray(6000, 'x')},
                          {QStringLiteral("\u0005SummaryInformation"), QByteArray(300, '\x02')}})},
        {QStringLiteral("com.microsoft.excel.xls"),
         compoundOf(
             {{QStringLiteral("Workbook"),
               little16(0x0809) + little16(4) + little32(0x0600) + QByteArray(200, '\xFC')}})},
        {mail, nestedMail(20)},
        {QStringLiteral("public.vcard"), "BEGIN:VCARD\nN;ENCODING=QUOTED-PRINTABLE:=\nA;B\n"},
    };
    QRandomGenerator random(7);
    for (const auto &[type, bytes] : documents) {
        for (int round = 0; round < 60; ++round) {
            QByteArray broken = bytes;
            for (int i = 0; i < 1 + round / 10; ++i)
                broken[random.bounded(static_cast<int>(broken.size()))] =
                    static_cast<char>(random.bounded(256));
            if (round % 3 == 0)
                broken.truncate(random.bounded(static_cast<int>(broken.size())));
            EXPECT_LE(ReaderFile(type, broken).read().text.utf8().size(),
                      DocumentText::maximumBytes);
        }
    }
}

#include "PlainTextReader.h"
#include "ReaderFile.h"

#include <QIODevice>
#include <gtest/gtest.h>

TEST(DocumentText, IsCutBetweenCharacters)
{
    const struct
    {
        const char *name;
        qsizetype limit;
        std::vector<QByteArray> pieces;
        QByteArray text;
        bool full;
    } rows[] = {
        {"fits", 5, {"abc", "de"}, "abcde", false},
        {"one too many", 5, {"abc", "def"}, "abcde", true},
        {"inside two bytes", 4, {"abc\xC3\xBC"}, "abc", true},
        {"inside four bytes", 6, {"abc\xF0\x9F\x98\x80"}, "abc", true},
        {"nothing after the cut", 4, {"abc\xC3\xBC", "x"}, "abc", true},
        {"no UTF-8", 9, {"a\xFFz"}, "a\xEF\xBF\xBDz", false},
        {"no UTF-8 at the cut", 5, {"abc\xFFz"}, "abc", true},
        {"zero byte", 9, {QByteArray("a\0b", 3)}, "a b", false},
        {"much too long", 4, {QByteArray(5000, 'a')}, "aaaa", true},
    };
    for (const auto &row : rows) {
        DocumentText text(row.limit);
        for (const QByteArray &piece : row.pieces)
            text.append(QByteArrayView(piece));
        EXPECT_EQ(text.utf8(), row.text) << row.name;
        EXPECT_EQ(text.isFull(), row.full) << row.name;
    }
    DocumentText lines;
    lines.newLine();
    lines.append(u"one");
    lines.newLine();
    lines.newLine();
    const QString odd = QStringLiteral("tw\u00F6") + QChar(0xD800);
    lines.append(odd);
    EXPECT_EQ(lines.utf8(), "one\ntw\xC3\xB6?");
}

TEST(DocumentSource, ReadsInsideTheFile)
{
    const ReaderFile file(QStringLiteral("public.plain-text"), "0123456789");
    const DocumentSource source = file.source();
    EXPECT_EQ(source.read(8, 1 << 30).valueOr({}), "89");
    EXPECT_EQ(source.read(20, 5).valueOr("x"), "");
    EXPECT_EQ(source.readAll(10).valueOr({}), "0123456789");
    EXPECT_EQ(source.readAll(9).error().kind, XPError::Kind::TooLarge);
    EXPECT_TRUE(source.conformsTo(u"public.text"));
    const auto device = source.device();
    ASSERT_TRUE(device->seek(4));
    EXPECT_EQ(device->read(3), "456");
    EXPECT_EQ(device->readAll(), "789");
    EXPECT_TRUE(device->atEnd());
}

TEST(PlainTextReader, ReadsWhatIsText)
{
    const QByteArray utf16("\xFF\xFEh\0i\0 \0\xFC\0", 10);
    const struct
    {
        const char *name;
        QByteArray bytes;
        bool cut;
        QByteArray text;
    } rows[] = {
        {"utf8", "gr\xC3\xBC\xC3\x9F", false, "gr\xC3\xBC\xC3\x9F"},
        {"latin1", "gr\xFC\xDF", false, "gr\xC3\xBC\xC3\x9F"},
        {"utf16", utf16, false, "hi \xC3\xBC"},
        {"cut in two bytes", "abc\xC3", true, "abc"},
        {"cut in four bytes", "abc\xF0\x9F\x98", true, "abc"},
        {"not cut", "abc\xC3", false, "abc\xC3\x83"},
        {"whole at the cut", "ab\xC3\xBC", true, "ab\xC3\xBC"},
        {"zero bytes", QByteArray("ab\0cd", 5), false, {}},
        {"controls", QByteArray(40, '\x02') + QByteArray(40, 'a'), false, {}},
        {"terminal colours", "\x1B[31mred\x1B[0m\r\n\ttab", false, "\x1B[31mred\x1B[0m\r\n\ttab"},
        {"mark alone", "\xFF\xFE", false, {}},
        {"empty", {}, false, {}},
    };
    for (const auto &row : rows)
        EXPECT_EQ(PlainTextReader::decoded(row.bytes, row.cut), row.text) << row.name;

    const ReaderFile large(QStringLiteral("public.c-source"), QByteArray(3 << 20, 'a'));
    EXPECT_EQ(large.read().text.utf8().size(), DocumentText::maximumBytes);
    const ReaderFile markdown(QStringLiteral("net.daringfireball.markdown"),
                              "text\n# The title \n");
    EXPECT_EQ(markdown.read().title, u"The title");
    EXPECT_EQ(markdown.text(), u"text\n# The title \n");
}

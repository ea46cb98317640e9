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

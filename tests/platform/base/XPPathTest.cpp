#include "XPPath.h"

#include <gtest/gtest.h>
#include <random>

TEST(XPPath, EveryNameEncodesBackToItsBytes)
{
    std::mt19937 random(7);
    const QByteArray alphabet("a\x80\xc3\xa9\xed\xa0\xb2\xf0\x9f\x98\x80\xff", 12);
    for (int round = 0; round < 20000; ++round) {
        QByteArray name;
        const size_t length = 1 + random() % 12;
        for (size_t i = 0; i < length; ++i)
            name.append(alphabet[static_cast<qsizetype>(random() % 12)]);
        ASSERT_EQ(XPPath::encode(XPPath::decode(name)), name) << name.toHex().toStdString();
    }
}

TEST(XPPath, ATextWithoutBytesEncodesToNothing)
{
    EXPECT_TRUE(XPPath::encode({}).isEmpty());
    EXPECT_TRUE(XPPath::encode(QStringLiteral("/a") + QChar(0) + u'b').isEmpty());
    EXPECT_TRUE(XPPath::encode(QString(QChar(char16_t{0xD800}))).isEmpty());
    EXPECT_TRUE(XPPath::encode(QString(QChar(char16_t{0xDC7F}))).isEmpty());
}

TEST(XPPath, PartsOfAPath)
{
    EXPECT_EQ(XPPath::extension(QStringLiteral("/a.b/c")), QString());
    EXPECT_EQ(XPPath::extension(QStringLiteral("/a/.profile")), QString());
    EXPECT_EQ(XPPath::extension(QStringLiteral("/a/b.tar.gz")), QStringLiteral("gz"));
    EXPECT_EQ(XPPath::folder(QStringLiteral("/a")), QStringLiteral("/"));
    EXPECT_EQ(XPPath::absolute(QStringLiteral("//a/./b//c/../d")), QStringLiteral("/a/b/c/../d"));
}

TEST(XPPath, PrintableShowsWhatATerminalWouldObey)
{
    const QString hostile = XPPath::decode("a\x1b[2J\n\xff") + QChar(char16_t{0x202E}) + u'b';
    EXPECT_EQ(XPPath::printable(hostile), QStringLiteral("a\\x1b[2J\\n\\xff\\u202eb"));
}

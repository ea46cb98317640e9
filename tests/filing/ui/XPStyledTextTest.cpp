// Here, as fonts need an application with a face.
#include "XPStyledText.h"

#include "TestHome.h"

#include <QBuffer>
#include <QImage>
#include <QUrl>
#include <gtest/gtest.h>

static QByteArray picture()
{
    QImage image(3, 2, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

static int picturesIn(const QByteArray &openDocument)
{
    // Each is listed at its place and in the directory at the end.
    return static_cast<int>(openDocument.count("Pictures/")) / 2;
}

TEST(StyledText, KeepsWordsAndThePicturesThatCameWithThem)
{
    const auto made = XPStyledText::fromHtml("<h1>Gr\xC3\xBC\xC3\x9F"
                                             "e</h1><script>evil()</script><p>and <b>more</b>"
                                             "<img src='data:image/png;base64," +
                                             picture().toBase64() + "'></p>");
    ASSERT_TRUE(made);
    EXPECT_TRUE(made->characters.startsWith(QString::fromUtf8("Grüße\nand more")));
    EXPECT_FALSE(made->characters.contains(u"evil"));
    EXPECT_TRUE(made->openDocument.startsWith("PK"));
    EXPECT_EQ(picturesIn(made->openDocument), 1);
}

TEST(StyledText, ReadsNoFileAndFetchesNothing)
{
    const TestFolder folder;
    const QString file = folder.file(QStringLiteral("secret.png"), picture());
    for (const QByteArray &address :
         {file.toUtf8(), QUrl::fromLocalFile(file).toEncoded(),
          QByteArray("http://127.0.0.1:9/x.png"), QByteArray("secret.png"),
          QByteArray(":/icons/x.svg"), QByteArray("data:image/svg+xml,<svg/>"),
          QByteArray("data:image/png;base64,AAAA")}) {
        const auto made = XPStyledText::fromHtml("<base href='file://" + folder.path().toUtf8() +
                                                 "/'><p>a<img src='" + address + "'>b</p>");
        ASSERT_TRUE(made) << address.constData();
        EXPECT_EQ(picturesIn(made->openDocument), 0) << address.constData();
        EXPECT_EQ(made->characters, u"ab") << address.constData();
    }
}

TEST(StyledText, RefusesWhatIsNestedWithoutEnd)
{
    for (const QByteArray &box :
         {QByteArray("<table><tr><td>"), QByteArray("<UL><li>"), QByteArray("<div><div></div>")}) {
        EXPECT_EQ(XPStyledText::fromHtml(box.repeated(20'000)).error().kind,
                  XPError::Kind::Malformed);
        EXPECT_TRUE(XPStyledText::fromHtml(box.repeated(50) + "x"));
    }
    EXPECT_TRUE(XPStyledText::fromHtml(QByteArray("<ul><li>x</ul>").repeated(200)));
}

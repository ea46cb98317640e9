#include "XPPasteboardSupport.h"

#include "FiledFolder.h"
#include "XPNewFile.h"
#include "XPPropertyList.h"
#include "XPRtfText.h"
#include "XPTranslations.h"

#include <QBuffer>
#include <QImage>
#include <QMimeData>
#include <sys/stat.h>

using Kind = XPPasteboard::Kind;

namespace {

QByteArray picture(const char *format)
{
    QImage image(3, 2, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

QByteArray utf16(const char *text)
{
    const QString decoded = QString::fromUtf8(text);
    return {reinterpret_cast<const char *>(decoded.utf16()), decoded.size() * 2};
}

struct Offer
{
    const char *type;
    QByteArray bytes;
};

class Pasteboard : public FiledFolder
{
protected:
    XPResult<QStringList> import(const QList<Offer> &offers, const QString &name = {}) const
    {
        QMimeData data;
        for (const Offer &offer : offers)
            data.setData(QLatin1String(offer.type), offer.bytes);
        EXPECT_TRUE(XPPasteboardSupport::canImportFromPB(&data));
        XPPasteboard pb = XPPasteboard::from(&data);
        if (!name.isEmpty())
            pb.setUrlName(name);
        return XPPasteboardSupport::importFromPB(pb, m_folder.path());
    }
    // The name of the one file that was written.
    QString imported(const QList<Offer> &offers, const QString &name = {}) const
    {
        const auto paths = import(offers, name);
        if (!paths || paths->size() != 1)
            return paths ? QStringLiteral("(%1)").arg(paths->size()) : paths.error().message;
        EXPECT_TRUE(XPFiledDocuments::isManaged(paths->first()));
        EXPECT_EQ(XPPath::folder(paths->first()), m_folder.path());
        return XPPath::fileName(paths->first());
    }
};

} // namespace

TEST_F(Pasteboard, TheFirstKindThatMatchesIsImported)
{
    const Offer png{"image/png", picture("PNG")};
    const Offer jpeg{"image/jpeg", picture("JPG")};
    const Offer html{"text/html", "<b>hi</b>"};
    const Offer mail{"message/rfc822", "From: a\r\nSubject: Offer\r\n\r\ntext"};
    const Offer text{"text/plain", "twenty-one characters"};
    const Offer rtf{"text/rtf", "{\\rtf1 Letter to you}"};
    const Offer pdf{"application/pdf", "%PDF-1.4 ..."};
    EXPECT_EQ(imported({png, html, mail, text}), u"Offer.eml");
    EXPECT_EQ(imported({jpeg, text, html}), u"Image.png");
    EXPECT_EQ(imported({png, text}), u"Image 1.png");
    EXPECT_EQ(imported({text, rtf, pdf}), u"twenty-one characters.rtf");
    EXPECT_EQ(imported({text, pdf}), u"twenty-one characters.txt");
    EXPECT_EQ(imported({text}), u"twenty-one characters 1.txt");
    EXPECT_EQ(imported({rtf}), u"Letter to you.rtf");
    EXPECT_EQ(imported({{"text/rtf", "{\\rtf1 ab}"}}), u"document.rtf");
    EXPECT_EQ(imported({pdf}), u"imported PDF.pdf");
    EXPECT_EQ(imported({pdf}, QStringLiteral("Bill.pdf")), u"Bill.pdf");
    EXPECT_EQ(import({{"text/plain", "twenty characters..."}})->size(), 0);
    EXPECT_EQ(bytesOf(m_folder.path(QStringLiteral("Offer.eml"))), mail.bytes);
    EXPECT_EQ(bytesOf(m_folder.path(QStringLiteral("Image 1.png"))), png.bytes);
    EXPECT_FALSE(QImage(m_folder.path(QStringLiteral("Image.png"))).isNull());
}

TEST_F(Pasteboard, FilesStayWhereTheyAre)
{
    const QString path = file("odd name.pdf");
    QByteArray heard;
    auto &center = XPNotificationCenter::instance();
    const auto observer = center.addObserver(
        XPPasteboardSupport::fileListImportNotification,
        [&heard](const XPNotification &notification) {
            heard = XPPath::encode(
                std::get<PropertyValue>(notification.object).array().value(0).string());
        });
    const auto paths =
        import({{"text/uri-list", "file://" + XPPath::encode(path).toPercentEncoding("/")},
                {"text/plain", XPPath::encode(path)}});
    EXPECT_EQ(*paths, QStringList{path});
    EXPECT_EQ(heard, XPPath::encode(path));
}

TEST_F(Pasteboard, AnHttpLinkIsAWebLocationAndAnotherIsText)
{
    const QByteArray link = "http://example.org/a/long/enough/page.html";
    EXPECT_EQ(imported({{"text/x-moz-url",
                         utf16("http://example.org/a/long/enough/page.html\nThe: Page")},
                        {"text/html", "<a href=x>y</a>"},
                        {"text/plain", link}}),
              u"The  Page.webloc");
    const auto list =
        XPPropertyList::read(bytesOf(m_folder.path(QStringLiteral("The  Page.webloc"))));
    ASSERT_TRUE(list);
    EXPECT_EQ(list->dictionary().value(QStringLiteral("URL")).string(), QString::fromUtf8(link));
    EXPECT_EQ(imported({{"text/uri-list", "# c\r\n" + link}}), u"URL.webloc");
    EXPECT_EQ(imported({{"_NETSCAPE_URL", "https://example.org/page.html\nTitle"}}),
              u"https   example.org page.html.txt");
}

TEST_F(Pasteboard, WhatCannotBeReadIsAnErrorAndLeavesNothing)
{
    QByteArray cut = picture("PNG");
    cut.chop(cut.size() / 2);
    EXPECT_FALSE(import({{"image/png", cut}}));
    EXPECT_FALSE(import({{"application/pdf", "no such thing"}}));
    EXPECT_EQ(QDir(m_folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList());
}

TEST_F(Pasteboard, WhatComesToTodaysFolderIsTold)
{
    int told = 0;
    const auto observer = XPNotificationCenter::instance().addObserver(
        XPPasteboardSupport::addedNotification, [&told](const XPNotification &) { ++told; });
    const auto paths = XPPasteboardSupport::importFromPBToFiledDocuments(
        XPPasteboard::of(QStringLiteral("text/plain"), "twenty-one characters"));
    EXPECT_EQ(*paths, QStringList{today("twenty-one characters.txt")});
    EXPECT_EQ(told, 1);
}

struct Title
{
    const char *text, *title;
};

TEST(PasteboardTitles, AreNamesOfFiles)
{
    for (const Title &row :
         {Title{".. Report: Q1/Q2 ..", " Report  Q1 Q2 "}, Title{" a\\b\tc\nd ", "a b c d"},
          Title{"../../x", " .. x"}, Title{"...", ""}, Title{"nul\1\x7F!", "nul  !"}})
        EXPECT_EQ(XPPasteboardSupport::cleanupDocTitle(QString::fromUtf8(row.text)).toStdString(),
                  row.title);
}

TEST(PasteboardTitles, ComeFromASubjectOrTheBeginning)
{
    XPTranslations::install(QLocale(QLocale::English));
    const QString sixty(60, u'x');
    EXPECT_EQ(XPPasteboardSupport::findSubject(QStringLiteral("To: a\nSubject: b\nc")), u" b");
    EXPECT_EQ(XPPasteboardSupport::findSubject(QStringLiteral("Subject:") + sixty + u'y'), sixty);
    EXPECT_EQ(XPPasteboardSupport::findSubject(QStringLiteral("none")), std::nullopt);
    EXPECT_EQ(XPPasteboardSupport::titleOf(sixty).size(), 50);
    EXPECT_EQ(
        XPPasteboardSupport::titleOf(QString(49, u'x') + QString::fromUtf8("\xF0\x9F\x93\x84"))
            .size(),
        49);
    for (const char *none : {"", "ab", "///", "....", "Subject:ab\nlong enough"})
        EXPECT_EQ(XPPasteboardSupport::titleOf(QString::fromUtf8(none)), u"document") << none;
}

TEST(RtfText, IsWhatAReaderSees)
{
    for (const Title &row :
         {Title{"{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}{\\*\\generator x;}\\f0 One\\par Two}",
                "One\nTwo"},
          Title{"{\\rtf1 M\\'fcller \\u8364? \\{x\\}}", "Müller € {x}"},
          Title{"{\\rtf1{\\info{\\title t}}\\uc0\\u233 t\\u233", "été"}, Title{"\\", ""},
          Title{"}}}{{{\\'", "?"}, Title{"\\u-3913?z", "\xEF\x82\xB7z"}})
        EXPECT_EQ(XPRtfText::characters(row.text, 100).toStdString(), row.title) << row.text;
}

TEST(NewFile, AppearsWholeOrNotAtAll)
{
    const TestFolder folder;
    const QString stem(300, QChar(0xE4));
    const auto first = XPNewFile::write(folder.path(), stem, QStringLiteral("txt"), "one");
    const auto second = XPNewFile::write(folder.path(), stem, QStringLiteral("txt"), "two");
    ASSERT_TRUE(first && second);
    EXPECT_NE(*first, *second);
    EXPECT_TRUE(second->endsWith(u" 1.txt"));
    const auto info = XPFileInfo::read(*first);
    EXPECT_EQ(info->size, 3);
    const mode_t mask = ::umask(0);
    ::umask(mask);
    EXPECT_EQ(info->mode & 07777, 0666 & ~mask);
    // A file stands where the folder should be.
    EXPECT_FALSE(XPNewFile::write(*first, stem, QStringLiteral("txt"), "three"));
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 2);
}

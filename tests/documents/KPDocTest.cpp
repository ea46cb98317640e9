#include "KPDocCache.h"

#include "KPFileType.h"
#include "Karvex.h"
#include "TestHome.h"
#include "XPExtendedAttributes.h"
#include "XPFolders.h"
#include "XPPropertyList.h"
#include "XPTranslations.h"

#include <QLocale>
#include <gtest/gtest.h>

namespace {

KPDoc *docOf(const QString &path, quint32 mode, qint64 size = 0)
{
    XPFileInfo info;
    info.mode = mode;
    info.size = size;
    return KPDocCache::docAtPath(path, &info);
}

struct Size
{
    quint32 mode;
    const char *name;
    qint64 size;
    const char *group;
};

} // namespace

TEST(Doc, HasASizeGroup)
{
    constexpr Size rows[] = {
        {S_IFREG, "a", 0, "KPGroupNameZeroLength"},
        {S_IFREG, "a", 1, "KPGroupNameLessThan10k"},
        {S_IFREG, "a", 9'999, "KPGroupNameLessThan10k"},
        {S_IFREG, "a", 10'000, "KPGroupNameLessThan100k"},
        {S_IFREG, "a", 999'999, "KPGroupNameLessThan1MB"},
        {S_IFREG, "a", 19'999'999, "KPGroupNameLessThan20MB"},
        {S_IFREG, "a", 20'000'000, "KPGroupNameLessThan50MB"},
        {S_IFREG, "a", 50'000'000, "KPGroupNameLessThan100MB"},
        {S_IFREG, "a", 999'999'999, "KPGroupNameLessThan1GB"},
        {S_IFREG, "a", 1'000'000'000, "KPGroupNameMoreThan1GB"},
        {S_IFDIR, "a.folder", 4096, "KPGroupNameFolder"},
        {S_IFDIR, "a.rtfd", 4096, "KPGroupNamePackage"},
    };
    for (const Size &row : rows) {
        const KPDoc *doc =
            docOf(QStringLiteral("/sizes/") + QLatin1String(row.name), row.mode, row.size);
        EXPECT_EQ(doc->fileSizeGroup(), QLatin1String(row.group)) << row.size;
    }
}

TEST(Doc, HasAnotherTypeWhenTheFileIsAnother)
{
    const TestFolder folder;
    KPDoc *doc = KPDocCache::docAtPath(folder.file(QStringLiteral("letter"), "Dear all,\n"));
    EXPECT_NE(doc->fileType(), QStringLiteral("com.adobe.pdf"));
    (void)folder.file(QStringLiteral("letter"), "%PDF-1.4\n%\xE2\xE3\xCF\xD3\n");
    doc->updateFileInfo();
    EXPECT_EQ(doc->fileType(), QStringLiteral("com.adobe.pdf"));
}

// The file changes while its type is being found out.
TEST(Doc, DoesNotKeepWhatWasFoundOutTooLate)
{
    const TestFolder folder;
    KPDoc *doc = KPDocCache::docAtPath(folder.file(QStringLiteral("unknown"), ""));
    int asked = 0;
    KPFileType::setIndexLookup([&](const QString &) {
        if (++asked > 1)
            return QStringLiteral("public.jpeg");
        XPFileInfo info = doc->facts();
        ++info.size;
        doc->updateFromLStat(info);
        return QStringLiteral("com.adobe.pdf");
    });
    (void)doc->fileType();
    EXPECT_EQ(doc->fileType(), QStringLiteral("public.jpeg"));
    EXPECT_EQ(doc->fileType(), QStringLiteral("public.jpeg"));
    EXPECT_EQ(asked, 2);
    KPFileType::setIndexLookup({});
}

TEST(Doc, RoundsRatingsToStars)
{
    EXPECT_EQ(KPDoc::ratingsToStars(2.5), 3);
    EXPECT_EQ(KPDoc::ratingsToStars(2.49), 2);
    EXPECT_EQ(KPDoc::ratingsToStars(0), 0);
    EXPECT_EQ(KPDoc::ratingsToStars(1e300), 5);
    EXPECT_EQ(KPDoc::ratingsToStars(-7), 0);
}

TEST(Doc, KnowsWhetherTheFileIsManaged)
{
    const TestFolder folder;
    const auto docWith = [&](const char *name, const QString &key, const QByteArray &bytes) {
        const QString path = folder.file(QLatin1String(name));
        EXPECT_FALSE(XPExtendedAttributes::write(path, key, bytes));
        return KPDocCache::docAtPath(path);
    };
    const auto binary = [](bool value) {
        return XPPropertyList::writeBinary(PropertyValue::boolean(value)).valueOr({});
    };
    ASSERT_EQ(binary(true).size(), 42);
    const QString key = Karvex::spotlightKey(Karvex::managedKey);
    const QString older = Karvex::karvexKey(Karvex::managedKey);
    EXPECT_TRUE(docWith("true", key, binary(true))->isManaged());
    EXPECT_FALSE(docWith("false", key, binary(false))->isManaged());
    EXPECT_TRUE(docWith("older", older, binary(true))->isManaged());
    const auto xml = XPPropertyList::writeXml(PropertyValue::boolean(true)).valueOr({});
    EXPECT_TRUE(docWith("xml", key, xml)->isManaged()) << "not the fast way";
    const auto number = XPPropertyList::writeBinary(PropertyValue::integer(1)).valueOr({});
    EXPECT_TRUE(docWith("number", key, number)->isManaged());
    EXPECT_FALSE(docWith("garbage", key, "x")->isManaged());
    EXPECT_FALSE(docWith("long", key, QByteArray(500, 'x'))->isManaged());
    EXPECT_FALSE(KPDocCache::docAtPath(folder.file(QStringLiteral("none")))->isManaged());
    EXPECT_FALSE(KPDocCache::docAtPath(folder.path(QStringLiteral("no file")))->isManaged());
}

TEST(Doc, ShowsItsFolder)
{
    XPTranslations::install(QLocale(QLocale::English));
    const QString home = XPFolders::home();
    const auto shown = [](const QString &path) {
        return docOf(path, S_IFREG)->parentFolderForDisplay();
    };
    EXPECT_EQ(shown(home + QStringLiteral("/a.pdf")), u"Home");
    EXPECT_EQ(shown(home + QStringLiteral("/Documents/2026/a.pdf")), u"Documents • 2026");
    EXPECT_EQ(shown(home + QStringLiteral("2/x/a.pdf")).right(3), u"• x") << "not in the home";
    EXPECT_EQ(shown(QStringLiteral("/srv/scans/a.pdf")), u"srv • scans");
    EXPECT_EQ(shown(QStringLiteral("/a.pdf")), u"/");
    EXPECT_EQ(docOf(home + QStringLiteral("/Documents/a.pdf"), S_IFREG)->compactFolderPath(),
              u"~/Documents");
}

TEST(Doc, DescribesAHostileNameAsText)
{
    const KPDoc *doc = docOf(QStringLiteral("/x/<b>&\u202e\".pdf"), S_IFREG, 1000);
    const QString row = doc->htmlTableLineDescriptionForTable(true, false);
    EXPECT_TRUE(row.startsWith(u"<tr><td>&lt;b&gt;&amp;\\u202e&quot;.pdf</td>")) << qPrintable(row);
    EXPECT_FALSE(doc->descriptionForUser().contains(QChar(0x202E)));
    EXPECT_EQ(doc->pageCountString(), u"-");
}

TEST(Doc, SumsUpWhatIsInAFolder)
{
    const TestFolder folder;
    (void)folder.file(QStringLiteral("p.rtfd/TXT.rtf"), "12345");
    (void)folder.file(QStringLiteral("p.rtfd/deep/pic.png"), "123");
    KPDoc *package = KPDocCache::docAtPath(folder.path(QStringLiteral("p.rtfd")));
    EXPECT_EQ(package->actualFileSize(), 8);
    EXPECT_TRUE(package->isPackage());
    package->addResourceForkInfoToSize();
    EXPECT_EQ(package->fileSize(), package->unixFileSize());
}

TEST(Doc, FindsWordsInTheName)
{
    // Precomposed on disk; what is typed comes decomposed.
    const KPDoc *doc = docOf(QStringLiteral("/x/R\u00e9sum\u00e9 2026.pdf"), S_IFREG);
    EXPECT_TRUE(
        doc->searchForText(QStringLiteral("RE\u0301S"), false, QStringLiteral("re\u0301s")));
    EXPECT_FALSE(
        doc->searchForText(QStringLiteral("pdf document"), false, QStringLiteral("pdf document")));
    EXPECT_TRUE(doc->searchForText(QStringLiteral("PDF"), true, QStringLiteral("pdf")));
}

#include "XPFiledDocuments.h"
#include "Karvex.h"
#include "TestHome.h"
#include "UserDefaults.h"
#include "XPFileInfo.h"
#include "XPFolders.h"
#include "XPPath.h"

#include <QDir>
#include <QTimeZone>
#include <gtest/gtest.h>

// Each test starts without a managed folder.
class FiledDocumentsPlaces : public testing::Test
{
protected:
    void SetUp() override
    {
        for (const QString &key :
             {XPFiledDocuments::preferredPathKey, XPFiledDocuments::useYearMonthKey})
            UserDefaults::standard().remove(key);
        QDir(XPFolders::documents()).removeRecursively();
        XPFiledDocuments::rebuildFiledDocsPath();
    }
    void TearDown() override { SetUp(); }

    static QString usual() { return XPFolders::documents() + QStringLiteral("/Filed Documents"); }
    static bool exists(const QString &path) { return XPFileInfo::read(path).hasValue(); }

    const QDateTime m_day{{2013, 6, 14}, {12, 0}};
};

TEST_F(FiledDocumentsPlaces, TheDesktopStandsInForAFolderThatIsNotInUse)
{
    EXPECT_FALSE(XPFiledDocuments::usesFiledDocuments());
    EXPECT_FALSE(exists(XPFolders::desktop()));
    EXPECT_EQ(XPFiledDocuments::currentFiledDocumentsPath(m_day), XPFolders::desktop());
    EXPECT_TRUE(exists(XPFolders::desktop())) << "where something is to be filed";
    EXPECT_EQ(XPFiledDocuments::currentFiledDocumentsPathMonth(m_day), XPFolders::desktop());
    const QString file = XPFolders::desktop() + QStringLiteral("/a.pdf");
    EXPECT_TRUE(XPFiledDocuments::pathIsAlreadyInGoodPlaceInFiledDocuments(file));
    EXPECT_FALSE(exists(usual()));
}

TEST_F(FiledDocumentsPlaces, AScopeNeverMakesAFolder)
{
    UserDefaults::standard().setValue(XPFiledDocuments::preferredPathKey,
                                      QStringLiteral("~/Documents/Kept"));
    const QString kept = XPFolders::documents() + QStringLiteral("/Kept");
    EXPECT_EQ(XPFiledDocuments::filedDocumentsRootIfPresent(), kept);
    EXPECT_TRUE(XPFiledDocuments::pathIsInFiledDocuments(kept + QStringLiteral("/a")));
    EXPECT_FALSE(exists(kept));
    EXPECT_EQ(XPFiledDocuments::filedDocumentsRoot(), kept);
    EXPECT_TRUE(exists(kept));
    UserDefaults::standard().setValue(XPFiledDocuments::preferredPathKey,
                                      QStringLiteral("~/Documents/Other"));
    EXPECT_EQ(XPFiledDocuments::filedDocumentsRoot(),
              XPFolders::documents() + QStringLiteral("/Other"));
}

TEST_F(FiledDocumentsPlaces, DatedFoldersAreMadeAndAreNoDocuments)
{
    QDir().mkpath(usual());
    const QString day = XPFiledDocuments::currentFiledDocumentsPath(m_day);
    EXPECT_EQ(day, usual() + QStringLiteral("/2013/6/14"));
    EXPECT_TRUE(exists(day));
    const auto mark = Karvex::getXAttrMetaData(Karvex::managedKey, day);
    ASSERT_TRUE(mark);
    EXPECT_EQ(*mark, PropertyValue::boolean(false));
    EXPECT_EQ(XPFiledDocuments::currentFiledDocumentsPathMonth(m_day),
              usual() + QStringLiteral("/2013/6"));
    EXPECT_EQ(XPFiledDocuments::filedDocumentsPathForDate({}),
              usual() + QStringLiteral("/2000/1/1"));

    UserDefaults::standard().setValue(XPFiledDocuments::useYearMonthKey,
                                      PropertyValue::boolean(true));
    EXPECT_EQ(XPFiledDocuments::currentFiledDocumentsPath(m_day),
              usual() + QStringLiteral("/2013/6"));
    EXPECT_EQ(XPFiledDocuments::currentFiledDocumentsPathMonth(m_day),
              usual() + QStringLiteral("/2013/6"));
}

TEST_F(FiledDocumentsPlaces, AGoodPlaceIsADayWhateverTheLayout)
{
    QDir().mkpath(usual());
    for (const bool months : {false, true}) {
        UserDefaults::standard().setValue(XPFiledDocuments::useYearMonthKey,
                                          PropertyValue::boolean(months));
        const auto isGood = [](const char *name) {
            return XPFiledDocuments::pathIsAlreadyInGoodPlaceInFiledDocuments(
                usual() + QString::fromLatin1(name));
        };
        EXPECT_TRUE(isGood("/2013/6/14/a.pdf"));
        EXPECT_FALSE(isGood("/2013/6/a.pdf"));
        EXPECT_FALSE(isGood("/a.pdf"));
        EXPECT_FALSE(isGood("/2013/6/14/more/a.pdf"));
        EXPECT_FALSE(isGood(" 2/2013/6/14/a.pdf")); // the plain test says that this is in it
    }
}

TEST_F(FiledDocumentsPlaces, TheChosenFolderIsKeptWhenItIsOne)
{
    const TestFolder folder;
    const QString real = folder.path(QStringLiteral("real"));
    QDir().mkpath(real);
    const QString link = folder.path(QStringLiteral("link"));
    ASSERT_EQ(::symlink(XPPath::encode(real).constData(), XPPath::encode(link).constData()), 0);
    XPFiledDocuments::setFiledDocumentsPreferredPath(link);
    EXPECT_EQ(XPFiledDocuments::filedDocumentsPreferredPath(), link);
    EXPECT_EQ(XPFiledDocuments::filedDocumentsRoot(), XPFolders::realFolder(real).valueOr({}));

    XPFiledDocuments::setFiledDocumentsPreferredPath(folder.file(QStringLiteral("file")));
    EXPECT_EQ(XPFiledDocuments::filedDocumentsPreferredPath(), link);

    // A name that is no text.
    const QString odd = folder.path(XPPath::decode("\xff"));
    ASSERT_FALSE(XPFolders::create(odd));
    XPFiledDocuments::setFiledDocumentsPreferredPath(odd);
    EXPECT_EQ(XPFiledDocuments::filedDocumentsPreferredPath(), odd);
}

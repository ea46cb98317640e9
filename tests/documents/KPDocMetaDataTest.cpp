#include "KPDocMetaData.h"

#include "IndexImporters.h"
#include "KPDocCache.h"
#include "KPDocEdits.h"
#include "KPDocServices.h"
#include "KPTagDocuments.h"
#include "Karvex.h"
#include "KeptFolder.h"
#include "UserDefaults.h"
#include "XPExtendedAttributes.h"
#include "XPFileInfo.h"
#include "XPPath.h"
#include "XPPrompts.h"

#include <cstdio>
#include <thread>

using Tags = KPTagName::Tags;

namespace {

KPTagName *userTag(const char *text)
{
    return KPTagName::tagNameForUserEnteredTag(QString::fromUtf8(text));
}

// Finds a keyword of each kind in any file.
class KeywordImporter : public IndexImporter
{
public:
    bool accepts(const QString &) const override { return true; }
    XPResult<Content> import(const QByteArray &path, const QString &,
                             const std::stop_token &) override
    {
        const auto info = XPFileInfo::read(XPPath::decode(path));
        if (!info)
            return info.error();
        return Content{
            {},
            {{QStringLiteral("kMDItemKeywords"), QStringList{QStringLiteral("coast")}},
             {KPDocMetaData::key(KPDocMetaData::XmpKeywords), QStringList{QStringLiteral("sea")}}},
            info->modified,
            info->size,
            info->inode};
    }
};

// Documents whose attributes come from a live index.
class DocMetaData : public testing::Test
{
protected:
    QString tagged(const QString &name, const QStringList &tags) const
    {
        QString path = m_folder.file(name);
        EXPECT_FALSE(Karvex::setUserTags(PropertyValue(tags), path));
        return path;
    }
    void start()
    {
        xpGuiThread.assertHere();
        KPDocCache::intializeGlobals();
        KPDoc::startMetaDataSearching(m_folder.index());
    }
    ~DocMetaData() override
    {
        xpGuiThread.assertHere();
        KPDoc::stopMetaDataSearching();
        XPPrompts::install(nullptr);
    }

    KeptFolder m_folder;
};

class Alerts : public XPPrompts
{
public:
    void ask(const Question &, std::function<void(int)> answer) override { answer(0); }
    void alert(const QString &, const QString &) override { ++count; }
    static inline int count = 0;
};

} // namespace

TEST_F(DocMetaData, IsKnownWithoutReadingTheFiles)
{
    const QString path =
        tagged(QStringLiteral("a.pdf"), {QStringLiteral("Work"), QStringLiteral("flagged")});
    const QString other =
        tagged(QStringLiteral("b.pdf"), {QStringLiteral("work"), QStringLiteral("Paris")});
    start();
    KPDoc *doc = KPDocCache::docAtPath(path);
    ASSERT_TRUE(holdsSoon([&] { return doc->tagNamesOfTypeUserEntered().size() == 2; }));
    EXPECT_TRUE(doc->isFlagged());
    EXPECT_TRUE(doc->hasUserEnteredTag(userTag("WORK")));
    EXPECT_TRUE(doc->hasAllTagsLC_Pooled(
        {KPPool::pooledString(u"work"), userTag("flagged")->pooledDisplayNameLC()}));
    EXPECT_FALSE(doc->hasANYTagsLC_Pooled({KPPool::pooledString(u"paris")}));
    EXPECT_TRUE(
        doc->hasFileTypeTag(KPTagName::tagNameForUTITag(QStringLiteral("com.adobe.pdf"), {})));
    EXPECT_TRUE(doc->searchForText(QStringLiteral("flag"), true, QStringLiteral("flag")));
    EXPECT_EQ(doc->relatedTags(), Tags{userTag("Paris")});
    const auto docs = KPDocCache::allDocsWithValues(KPDocMetaData::UserTags);
    EXPECT_EQ(docs.size(), 2);
    EXPECT_TRUE(docs.contains(KPDocCache::docAtPath(other)));
}

TEST_F(DocMetaData, FollowsRenamesAndDeletions)
{
    const QString path = tagged(QStringLiteral("a.pdf"), {QStringLiteral("Work")});
    start();
    KPDoc *doc = KPDocCache::docAtPath(path);
    ASSERT_TRUE(holdsSoon([&] { return !doc->tagNamesOfTypeUserEntered().isEmpty(); }));
    const QString moved = m_folder.path(QStringLiteral("b.pdf"));
    ASSERT_EQ(std::rename(XPPath::encode(path).constData(), XPPath::encode(moved).constData()), 0);
    EXPECT_TRUE(holdsSoon([&] { return doc->filePath() == moved; }));
    EXPECT_TRUE(holdsSoon([&] { return doc->hasUserEnteredTag(userTag("Work")); }));
    EXPECT_EQ(KPDocCache::docAtPathIfExists(path), nullptr);
    ASSERT_FALSE(Karvex::setUserTags(PropertyValue(QStringList{QStringLiteral("Home")}), moved));
    EXPECT_TRUE(holdsSoon([&] { return doc->hasUserEnteredTag(userTag("Home")); }));
    ASSERT_EQ(std::remove(XPPath::encode(moved).constData()), 0);
    EXPECT_TRUE(holdsSoon([&] { return doc->isGone(); }));
}

TEST_F(DocMetaData, ShowsARatingAtOnce)
{
    const QString path = m_folder.file(QStringLiteral("a.pdf"));
    start();
    KPDoc *doc = KPDocCache::docAtPath(path);
    EXPECT_EQ(doc->rating(), 0);
    // The cache of ratings starts two seconds after that of tags.
    ASSERT_TRUE(holdsSoon([&] {
        EXPECT_FALSE(doc->setRating(7));
        return doc->rating() == 5;
    }));
    EXPECT_EQ(doc->starsToShow(), 5);
    EXPECT_EQ(Karvex::getRating(path).valueOr(0), 5);
    EXPECT_FALSE(doc->setRating(0));
    EXPECT_EQ(doc->rating(), 0);
    EXPECT_FALSE(doc->setURLs({QStringLiteral("https://example.org/")}));
    EXPECT_TRUE(holdsSoon([&] { return doc->url() == u"https://example.org/"; }))
        << "the cache starts when first asked";
}

TEST_F(DocMetaData, TellsUnreadableFromNone)
{
    const auto damage = [](const QString &path, const QString &key, const PropertyValue &value) {
        return Karvex::setXAttrMetaData(value, key, path) == std::nullopt;
    };
    const QString bytes = tagged(QStringLiteral("bytes.pdf"), {QStringLiteral("a")});
    const QString text = tagged(QStringLiteral("text.pdf"), {QStringLiteral("a")});
    const QString rating = tagged(QStringLiteral("rating.pdf"), {QStringLiteral("a")});
    ASSERT_FALSE(XPExtendedAttributes::write(bytes, Karvex::spotlightKey(Karvex::userTagsKey),
                                             "bplist00 not"));
    ASSERT_TRUE(damage(text, Karvex::userTagsKey, QStringLiteral("no list")));
    ASSERT_TRUE(damage(rating, Karvex::starRatingKey, QStringLiteral("many")));
    start();
    for (const QString &path : {bytes, text, rating}) {
        KPDoc *doc = KPDocCache::docAtPath(path);
        EXPECT_TRUE(holdsSoon([&] { return doc->unreadableMetaData().has_value(); }));
        EXPECT_EQ(doc->unreadableMetaData()->path, path);
        EXPECT_EQ(doc->tagNamesOfTypeUserEnteredForEditing().hasValue(), path == rating);
        EXPECT_EQ(doc->tagNamesOfTypeUserEntered().size(), path == rating ? 1 : 0);
        EXPECT_EQ(doc->rating(), 0);
    }
}

// Each edit is shown at once, not when the index has noticed.
TEST_F(DocMetaData, ShowsEachEditAtOnce)
{
    const QString path = tagged(QStringLiteral("a.pdf"), {QStringLiteral("a")});
    start();
    KPDoc *doc = KPDocCache::docAtPath(path);
    ASSERT_TRUE(holdsSoon([&] { return doc->hasUserEnteredTag(userTag("a")); }));
    const auto shown = [&] {
        return KPTagName::displayStringsForTagNames(doc->tagNamesOfTypeUserEntered()).join(u' ');
    };
    ASSERT_FALSE(KPDocEdits::addUserTags({QStringLiteral("b")}, path));
    EXPECT_EQ(shown(), u"a b");
    ASSERT_FALSE(KPDocEdits::setCommonUserTags(path, {QStringLiteral("A")}, {QStringLiteral("c")}));
    EXPECT_EQ(shown(), u"b c");
    ASSERT_FALSE(KPDocEdits::clearUserTags({QStringLiteral("C")}, path));
    EXPECT_EQ(shown(), u"b");
    ASSERT_FALSE(KPDocEdits::setUserTags({}, path));
    EXPECT_EQ(shown(), QString());
}

TEST_F(DocMetaData, IsReadByThreadsUntilItStops)
{
    xpGuiThread.assertHere();
    KPDoc *doc = KPDocCache::docAtPath(tagged(QStringLiteral("a.pdf"), {QStringLiteral("Work")}));
    std::atomic<bool> stop = false;
    std::vector<std::thread> readers;
    readers.reserve(2);
    for (int i = 0; i < 2; ++i)
        readers.emplace_back([&] {
            while (!stop)
                (void)(doc->tagNamesOfTypeUserEntered().size() + doc->url().size());
        });
    for (int i = 0; i < 5; ++i) {
        start();
        EXPECT_TRUE(holdsSoon([&] { return !doc->tagNamesOfTypeUserEntered().isEmpty(); }));
        KPDoc::stopMetaDataSearching();
    }
    stop = true;
    for (std::thread &reader : readers)
        reader.join();
}

TEST_F(DocMetaData, LosesATagFromAllDocuments)
{
    xpGuiThread.assertHere();
    const QString one =
        tagged(QStringLiteral("1.pdf"), {QStringLiteral("Stra\u00dfe"), QStringLiteral("b")});
    const QString two = tagged(QStringLiteral("2.txt"), {QStringLiteral("STRASSE")});
    const QString three =
        tagged(QStringLiteral("3.pdf"), {QStringLiteral("a*\"\\"), QStringLiteral("stra\u00dfe")});
    start();
    const auto names = [](const KPDoc::Docs &docs) {
        QStringList all;
        for (const KPDoc *doc : docs)
            all.append(doc->fsName());
        all.sort();
        return all.join(u' ');
    };
    EXPECT_EQ(names(KPTagDocuments::docsWithTag(userTag("stra\u00dfe"))), u"1.pdf 3.pdf");
    EXPECT_EQ(names(KPTagDocuments::docsWithTag(userTag("A*\"\\"))), u"3.pdf");
    EXPECT_EQ(names(KPTagDocuments::docsWithTag(
                  KPTagName::tagNameForUTITag(QStringLiteral("com.adobe.pdf"), {}))),
              u"1.pdf 3.pdf");

    XPPrompts::install(std::make_unique<Alerts>());
    KPTagDocuments::removeTagFromAllDocuments({});
    EXPECT_EQ(Alerts::count, 1);
    KPTagDocuments::removeTagFromAllDocuments(
        {userTag("stra\u00dfe"), KPTagName::tagNameForReadOnlyTag(QStringLiteral("b"))});
    EXPECT_EQ(Alerts::count, 2) << "keywords stay";
    EXPECT_EQ(Karvex::getUserTags(one).valueOr({}), QStringList{QStringLiteral("b")});
    EXPECT_EQ(Karvex::getUserTags(two).valueOr({}), QStringList{QStringLiteral("STRASSE")});
    EXPECT_EQ(Karvex::getUserTags(three).valueOr({}), QStringList{QStringLiteral("a*\"\\")});
}

TEST_F(DocMetaData, CountsWhatLeavesTheLibrary)
{
    xpGuiThread.assertHere();
    const QString path = m_folder.file(QStringLiteral("a.pdf"));
    const qsizetype before = KPDoc::numDocsRemovedFromLibrary();
    KPDoc *doc = KPDocCache::docAtPath(path);
    KPDoc::setManaged({path}, true);
    EXPECT_TRUE(doc->isManaged());
    EXPECT_EQ(KPDoc::numDocsRemovedFromLibrary(), before);
    KPDoc::setManaged({path, m_folder.path(QStringLiteral("none"))}, false);
    EXPECT_FALSE(doc->isManaged());
    EXPECT_EQ(KPDoc::numDocsRemovedFromLibrary(), before + 1);
    KPDoc::setFlagged({path}, true);
    KPDoc::setHidden({path}, true);
    EXPECT_EQ(Karvex::getUserTags(path).valueOr({}),
              (QStringList{QStringLiteral("flagged"), QStringLiteral("hidden")}));
    KPDoc::setFlagged({path}, false);
    EXPECT_EQ(*doc->tagNamesOfTypeUserEnteredForEditing(), Tags{userTag("hidden")});
}

// Those of a file's XMP packet count as tags while the setting says so, in searches too.
TEST(DocKeywords, OfXmpAreShownByASetting)
{
    const QString setting = QStringLiteral("KPShowXMPKeywords");
    UserDefaults::standard().setValue(setting, PropertyValue::boolean(false));
    IndexImporters::install([](bool) { return std::make_unique<KeywordImporter>(); });
    KeptFolder folder;
    folder.file(QStringLiteral("a.jpg"));
    xpGuiThread.assertHere();
    KPDoc::startMetaDataSearching(folder.index());
    ASSERT_FALSE(folder.kept().sync(true));
    KPDoc *doc = KPDocCache::docAtPath(folder.path(QStringLiteral("a.jpg")));
    const auto names = [](const KPTagName::Tags &tags) {
        QStringList texts;
        for (const KPTagName *tag : tags)
            texts.append(tag->displayName());
        return texts;
    };
    KPTagName *sea = KPTagName::tagNamesForReadOnlyTags({QStringLiteral("sea")}, true).first();
    EXPECT_TRUE(holdsSoon([&] { return names(doc->tagNamesOfTypeReadOnly()).size() == 1; }));
    EXPECT_TRUE(KPTagDocuments::docsWithTag(sea).isEmpty());
    UserDefaults::standard().setValue(setting, PropertyValue::boolean(true));
    EXPECT_TRUE(holdsSoon([&] { return names(doc->tagNamesOfTypeReadOnly()).size() == 2; }));
    EXPECT_TRUE(doc->hasTag(sea));
    EXPECT_EQ(KPTagDocuments::docsWithTag(sea), KPDoc::Docs{doc});
    KPDoc::stopMetaDataSearching();
    UserDefaults::standard().remove(setting);
}

// Two states combined into one.
#include "KPDocCache.h"
#include "KPOptimizedFolders.h"
#include "KPSearchFolderSetting.h"
#include "KPSearchFolders.h"
#include "KPSearchState.h"
#include "KPSearchStateKeys.h"
#include "UserDefaults.h"
#include "XPFolders.h"

#include <QRandomGenerator>
#include <QScopeGuard>
#include <gtest/gtest.h>
#include <sys/stat.h>

using Ptr = KPSearchState::Ptr;
using Saved = KPSearchState::SavedDictionary;
using Tags = KPTagName::Tags;

namespace Key = KPSearchStateKey;
namespace Dates = KPSearchDates;

static QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

static KPTagName *type(const char *identifier)
{
    return KPTagName::tagNameForUTITag(text(identifier), {});
}

static PropertyValue yes()
{
    return PropertyValue::boolean(true);
}

static Ptr empty()
{
    return KPSearchState::searchStateWithNativeDictionary({});
}

static Ptr with(const Saved &saved)
{
    return KPSearchState::searchStateWithDictionary(saved);
}

TEST(SearchStateAND, AsksForBoth)
{
    const auto one = empty()
                         ->searchStateWithNewTags({text("Work"), text("x")})
                         ->searchStateWithNewExcludeTags({text("old")})
                         ->searchStateWithNewSearchString(text("tax"), true, true, true)
                         ->searchStateWithNewContstraintFolders({text("/a"), text("/b/c")})
                         ->searchStateWithNewExcludeFolders({text("/a/no")})
                         ->searchStateWithNewShowBundleContents(true);
    const auto two = empty()
                         ->searchStateWithNewTags({text("work")})
                         ->searchStateWithNewExcludeTags({text("X"), text("Old"), text("new")})
                         ->searchStateWithNewSearchString(text("report"), true, false, true)
                         ->searchStateWithNewContstraintFolders({text("/a/d"), text("/b")})
                         ->searchStateWithNewExcludeFolders({text("/a/no"), text("/b/no")})
                         ->searchStateWithNewRating(text(">= 3"));
    const auto both = one->searchStateWithAND(*two);
    EXPECT_EQ(both->searchTags(), (QStringList{text("Work"), text("x")}));
    EXPECT_EQ(both->excludeTags(), (QStringList{text("old"), text("new")}));
    EXPECT_EQ(both->searchString(), text("tax report"));
    EXPECT_TRUE(both->searchContents() && !both->searchMetaData() && both->searchFileNames());
    EXPECT_EQ(both->constraintFolders(), (QStringList{text("/b/c"), text("/a/d")}));
    EXPECT_EQ(both->excludeFolders(), (QStringList{text("/a/no"), text("/b/no")}));
    EXPECT_EQ(both->ratingString(), text(">= 3"));
    EXPECT_FALSE(both->isShowBundleContents());
    EXPECT_FALSE(both->utiIsInconsistent());
    EXPECT_TRUE(empty()->searchStateWithAND(*one)->isEqualToSearchState(*one));
    EXPECT_TRUE(one->searchStateWithAND(*empty())->isEqualToSearchState(*one));
}

TEST(SearchStateAND, CombinesModes)
{
    const auto untagged = empty()->searchStateWithNewUntaggedFiles(true);
    const auto tagged = empty()->searchStateWithNewTaggedFiles(true);
    const auto rated = empty()->searchStateWithNewRating(text("<= 2"));
    EXPECT_TRUE(untagged->searchStateWithAND(*rated)->isShowingUntaggedDocuments());
    EXPECT_FALSE(untagged->searchStateWithAND(*tagged)->isShowingUntaggedDocuments());
    EXPECT_TRUE(untagged->searchStateWithAND(*tagged)->isShowingTaggedDocuments());
    const auto bundles =
        KPSearchState::searchStateWithDictionary({{Key::showBundleContents, yes()}});
    EXPECT_TRUE(rated->searchStateWithAND(*bundles)->boolValueForKey(Key::showBundleContents));
    EXPECT_EQ(KPSearchState::combineBools({}, {}), std::nullopt);
    EXPECT_EQ(KPSearchState::combineBools(true, {}), true);
    EXPECT_EQ(KPSearchState::combineBools(true, false), false);
}

TEST(SearchStateAND, FindsTheTypesOfBoth)
{
    const auto combined = [](const Tags &one, const Tags &two) {
        return KPTagName::arrayForSavingUTITags(KPSearchState::utiArrayAND(one, two));
    };
    const struct
    {
        Tags one, two;
        QStringList both;
    } cases[] = {
        {{}, {type("com.adobe.pdf")}, {text("com.adobe.pdf")}},
        {{type("tree_public.image")}, {type("public.jpeg")}, {text("public.jpeg")}},
        {{type("tree_public.image"), type("com.adobe.pdf")},
         {type("tree_public.data")},
         {text("tree_public.image"), text("com.adobe.pdf")}},
        {{type("KPExtensionSearch_x")},
         {type("KPExtensionSearch_x")},
         {text("KPExtensionSearch_x")}},
        {{type("KPExtensionSearch_x")},
         {type("tree_public.data")},
         {KPSearchState::inconsistentUTI}},
        {{type("com.adobe.pdf")}, {type("public.jpeg")}, {KPSearchState::inconsistentUTI}},
    };
    for (const auto &each : cases)
        EXPECT_EQ(combined(each.one, each.two), each.both) << each.both.first().toStdString();
}

TEST(SearchStateAND, ShowsNothingWhereNothingCanBe)
{
    const auto dated = [](const QString &key) {
        return empty()->searchStateWithNewDateString(key);
    };
    const auto in = [](const char *folder) {
        return empty()->searchStateWithNewContstraintFolders({text(folder)});
    };
    const std::pair<Ptr, Ptr> pairs[] = {
        {dated(Dates::today), dated(Dates::yesterday)},
        {dated(Dates::lastYear), dated(Dates::thisYear)},
        {dated(Dates::olderThanYearBeforeLastYear), dated(Dates::last365Days)},
        {in("/a"), in("/ab")},
        {empty()->searchStateWithNewFileList(QStringList{text("/a")}),
         empty()->searchStateWithNewFileList(QStringList{text("/b")})},
        {empty()->searchStateWithNewRating(text("!= *")),
         empty()->searchStateWithNewRating(text(">= 1"))},
        {empty()->searchStateWithNewSearchString(text("mdq:a == 1"), true, true, true),
         empty()->searchStateWithNewSearchString(text("word"), true, true, true)},
        {with({{text("newer"), yes()}}), with({{text("newer"), text("x")}})},
        {in("/a/b"), in("/a")->searchStateWithNewFinderListing(true, false)},
        {in("/b"), empty()->searchStateWithNewFileList(QStringList{text("/a/x")})},
    };
    for (const auto &[one, two] : pairs) {
        EXPECT_TRUE(one->searchStateWithAND(*two)->utiIsInconsistent());
        EXPECT_TRUE(two->searchStateWithAND(*one)->utiIsInconsistent());
        EXPECT_FALSE(one->searchStateWithAND(*one)->utiIsInconsistent());
    }
}

TEST(SearchDates, NarrowToWhatBothHold)
{
    const QString none;
    const std::tuple<QString, QString, QString> cases[] = {
        {none, Dates::last7Days, Dates::last7Days},
        {Dates::anyDate, Dates::thisYear, Dates::thisYear},
        {text("unknown"), Dates::lastYear, Dates::lastYear},
        {none, Dates::anyDate, none},
        {Dates::last30Days, Dates::last7Days, Dates::last7Days},
        {Dates::last30Days, Dates::yesterday, Dates::yesterday},
        {Dates::lastYear, Dates::lastYear, Dates::lastYear},
    };
    for (const auto &[one, two, both] : cases) {
        EXPECT_EQ(KPSearchState::narrowDateRange(one, two), both) << both.toStdString();
        EXPECT_EQ(KPSearchState::narrowDateRange(two, one), both) << both.toStdString();
    }
}

TEST(SearchStateAND, KeepsWhatTheRulesDoNotName)
{
    const auto managed = KPSearchState::blankSearchState();
    const auto rated = empty()->searchStateWithNewRating(text(">= 2"));
    EXPECT_TRUE(managed->searchStateWithAND(*managed)->isShowingManagedDocuments());
    EXPECT_TRUE(managed->searchStateWithAND(*rated)->isShowingManagedDocuments());
    const auto listing = empty()
                             ->searchStateWithNewContstraintFolders({text("/a")})
                             ->searchStateWithNewFinderListing(true, false);
    EXPECT_TRUE(listing->searchStateWithAND(*rated)->isFilesAndFolders());
    EXPECT_FALSE(
        rated->searchStateWithAND(*empty()->searchStateWithNewSearchReadOnlyKeywords(false))
            ->searchReadOnlyKeywords());
    const auto newer = with({{text("newer"), text("x")}});
    EXPECT_EQ(rated->searchStateWithAND(*newer)->searchStateDictionary().value(text("newer")),
              PropertyValue(text("x")));
    const auto bundles = listing->searchStateWithNewShowBundleContents(true);
    EXPECT_TRUE(bundles->searchStateWithAND(*bundles->searchStateWithNewRating(text(">= 1")))
                    ->isShowBundleContents());
}

TEST(SearchStateAND, JoinsRatings)
{
    using List = QStringList;
    const std::tuple<const char *, const char *, std::optional<List>> cases[] = {
        {">= 2", "<= 4", List{text("<= 4"), text(">= 2")}},
        {"> 3", ">= 2", List{text("> 3"), text(">= 2")}},
        {">= 2", ">= 4", List{text(">= 4")}},
        {"<= 2", "<= 4", List{text("<= 2")}},
        {"!= *", "<= 4", List{text("!= *"), text("<= 4")}},
        {"", ">= 1", List{text(">= 1")}},
        {">= 4", "<= 2", {}},
    };
    for (const auto &[one, two, both] : cases) {
        EXPECT_EQ(KPStarCondition::join({text(one)}, {text(two)}), both) << one << " and " << two;
        EXPECT_EQ(KPStarCondition::join({text(two)}, {text(one)}), both) << two << " and " << one;
    }
    const auto state = empty()
                           ->searchStateWithNewRating(text(">= 2"))
                           ->searchStateWithAND(*empty()->searchStateWithNewRating(text("<= 4")));
    EXPECT_TRUE(
        state->queryText().contains(u"(kMDItemStarRating <= 4) && (kMDItemStarRating >= 2)"));
    EXPECT_EQ(state->ratingThatPasses(), 3);
    EXPECT_EQ(state->searchStateWithNewRating(text(">= 1"))->ratingConditions(),
              QStringList{text(">= 1")});
}

TEST(SearchStateAND, JoinsFolders)
{
    const auto restore = qScopeGuard([] {
        UserDefaults::standard().remove(KPSearchFolderSetting::key);
        KPSearchFolders::instance().rebuildSearchFoldersList();
    });
    KPSearchFolderSetting::setFolders({text("/p"), text("/q")});
    KPSearchFolders::instance().rebuildSearchFoldersList();
    const QString places = KPSearchFolders::preferredShort;
    const QString home = XPFolders::home();
    const std::tuple<QStringList, QStringList, QStringList> cases[] = {
        {{text("~/a")}, {home}, {text("~/a")}},
        {{text("~")}, {home + text("/a"), text("/x")}, {home + text("/a")}},
        {{text("~/a")}, {home + text("/a"), text("/x")}, {text("~/a")}},
        {{places}, {text("/")}, {places}},
        {{places}, {text("/p/x"), text("/q"), text("/r")}, {text("/q"), text("/p/x")}},
        {{places}, {KPSearchFolders::everywhere}, {places}},
        {{text("/")}, {text("/media/ann/stick")}, {}},
        {{places}, {text("/r")}, {}},
        {{text("nonsense")}, {text("/r")}, {}},
    };
    for (const auto &[one, two, both] : cases) {
        EXPECT_EQ(KPSearchState::combineContraintFoldersAND(one, two), both)
            << qPrintable(one.join(u' ') + u'&' + two.join(u' '));
        EXPECT_EQ(KPSearchState::combineContraintFoldersAND(two, one).isEmpty(), both.isEmpty());
    }
}

// --- Any two states

namespace {

struct Sample
{
    QRandomGenerator random = QRandomGenerator(7); // NOLINT: the same ones each time

    bool perhaps() { return random.bounded(3) == 0; }
    template <typename List>
    typename List::value_type one(const List &list)
    {
        return list[random.bounded(static_cast<int>(list.size()))];
    }
    template <typename List>
    List some(const List &list)
    {
        List some;
        for (const auto &each : list) {
            if (perhaps())
                some.append(each);
        }
        return some;
    }

    Ptr state();
};

// Every key, each with every form of value.
Ptr Sample::state()
{
    const QStringList folders = {text("/p"), text("/p/x"),       text("/p/x/y"),
                                 text("/q"), text("~"),          text("~/d"),
                                 text("/"),  text("/media/a/s"), text("place?")};
    const QStringList places = {KPSearchFolders::everywhere, KPSearchFolders::preferredShort,
                                KPSearchFolders::preferredLocations,
                                KPSearchFolders::filedDocuments};
    const QStringList files = {text("/p/1.pdf"), text("/p/x/2.jpg"), text("/q/3.pdf")};
    const Tags types = {type("com.adobe.pdf"), type("tree_public.image"), type("tree_public.data"),
                        type("public.jpeg"), type("KPExtensionSearch_pdf")};
    const auto folderList = [&] {
        return random.bounded(4) == 0 ? QStringList{one(places)} : some(folders);
    };
    KPSearchState::NativeDictionary keys;
    const auto setList = [&](const QString &key, const QStringList &list) {
        if (perhaps() && !list.isEmpty())
            keys.insert(key, PropertyValue(list));
    };
    setList(Key::withTags, some(QStringList{text("a"), text("b"), text("A")}));
    setList(Key::excludeTags, some(QStringList{text("b"), text("hidden")}));
    setList(Key::searchStrings, {one(QStringList{text("w"), text("word"), text("mdq:a == 1")})});
    setList(Key::constraintFolders, folderList());
    setList(Key::postConstraintFolders, some(folders));
    setList(Key::excludeFolders, folderList());
    setList(Key::fileList, some(files));
    if (perhaps())
        keys.insert(Key::fileUTIs, some(types));
    if (perhaps())
        keys.insert(Key::fileUTIsToExclude, some(types));
    const QStringList dates = Dates::allKeys() << text("days:20:10") << text("unknown");
    if (perhaps())
        keys.insert(Key::dateSearch, PropertyValue(one(dates)));
    setList(Key::dateSearchAlso, some(dates));
    if (perhaps())
        keys.insert(Key::relativeStart, PropertyValue::real(random.bounded(500)));
    if (perhaps())
        keys.insert(Key::relativeEnd, PropertyValue::integer(random.bounded(400)));
    const QStringList ratings = {text("!= *"), text(">= 1"), text(">= 3"),
                                 text("<= 2"), text("<= 4"), text("> 3")};
    if (perhaps())
        keys.insert(Key::ratingSearch, PropertyValue(one(ratings)));
    setList(Key::ratingSearchAlso, some(ratings));
    for (const QString &key :
         {Key::searchContents, Key::searchMetaData, Key::searchFileNames, Key::fileListGoDeep,
          Key::fileListShowBundleContents, Key::showBundleContents, Key::finderListingMode,
          Key::alwaysSearchSystemFiles, Key::showTaggedDocuments, Key::documentsWithNoTagsOnly,
          Key::showManagedDocuments, Key::searchUserTags, Key::searchReadOnlyKeywords,
          text("SaveStateKey_OfTomorrow")}) {
        if (random.bounded(5) == 0)
            keys.insert(key, PropertyValue::boolean(random.bounded(3) != 0));
    }
    // There is no listing without a folder.
    if (keys.contains(Key::finderListingMode) && !keys.contains(Key::constraintFolders))
        keys.insert(Key::constraintFolders, PropertyValue(QStringList{one(folders)}));
    return KPSearchState::searchStateWithNativeDictionary(keys);
}

// For the reader of a failure.
std::string described(const KPSearchState &state)
{
    QStringList parts;
    for (const QString &key : state.nativeDictionary().keys())
        parts.append(key.mid(13) + u'=' + state.strings(key).join(u'|') +
                     (state.boolValueForKey(key) ? QStringLiteral("yes") : QString()));
    return parts.join(u' ').toStdString();
}

bool passesRating(const KPSearchState &state, double stars)
{
    const auto bounds = KPStarCondition::commonBounds(state.ratingConditions());
    return !bounds || (bounds->lower <= stars && stars <= bounds->upper);
}

} // namespace

// At moments at which years and days meet in odd ways.
TEST(SearchStateAND, ShowsWhatBothShow)
{
    const auto restore = qScopeGuard([] {
        Dates::setClock({});
        UserDefaults::standard().remove(KPSearchFolderSetting::key);
        KPSearchFolders::instance().rebuildSearchFoldersList();
    });
    KPSearchFolderSetting::setFolders({text("/p/x"), text("/q")});
    KPSearchFolders::instance().rebuildSearchFoldersList();
    const QDateTime moments[] = {
        QDateTime(QDate(2024, 12, 31), QTime(23, 59, 59)),
        QDateTime(QDate(2025, 1, 1), QTime(0, 0, 1)), QDateTime(QDate(2025, 1, 1), QTime(0, 0, 0)),
        QDateTime(QDate(2024, 2, 29), QTime(12, 0)), QDateTime(QDate(2026, 6, 15), QTime(8, 30))};
    Sample sample;
    KPTagName *const extension = type("KPExtensionSearch_pdf");
    std::vector<const KPDoc *> docs;
    const QStringList paths = {text("/p/1.pdf"),  text("/p/x/2.jpg"),       text("/p/x/y/4.txt"),
                               text("/q/3.pdf"),  text("/media/a/s/5.pdf"), text("/6.pdf"),
                               text("~/d/7.jpg"), text("~/8.txt")};
    int shown = 0;
    int impossible = 0;
    for (int round = 0; round < 1500; ++round) {
        QDateTime now = moments[static_cast<std::size_t>(round) % std::size(moments)];
        Dates::setClock([now] { return now; });
        const Ptr one = sample.state();
        const Ptr two = sample.state();
        const Ptr both = one->searchStateWithAND(*two);
        SCOPED_TRACE(described(*one) + " AND " + described(*two) + " IS " + described(*both));
        ASSERT_TRUE(one->searchStateWithAND(*one)->isEqualToSearchState(*one));
        const Ptr again = with(both->searchStateDictionary());
        ASSERT_TRUE(again->isEqualToSearchState(*both)) << "as it is stored";
        ASSERT_EQ(two->searchStateWithAND(*one)->utiIsInconsistent(), both->utiIsInconsistent());
        // Rules of their own: a listing goes deep where either does.
        const bool isGoneDeep = one->isDeep() != two->isDeep() &&
                                (one->isFilesAndFolders() || two->isFilesAndFolders());
        for (const QString &path : paths) {
            XPFileInfo info;
            info.mode = S_IFREG | 0644;
            const qint64 secondsAgo = sample.random.bounded(2) == 0
                                          ? sample.random.bounded(3 * 86400)
                                          : sample.random.bounded(1200 * 86400);
            info.modified = now.addSecs(-secondsAgo).toMSecsSinceEpoch() * 1'000'000;
            const KPDoc *doc =
                KPDocCache::docAtPath(KPPool::pooledString(XPFolders::expandTilde(path)), &info);
            const auto agree = [&](bool (KPSearchState::*passes)(const KPDoc &) const) {
                return (both.get()->*passes)(*doc) ==
                       ((one.get()->*passes)(*doc) && (two.get()->*passes)(*doc));
            };
            const double stars = sample.random.bounded(6);
            const auto passesAll = [&](const KPSearchState &state) {
                // Narrower folders are applied to what was found.
                const KPOptimizedFolders narrower(state.postConstraintFolders(),
                                                  KPOptimizedFolders::Reach::Below);
                return (narrower.setsNoCondition() || narrower.holds(doc->filePath())) &&
                       state.docPassesDateRange(*doc) && state.docPassesContraintFolders(*doc) &&
                       state.docPassesFileList(*doc) && passesRating(state, stars);
            };
            const bool isShown = passesAll(*one) && passesAll(*two);
            shown += isShown ? 1 : 0;
            if (both->utiIsInconsistent()) {
                ++impossible;
                const Tags common = KPSearchState::utiArrayAND(one->explicitFileUTITags(),
                                                               two->explicitFileUTITags());
                const bool hasCommonType =
                    !common.contains(type("com.brindle.inconsistentNoFiles"));
                const bool isToldApart = one->searchString() == two->searchString() ||
                                         one->searchString().isEmpty() ||
                                         two->searchString().isEmpty();
                ASSERT_FALSE(isShown && hasCommonType && isToldApart && !isGoneDeep &&
                             !one->nativeDictionary().contains(text("SaveStateKey_OfTomorrow")))
                    << qPrintable(path);
                continue;
            }
            ASSERT_TRUE(agree(&KPSearchState::docPassesDateRange)) << qPrintable(path);
            ASSERT_EQ(passesRating(*both, stars),
                      passesRating(*one, stars) && passesRating(*two, stars));
            // Extensions compare as texts, and a type that is wanted by name comes before an
            // excluded tree.
            const bool isPlain = both->explicitFileUTITagsToExclude().isEmpty() &&
                                 !one->hasUTTag(extension) && !two->hasUTTag(extension);
            ASSERT_TRUE(!isPlain || agree(&KPSearchState::docPassesFileTypeTest));
            ASSERT_EQ(passesAll(*again), passesAll(*both)) << qPrintable(path);
            if (!isGoneDeep) {
                ASSERT_EQ(passesAll(*both), isShown) << qPrintable(path);
            }
        }
    }
    EXPECT_GT(shown, 100); // it was not nothing that was compared
    EXPECT_GT(impossible, 100);
}

// What is combined today is asked for tomorrow.
TEST(SearchStateAND, KeepsBothDatesWhereTheirOrderDependsOnTheDay)
{
    const auto restore = qScopeGuard([] { Dates::setClock({}); });
    const auto at = [](const QDateTime &moment) { Dates::setClock([moment] { return moment; }); };
    at(QDateTime(QDate(2025, 6, 15), QTime(12, 0)));
    const auto state =
        empty()
            ->searchStateWithNewDateString(Dates::thisYear)
            ->searchStateWithAND(*empty()->searchStateWithNewDateString(Dates::last7Days));
    EXPECT_EQ(state->dateString(), Dates::last7Days);
    EXPECT_EQ(state->getStart().start, 7);
    const Saved saved = state->searchStateDictionary();
    at(QDateTime(QDate(2026, 1, 3), QTime(0, 0)));
    EXPECT_EQ(with(saved)->getStart().start, 2);
    // A leap year is longer than 365 days.
    at(QDateTime(QDate(2024, 12, 31), QTime(23, 59, 59)));
    EXPECT_EQ(Dates::narrow(Dates::thisYear, Dates::last365Days), Dates::last365Days);
    at(QDateTime(QDate(2025, 12, 31), QTime(23, 59, 59)));
    EXPECT_EQ(Dates::narrow(Dates::thisYear, Dates::last365Days), Dates::thisYear);
}

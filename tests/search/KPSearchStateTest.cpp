#include "KPSearchState.h"

#include "KPFileType.h"
#include "KPOptimizedFolders.h"
#include "KPSearchFolders.h"
#include "KPSearchStateKeys.h"
#include "XPTranslations.h"

#include <QDate>
#include <QRandomGenerator>
#include <gtest/gtest.h>
#include <limits>
#include <thread>

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

TEST(SearchState, IsTheManagedDocumentsAtFirst)
{
    EXPECT_EQ(KPSearchState().searchStateDictionary(), (Saved{{Key::showManagedDocuments, yes()}}));
    EXPECT_TRUE(KPSearchState().isBlank());
    EXPECT_TRUE(empty()->isBlank());
    EXPECT_FALSE(empty()->searchStateByAddingTag(text("x"))->isBlank());
    EXPECT_FALSE(empty()->mdQueryString());
    EXPECT_FALSE(empty()->isSearchGoodEnoughToPerformSearch());
}

TEST(SearchState, IsEqualByWhatItAsksFor)
{
    const Tags pdfAndText = {type("com.adobe.pdf"), type("tree_public.text")};
    const auto one = empty()->searchStateWithNewTags({text("b"), text("A"), text("a")});
    const auto same = empty()->searchStateWithNewTags({text("a"), text("A"), text("b")});
    EXPECT_TRUE(one->isEqualToSearchState(*same));
    EXPECT_FALSE(one->isEqualToSearchState(*empty()->searchStateWithNewTags({text("a")})));
    EXPECT_TRUE(empty()
                    ->searchStateWithNewUTIs(pdfAndText)
                    ->isEqualToSearchState(
                        *empty()->searchStateWithNewUTIs({pdfAndText.last(), pdfAndText.first()})));
    EXPECT_TRUE(with({{Key::showManagedDocuments, PropertyValue::integer(1)}})
                    ->isEqualToSearchState(KPSearchState()));
    const auto listing = empty()->searchStateWithNewFinderListing(true, true);
    const auto narrowed = listing->searchStateWithNewPostContstraintFolders({text("/a")});
    EXPECT_FALSE(listing->isEqualToSearchState(*narrowed));
    EXPECT_TRUE(listing->isEqualToSearchStateIgnorePostContraint(*narrowed));
    const auto flat = listing->searchStateWithDeepAndBundleRemoved();
    EXPECT_FALSE(flat->isEqualToSearchStateIgnorePostContraint(
        *flat->searchStateWithNewPostContstraintFolders({text("/a")})));
}

// --- The stored form

TEST(SearchState, ReadsRelativeDays)
{
    const std::pair<double, QString> cases[] = {{1, Dates::today},        {2, Dates::yesterday},
                                                {7, Dates::last7Days},    {30, Dates::last30Days},
                                                {14, Dates::last365Days}, {-3, Dates::last365Days}};
    for (const auto &[start, key] : cases) {
        const auto state = with({{Key::relativeStart, PropertyValue::real(start)},
                                 {Key::relativeEnd, PropertyValue::integer(0)}});
        EXPECT_EQ(state->searchStateDictionary(), (Saved{{Key::dateSearch, PropertyValue(key)}}));
    }
    const auto onlyEnd = with({{Key::relativeEnd, PropertyValue::integer(7)}});
    EXPECT_TRUE(onlyEnd->nativeDictionary().isEmpty());
}

TEST(SearchState, LeavesOutWhatIsOfTheWrongKind)
{
    const PropertyValue wrong[] = {PropertyValue(text("x")),
                                   PropertyValue::real(std::numeric_limits<double>::quiet_NaN()),
                                   PropertyValue(PropertyValue::Array{PropertyValue::integer(1)}),
                                   PropertyValue(Saved{{text("a"), yes()}}),
                                   PropertyValue(QByteArray("data")),
                                   PropertyValue()};
    const QString keys[] = {Key::withTags,     Key::fileUTIs,      Key::dateSearch,
                            Key::ratingSearch, Key::relativeStart, Key::showTaggedDocuments,
                            Key::fileList,     Key::searchStrings, Key::constraintFolders};
    const QSet<QString> texts = {Key::dateSearch, Key::ratingSearch};
    for (const QString &key : keys) {
        for (const PropertyValue &value : wrong) {
            if (value.isString() && texts.contains(key))
                continue;
            const auto state = with({{key, value}, {Key::showManagedDocuments, yes()}});
            EXPECT_TRUE(state->isEqualToSearchState(KPSearchState()))
                << key.toStdString() << ' ' << static_cast<int>(value.kind());
        }
    }
    // Adopted as it is, such a value reads as absent.
    for (const QString &key : keys) {
        const auto state = KPSearchState::searchStateWithNativeDictionary(
            {{key, PropertyValue(Saved{{text("a"), yes()}})}});
        EXPECT_FALSE(state->mdQueryString()) << key.toStdString();
        EXPECT_EQ(state->searchStateDictionary().size(), 1);
    }
}

static QStringList someOf(QRandomGenerator &random, const QStringList &all)
{
    QStringList some;
    for (const QString &each : all) {
        if (random.bounded(2) == 0)
            some.append(each);
    }
    return some;
}

static Saved randomSaved(QRandomGenerator &random)
{
    const QStringList texts = {text("work"), text("Work"), text("caf\xC3\xA9"),
                               text("/a/b"), text("/a"),   text("a\"b"),
                               text("*")};
    const QStringList types = {text("com.adobe.pdf"), text("tree_public.image"),
                               text("KPExtensionSearch_x"), text("dyn.ah62d4rv4ge80k2p0")};
    Saved saved;
    const auto perhaps = [&] { return random.bounded(3) == 0; };
    for (const QString &key : {Key::searchStrings, Key::constraintFolders,
                               Key::postConstraintFolders, Key::excludeFolders, Key::fileList}) {
        if (perhaps())
            saved.insert(key, someOf(random, texts));
    }
    for (const QString &key :
         {Key::withTags, Key::excludeTags, Key::fileUTIs, Key::fileUTIsToExclude}) {
        if (perhaps()) {
            QStringList some =
                someOf(random, key == Key::withTags || key == Key::excludeTags ? texts : types);
            std::sort(some.begin(), some.end(), [](const QString &a, const QString &b) {
                const int order = a.compare(b, Qt::CaseInsensitive);
                return order != 0 ? order < 0 : a < b;
            });
            saved.insert(key, some);
        }
    }
    for (const QString &key :
         {Key::searchContents, Key::searchMetaData, Key::searchFileNames, Key::fileListGoDeep,
          Key::finderListingMode, Key::showTaggedDocuments, Key::documentsWithNoTagsOnly,
          Key::showManagedDocuments, Key::searchUserTags, Key::searchReadOnlyKeywords}) {
        if (perhaps())
            saved.insert(key, PropertyValue::boolean(random.bounded(2) == 0));
    }
    if (perhaps())
        saved.insert(Key::dateSearch, Dates::allKeys().value(random.bounded(11)));
    if (perhaps())
        saved.insert(Key::ratingSearch, text(">= 3"));
    if (perhaps())
        saved.insert(text("OfANewerProgram"),
                     PropertyValue::Array{PropertyValue::integer(1), yes()});
    return saved;
}

TEST(SearchState, ComesBackFromItsStoredForm)
{
    QRandomGenerator random(20); // NOLINT: the same states each time
    for (int i = 0; i < 500; ++i) {
        const Saved saved = randomSaved(random);
        EXPECT_EQ(with(saved)->searchStateDictionary(), saved);
    }
}

// --- Changes

TEST(SearchState, ChangesOneCriterion)
{
    const auto untagged = empty()->searchStateWithNewUntaggedFiles(true);
    EXPECT_FALSE(untagged->searchStateByAddingTag(text("x"))->isShowingUntaggedDocuments());
    EXPECT_FALSE(untagged->searchStateByAddingExcludeTag(text("x"))->isShowingUntaggedDocuments());
    EXPECT_TRUE(untagged->searchStateWithNewTags({})->isShowingUntaggedDocuments());
    const auto tagged = untagged->searchStateWithNewTaggedFiles(true);
    EXPECT_TRUE(tagged->isShowingTaggedDocuments() && !tagged->isShowingUntaggedDocuments());
    EXPECT_FALSE(tagged->searchStateWithNewUntaggedFiles(true)->isShowingTaggedDocuments());

    const auto searching =
        empty()->searchStateWithNewSearchString(text("caf\xC3\xA9"), true, false, true);
    EXPECT_EQ(searching->searchString(), text("cafe\xCC\x81"));
    EXPECT_EQ(searching->nativeDictionary().size(), 4);
    EXPECT_TRUE(searching->searchStateWithNewSearchString({}, true, true, true)
                    ->nativeDictionary()
                    .isEmpty());

    const auto tags = empty()
                          ->searchStateWithNewTags({text("Work"), text("x")})
                          ->searchStateWithNewExcludeTags({text("work"), text("y")});
    const auto cleared = tags->searchStateByClearingTag(text("WORK"));
    EXPECT_EQ(cleared->searchTags(), QStringList{text("x")});
    EXPECT_EQ(cleared->searchStateByClearingTag(text("Work"))->excludeTags(),
              QStringList{text("y")});
    EXPECT_TRUE(tags->searchStateByClearingTag(text("z"))->isEqualToSearchState(*tags));
    EXPECT_TRUE(tags->searchStateWithNewFileList(QStringList{text("/f")})->excludeTags().isEmpty());
    EXPECT_TRUE(empty()->searchStateWithNewTags({text("x")})->tagsOnly());
    EXPECT_TRUE(tags->tagsOnly());
    EXPECT_FALSE(tags->searchStateWithNewRating(text(">= 1"))->tagsOnly());

    EXPECT_TRUE(empty()->searchReadOnlyKeywords());
    EXPECT_FALSE(
        empty()->searchStateWithNewSearchReadOnlyKeywords(false)->searchReadOnlyKeywords());
    const auto noUserTags = empty()->searchStateWithNewSearchUserTags(false);
    EXPECT_EQ(noUserTags->nativeDictionary().size(), 1);
    EXPECT_TRUE(noUserTags->searchUserTags());
    EXPECT_TRUE(noUserTags->searchStateWithNewSearchUserTags(true)->nativeDictionary().isEmpty());
}

TEST(SearchState, KeepsNarrowerFoldersOnlyWhereTheyAreAllowed)
{
    const auto listing = empty()
                             ->searchStateWithNewFinderListing(true, true)
                             ->searchStateWithNewContstraintFolders({text("/a")})
                             ->searchStateWithNewPostContstraintFolders({text("/a/b")});
    EXPECT_EQ(listing->constraintFolders(), QStringList{text("/a")});
    EXPECT_EQ(listing->searchStateWithDeepAndBundleRemoved()->constraintFolders(),
              QStringList{text("/a/b")});
    EXPECT_FALSE(listing->searchStateWithNewContstraintFolders({text("/c")})
                     ->postConstraintFolders()
                     .isEmpty());
    EXPECT_TRUE(listing->searchStateWithNewPostContstraintFolders({text("/elsewhere")})
                    ->searchStateWithNewContstraintFolders({text("/c")})
                    ->postConstraintFolders()
                    .isEmpty());
}

// --- Combination

// --- Folders and ratings

TEST(OptimizedFolders, HoldWhatIsBelow)
{
    using Reach = KPOptimizedFolders::Reach;
    const QStringList given = {text("/b/"), text("/a/x"), text("/a-b"),
                               text("/a"),  text("~/d"),  text("/a/x/y")};
    const KPOptimizedFolders below(given, Reach::Below);
    EXPECT_EQ(below.folders().size(), 4); // /a, /a-b, /b, ~/d
    for (const char *path : {"/a/f", "/a/x/f", "/a-b/f", "/b/c/d/f"})
        EXPECT_TRUE(below.holds(text(path))) << path;
    for (const char *path : {"/a", "/ab/f", "/a-bc/f", "/c/f", "/", ""})
        EXPECT_FALSE(below.holds(text(path))) << path;
    const KPOptimizedFolders inside(given, Reach::Inside);
    for (const char *path : {"/a/f", "/a/x/f", "/a/x/y/f", "/b/f"})
        EXPECT_TRUE(inside.holds(text(path))) << path;
    for (const char *path : {"/a/z/f", "/b/c/f", "/a/", "/f"})
        EXPECT_FALSE(inside.holds(text(path))) << path;
    const KPOptimizedFolders disk({text("/")}, Reach::Below);
    EXPECT_TRUE(disk.holds(text("/usr/x")));
    EXPECT_FALSE(disk.holds(text("/Volumes/Stick/x")));
    EXPECT_FALSE(disk.holds(text("/media/ann/stick/x")));
    EXPECT_TRUE(KPOptimizedFolders({KPSearchFolders::everywhere}, Reach::Below)
                    .holds(text("/media/ann/stick/x")));
    EXPECT_TRUE(KPOptimizedFolders({text("nonsense")}, Reach::Below).isEmpty());
    EXPECT_EQ(KPSearchState::reduceScopeOfFilesToParentFolders(
                  {text("/a/f"), text("/a/x/g"), text("/ab/h"), text("/a/z")}),
              (QStringList{text("/a"), text("/ab")}));
    EXPECT_EQ(KPSearchState::reduceScopeOfFilesToParentFolders({text("/f"), text("/a/g")}),
              QStringList{text("/")});
}

TEST(SearchState, SaysWhichRatingPasses)
{
    const std::pair<const char *, std::optional<double>> cases[] = {
        {"", {}}, {">= 3", 3}, {"<= 4", 2}, {"!= *", 0}, {"> 3", {}}, {">= x", {}}};
    for (const auto &[condition, rating] : cases)
        EXPECT_EQ(empty()->searchStateWithNewRating(text(condition))->ratingThatPasses(), rating)
            << condition;
}

TEST(SearchState, SaysForPeopleWhatItAsksFor)
{
    XPTranslations::install(QLocale::c());
    const auto of = [](const char *wanted, const char *excluded) {
        const auto types = [](const char *list) {
            return KPTagName::arrayOfUTIsToKPTagNames(text(list).split(u' ', Qt::SkipEmptyParts));
        };
        return empty()
            ->searchStateWithNewUTIs(types(wanted))
            ->searchStateWithNewExcludeUTIs(types(excluded))
            ->fileTypesHumanReadableString();
    };
    const QString pdf = KPFileType::displayNameForUTI(text("com.adobe.pdf"));
    const QString jpeg = KPFileType::displayNameForUTI(text("public.jpeg"));
    EXPECT_EQ(of("", ""), text("All kinds"));
    EXPECT_EQ(of("com.adobe.pdf public.jpeg", ""), pdf + text(" or ") + jpeg);
    EXPECT_EQ(of("com.adobe.pdf", "public.jpeg"), pdf + text(" but not ") + jpeg);
    EXPECT_EQ(of("", "public.jpeg"), text("not ") + jpeg);
    EXPECT_TRUE(of("com.adobe.pdf public.jpeg public.png public.mp3 public.html", "")
                    .endsWith(u" or 2 other kinds"));
    EXPECT_EQ(KPSearchState::prettyDateStringFromDateString(Dates::last7Days), text("Last 7 days"));
    EXPECT_EQ(KPSearchState::prettyDateStringFromDateString(Dates::lastYear),
              QString::number(QDate::currentDate().year() - 1));
    EXPECT_EQ(KPSearchState::prettyRatingsStringFromRatingString(text(">= 3")),
              text("3 stars or more"));
    EXPECT_EQ(KPSearchState::prettyRatingsStringFromRatingString(text("!= *")), text("Unrated"));
}

TEST(SearchState, AnswersManyThreadsThatAskFirst)
{
    for (int round = 0; round < 20; ++round) {
        const auto state = KPSearchState::blankSearchState()
                               ->searchStateWithNewTags({text("a"), text("b")})
                               ->searchStateWithNewUTIs({type("tree_public.image")})
                               ->searchStateWithNewExcludeFolders({text("/a")});
        std::vector<std::thread> threads;
        threads.reserve(4);
        std::atomic<int> same = 0;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([&] {
                const auto &query = state->mdQueryString();
                const bool right = query && state->searchTagsLC().size() == 2 &&
                                   state->treedFileTypeNames().size() == 1 &&
                                   state->optimizedExcludeFolders().folders().size() == 1;
                same += right && &query == &state->mdQueryString() ? 1 : 0;
            });
        }
        for (auto &thread : threads)
            thread.join();
        EXPECT_EQ(same, 4);
    }
}

#include "KPCrumbs.h"

#include "KPLibraryItems.h"
#include "KPLocationItem.h"
#include "KPSearchFolders.h"
#include "KPSearchStateKeys.h"
#include "TestNavigator.h"
#include "UserDefaults.h"
#include "XPTranslations.h"

#include <gtest/gtest.h>

using Kind = KPCrumb::Kind;
using State = KPSearchState::Ptr;

static QString words(const char *text)
{
    return QString::fromUtf8(text);
}

static State blank()
{
    return KPSearchState::blankSearchState();
}

static State searching(const char *text)
{
    return blank()->searchStateWithNewSearchString(words(text), true, false, true);
}

static State ofTypes(const QStringList &types)
{
    return blank()->searchStateWithNewUTIs(KPTagName::arrayOfUTIsToKPTagNames(types));
}

// A criterion, the text of its crumb, and that of the crumb after it was negated.
struct Criterion
{
    const char *name;
    State (*state)();
    const char *text;
    const char *negated; // empty: it has no opposite
};

class OneCriterion : public testing::TestWithParam<Criterion>
{
protected:
    void SetUp() override { XPTranslations::install(QLocale(QLocale::English)); }
};

TEST_P(OneCriterion, IsShownRemovedAndNegatedAndBack)
{
    const State state = GetParam().state();
    const KPCrumbs crumbs(state);
    ASSERT_EQ(crumbs.crumbs().size(), 3) << qPrintable(crumbs.sentence());
    const KPCrumb crumb = crumbs.crumbs().last();
    EXPECT_EQ(crumb.text, words(GetParam().text));
    ASSERT_TRUE(crumb.without);
    EXPECT_TRUE(crumb.without->isBlank()) << "something is left of it";
    ASSERT_EQ(crumb.negated != nullptr, *GetParam().negated != '\0');
    if (!crumb.negated)
        return;
    const KPCrumb opposite = KPCrumbs(crumb.negated).crumbs().last();
    EXPECT_EQ(opposite.text, words(GetParam().negated));
    ASSERT_TRUE(opposite.negated) << "there is no way back";
    EXPECT_EQ(KPCrumbs(opposite.negated).crumbs().last().text, words(GetParam().text));
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, OneCriterion,
    testing::Values(
        Criterion{"Tag", [] { return blank()->searchStateByAddingTag(words("work")); }, "work",
                  "work"},
        Criterion{"ExcludedTag",
                  [] { return blank()->searchStateByAddingExcludeTag(words("Ünicode")); },
                  "Ünicode", "Ünicode"},
        Criterion{"Tagged", [] { return blank()->searchStateWithNewTaggedFiles(true); }, "Tagged",
                  "Untagged"},
        Criterion{"Types", [] { return ofTypes({words("com.adobe.pdf")}); }, "PDF", "PDF"},
        Criterion{"Impossible", [] { return ofTypes({KPSearchState::inconsistentUTI}); },
                  "Impossible Kind", ""},
        Criterion{"Week",
                  [] { return blank()->searchStateWithNewDateString(KPSearchDates::last7Days); },
                  "Last 7 days", "Older than 7 days"},
        Criterion{"OwnDates", [] { return KPCrumbs(blank()).withDates(20, 10); },
                  "10 to 20 days ago", ""},
        Criterion{"Stars", [] { return blank()->searchStateWithNewRating(words(">= 3")); },
                  "3 stars or more", "Unrated to 2 stars"},
        Criterion{"OneStar", [] { return blank()->searchStateWithNewRating(words(">= 1")); },
                  "1 star or more", "Unrated"},
        Criterion{"Word", [] { return searching("ferry"); }, "“ferry”", "“-ferry”"},
        Criterion{"Phrase", [] { return searching("\"to pay\""); }, "“to pay”", ""},
        Criterion{"RawQuery", [] { return searching("mdq:kMDItemFSName == *"); },
                  "“mdq:kMDItemFSName == *”", ""},
        Criterion{"Quotes", [] { return searching("\"\""); }, "“”", ""},
        Criterion{"Files",
                  [] { return blank()->searchStateWithNewFileList(QStringList{words("/a")}); },
                  "1 chosen document", ""},
        Criterion{
            "Narrowed",
            [] { return blank()->searchStateWithNewPostContstraintFolders({words("/tmp/in")}); },
            "in", ""}),
    [](const auto &row) { return std::string(row.param.name); });

class Crumbs : public testing::Test
{
protected:
    void SetUp() override { XPTranslations::install(QLocale(QLocale::English)); }
};

TEST_F(Crumbs, NegatesAFolderIntoOneLeftOutAndBack)
{
    const State state = blank()->searchStateWithNewContstraintFolders({words("/tmp/in")});
    const KPCrumb location = KPCrumbs(state).crumbs().at(1);
    ASSERT_TRUE(location.negated);
    const KPCrumb leftOut = KPCrumbs(location.negated).crumbs().last();
    EXPECT_EQ(leftOut.kind, Kind::NoFolder);
    ASSERT_TRUE(leftOut.negated);
    EXPECT_TRUE(leftOut.negated->isEqualToSearchState(*state));
}

TEST_F(Crumbs, ShowsEachWordAndKeepsTheOthersWhole)
{
    const KPCrumbs crumbs(searching("tag:\"to do\" ferry \"two words\" -draft"));
    ASSERT_EQ(crumbs.crumbs().size(), 6);
    const KPSearchState::Ptr rest = crumbs.crumbs().at(3).without; // ferry
    EXPECT_EQ(rest->delimitedSearchStrings(),
              (QStringList{words("tag:to do"), words("two words"), words("-draft")}));
    EXPECT_TRUE(rest->searchContents());
    EXPECT_EQ(KPCrumbs(crumbs.crumbs().last().negated).crumbs().last().text, words("“draft”"));
}

TEST_F(Crumbs, SaysTheStateInOneSentence)
{
    const State state = ofTypes({words("com.adobe.pdf")})
                            ->searchStateByAddingTag(words("work"))
                            ->searchStateByAddingExcludeTag(words("draft"))
                            ->searchStateWithNewDateString(KPSearchDates::last7Days);
    EXPECT_EQ(KPCrumbs::sentenceOf(state), words("tagged work, without draft, PDF, Last 7 days"));
    EXPECT_EQ(KPCrumbs::sentenceOf(blank()), words("All Documents"));
}

TEST_F(Crumbs, ShowsByTheSourceWhatTheSourceSaysAsLongAsItDoes)
{
    const auto flagged = std::make_shared<KPFlagItem>();
    const State both = flagged->searchState()->searchStateByAddingTag(words("work"));
    const KPCrumbs crumbs(both, flagged);
    ASSERT_EQ(crumbs.crumbs().size(), 3);
    EXPECT_EQ(crumbs.crumbs().first().text, words("Flagged"));
    EXPECT_EQ(crumbs.crumbs().last().value, words("work"));
    const KPCrumbs left(both->searchStateByClearingTag(words("flagged")), flagged);
    EXPECT_EQ(left.crumbs().first().text, words("All Documents"));
    EXPECT_EQ(left.crumbs().last().value, words("work"));
}

// Every key that narrows a search is told by some step, in whatever mixture.
TEST_F(Crumbs, LeavesNoCriterionOut)
{
    State state =
        searching("a b")
            ->searchStateWithNewTags({words("t1"), words("t2")})
            ->searchStateWithNewExcludeTags({words("n1"), words("n2")})
            ->searchStateWithNewRating(words("<= 2"))
            ->searchStateWithNewTaggedFiles(true)
            ->searchStateWithNewExcludeFolders({words("/x"), words("/y")})
            ->searchStateWithNewFinderListing(true, true)
            ->searchStateWithNewShowBundleContents(true)
            ->searchStateWithNewDateString(KPSearchDates::thisYear)
            ->searchStateWithNewContstraintFolders({words("/in")})
            ->searchStateWithNewPostContstraintFolders({words("/in/deep")})
            ->searchStateWithNewUTIs(KPTagName::arrayOfUTIsToKPTagNames({words("public.png")}))
            ->searchStateWithNewExcludeUTIs(
                KPTagName::arrayOfUTIsToKPTagNames({words("public.tiff")}));
    int removed = 0;
    for (;; ++removed) {
        const QList<KPCrumb> crumbs = KPCrumbs(state).crumbs();
        const auto next = std::find_if(crumbs.begin(), crumbs.end(), [](const KPCrumb &crumb) {
            return crumb.without != nullptr;
        });
        if (next == crumbs.end())
            break;
        state = next->without;
    }
    EXPECT_EQ(removed, 15); // a listing is left together with its packages
    EXPECT_TRUE(state->searchStateWithNewContstraintFolders({})->isBlank());
}

class CrumbControllerTest : public Crumbs
{
protected:
    QStringList texts(const QList<KPCrumbChoice> &choices) const
    {
        QStringList texts;
        for (const KPCrumbChoice &choice : choices)
            texts.append(choice.text + (choice.isChecked ? QStringLiteral("*") : QString()));
        return texts;
    }
    IndexedFolder m_folder;
    TestNavigator m_navigator{m_folder.index()};
};

TEST_F(CrumbControllerTest, GoesUpFromFolderToFolder)
{
    KPCrumbController &crumbs = *m_navigator.crumbs;
    crumbs.showLocation(KPLocationItem::withFolder(m_folder.path(words("a/b"))));
    EXPECT_TRUE(crumbs.canGoUp());
    crumbs.applyState(crumbs.searchState()->searchStateByAddingTag(words("kept")));
    crumbs.parentLocationAction();
    EXPECT_EQ(m_navigator.state()->constraintFolders(), QStringList{m_folder.path(words("a"))});
    EXPECT_TRUE(m_navigator.state()->hasSearchTag(words("kept")));
    EXPECT_TRUE(m_navigator.wasRemembered);
    EXPECT_EQ(crumbs.currentLocation()->path, m_folder.path(words("a")));
    EXPECT_TRUE(crumbs.currentLocation()->isSingleFolder);
    crumbs.showLocation(KPLocationItem::everywhere());
    EXPECT_FALSE(crumbs.canGoUp());
    EXPECT_FALSE(crumbs.currentLocation());
}

TEST_F(CrumbControllerTest, KeepsTheNameOfAPlaceThatStays)
{
    KPCrumbController &crumbs = *m_navigator.crumbs;
    const QStringList folder{m_folder.path()};
    crumbs.showLocation(std::make_shared<KPLocationItem>(folder, words("Recent Files")));
    crumbs.applyState(m_navigator.state()->searchStateByAddingTag(words("x")));
    EXPECT_EQ(crumbs.locationItem()->displayName(), words("Recent Files"));
}

TEST_F(CrumbControllerTest, KeepsTheLocationOfANewSource)
{
    KPCrumbController &crumbs = *m_navigator.crumbs;
    crumbs.showLocation(KPLocationItem::withFolder(m_folder.path()));
    crumbs.showSource(std::make_shared<KPUntaggedItem>());
    EXPECT_TRUE(m_navigator.state()->isShowingUntaggedDocuments());
    EXPECT_EQ(m_navigator.state()->constraintFolders(), QStringList{m_folder.path()});
    crumbs.spotlightSearchAction();
    EXPECT_EQ(m_navigator.state()->constraintFolders(), QStringList{KPSearchFolders::everywhere});
    EXPECT_EQ(crumbs.sourceItem()->sourceListItemType(), 11);
}

TEST_F(CrumbControllerTest, RemembersAsManyLocationsAsTheSettingsSay)
{
    UserDefaults::standard().setValue(KPRecentLocations::numberKey, PropertyValue::integer(3));
    KPCrumbController &crumbs = *m_navigator.crumbs;
    crumbs.clearRecentLocations();
    for (const char *name : {"/1", "/2", "/3", "/4", "/2"})
        crumbs.addToRecentLocations(KPLocationItem::withFolder(words(name)));
    crumbs.addToRecentLocations(KPLocationItem::everywhere());
    const KPRecentLocations stored;
    QStringList names;
    for (const auto &location : stored.locations())
        names.append(location->displayName());
    EXPECT_EQ(names, (QStringList{words("2"), words("4"), words("3")}));
}

TEST_F(CrumbControllerTest, ComesBackWithItsItems)
{
    KPCrumbController &crumbs = *m_navigator.crumbs;
    crumbs.setSourceItem(std::make_shared<KPFlagItem>());
    crumbs.setLocationItem(KPLocationItem::withFolder(words("/tmp")));
    crumbs.writeOutState();
    EXPECT_EQ(crumbs.storedSourceItem()->sourceListItemType(), 13);
    EXPECT_EQ(crumbs.storedLocationItem()->folders(), QStringList{words("/tmp")});
    crumbs.applyState(KPSearchState::blankSearchState()->searchStateWithNewFileList(
        QStringList{words("/tmp/a.pdf")}));
    crumbs.writeOutState();
    EXPECT_FALSE(crumbs.storedLocationItem()) << "its name is of files that are not shown again";
}

TEST_F(CrumbControllerTest, OffersWhatTheStepCanBeChangedTo)
{
    KPCrumbController &crumbs = *m_navigator.crumbs;
    const State state =
        ofTypes({words("com.adobe.pdf")})->searchStateWithNewDateString(KPSearchDates::last7Days);
    crumbs.applyState(state);
    const KPCrumbs trail(state, crumbs.sourceItem(), crumbs.locationItem());
    const auto kinds = trail.choices(trail.crumbs().at(2), crumbs);
    EXPECT_EQ(texts(kinds).first(), words("PDF*"));
    EXPECT_TRUE(kinds.first().state->fileUTIs().isEmpty()) << "wanted already: taken away";
    EXPECT_EQ(kinds.at(5).state->fileUTIs().size(), 2) << "a second kind is added";
    EXPECT_EQ(kinds.at(5).excluding->explicitFileUTITagsToExclude().size(), 1);
    const auto days = trail.choices(trail.crumbs().at(3), crumbs);
    EXPECT_EQ(texts(days).at(2), words("Last 7 days*"));
    EXPECT_TRUE(days.last().asksForDates);
    EXPECT_EQ(texts(trail.choices(trail.crumbs().first(), crumbs)).first(),
              words("All Documents*"));
}

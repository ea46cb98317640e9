// What the index finds of a search state, on real files.
#include "FollowedSearch.h"
#include "IndexedFolder.h"
#include "KPSearchDates.h"
#include "KPSearchFolders.h"
#include "KPSearchVolumes.h"
#include "Karvex.h"
#include "XPExtendedAttributes.h"
#include "XPPath.h"
#include "XPTranslations.h"

#include <QScopeGuard>
#include <filesystem>
#include <sys/stat.h>

using Ptr = KPSearchState::Ptr;
using Names = QStringList;

static QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

static KPSearchState::Tags types(const QStringList &identifiers)
{
    return KPTagName::arrayOfUTIsToKPTagNames(identifiers);
}

static void move(const QString &from, const QString &to)
{
    std::filesystem::rename(XPPath::encode(from).toStdString(), XPPath::encode(to).toStdString());
}

namespace {

struct Case
{
    const char *name;
    Ptr state;
    Names found;
};

class IndexedState : public testing::Test
{
protected:
    IndexedState()
    {
        EXPECT_FALSE(Karvex::addUserTags({text("Work"), text("Café Noir")}, at("Bill.pdf")));
        EXPECT_FALSE(Karvex::setRating(3.5, at("Bill.pdf")));
        EXPECT_FALSE(Karvex::setRating(1, at("sub/note.txt")));
        EXPECT_FALSE(Karvex::addUserTags({text("work"), text("old")}, at("sub/deep/scan.png")));
        for (const QString &key : {Karvex::userTagsKey, Karvex::starRatingKey})
            EXPECT_FALSE(XPExtendedAttributes::write(at("damaged.jpg"), Karvex::spotlightKey(key),
                                                     "bplist00x"));
        const auto tenDays = std::chrono::hours(240);
        std::filesystem::last_write_time(XPPath::encode(at("late.txt")).toStdString(),
                                         std::filesystem::file_time_type::clock::now() - tenDays);
        at(".hidden.txt");
    }

    // Makes the file.
    QString at(const char *name) { return folder.file(text(name)); }
    QString path(const char *name) const { return folder.path(text(name)); }
    // Names below the folder, sorted.
    Names found(const Ptr &state, QStringList *problems = nullptr)
    {
        auto setup = FollowedSearch::quick();
        setup.live = false;
        FollowedSearch results(folder.index(), setup);
        results.search(state);
        EXPECT_TRUE(results.waitUntilFinished());
        if (problems)
            *problems = results.problems;
        return names(results);
    }
    void expect(const std::vector<Case> &cases)
    {
        for (const Case &each : cases)
            EXPECT_EQ(found(each.state), each.found) << each.name;
    }
    Names names(const FollowedSearch &results) const
    {
        Names names;
        for (const QString &each : results.paths())
            names.append(each.mid(folder.path().size() + 1));
        return names;
    }

    const QString bill = text("Bill.pdf");
    const QString damaged = text("damaged.jpg");
    const QString late = text("late.txt");
    const QString scan = text("sub/deep/scan.png");
    const QString note = text("sub/note.txt");
    IndexedFolder folder;
    const Ptr all = folder.state();
};

} // namespace

TEST_F(IndexedState, IsFoundByEveryCriterion)
{
    const auto words = [this](const char *typed, bool meta) {
        return all->searchStateWithNewSearchString(text(typed), false, meta, true);
    };
    expect({
        {"all", all, {bill, damaged, late, scan, note}},
        {"words", words("BIL", false), {bill}},
        {"words in tags", words("cafe", true), {bill}},
        {"words in names alone", words("cafe", false), {}},
        {"negated", words("-note", false), {bill, damaged, late, scan}},
        {"an extension", words("note.txt", false), {note}},
        {"raw", words("mdq:kMDItemFSName == \"s*\"", false), {scan}},
        {"tags", all->searchStateWithNewTags({text("WORK"), text("cafe noir")}), {bill}},
        {"not a tag", all->searchStateWithNewExcludeTags({text("OLD")}), {bill, late, note}},
        {"tag, not another",
         all->searchStateByAddingTag(text("work"))->searchStateByAddingExcludeTag(text("old")),
         {bill}},
        {"tagged", all->searchStateWithNewTaggedFiles(true), {bill, damaged, scan}},
        {"untagged", all->searchStateWithNewUntaggedFiles(true), {late, note}},
        {"type", all->searchStateWithNewUTIs(types({text("com.adobe.pdf")})), {bill}},
        {"type tree", all->searchStateWithNewUTIs(types({text("tree_public.text")})), {late, note}},
        {"not a type",
         all->searchStateWithNewExcludeUTIs(types({text("tree_public.text"), text("public.png")})),
         {bill, damaged}},
        {"impossible types",
         all->searchStateWithNewUTIs(types({KPSearchState::inconsistentUTI})),
         {}},
        {"date",
         all->searchStateWithNewDateString(KPSearchDates::last7Days),
         {bill, damaged, scan, note}},
        {"rating", all->searchStateWithNewRating(text(">= 3")), {bill}},
        {"at most", all->searchStateWithNewRating(text("<= 3")), {note}},
        {"unrated", all->searchStateWithNewRating(text("!= *")), {late, scan}},
    });
}

TEST_F(IndexedState, IsFoundByATagAboveItsOwn)
{
    ASSERT_FALSE(Karvex::addUserTags({text("Tax/2024/March")}, path("Bill.pdf")));
    ASSERT_FALSE(Karvex::addUserTags({text("tax")}, path("sub/deep/scan.png")));
    ASSERT_FALSE(Karvex::addUserTags({text("taxi"), text("old/tax")}, path("late.txt")));
    const Ptr listing = all->searchStateWithNewFinderListing(true, false);
    expect({
        {"parent", all->searchStateWithNewTags({text("TAX")}), {bill, scan}},
        {"between", all->searchStateWithNewTags({text("tax/2024")}), {bill}},
        {"with another", all->searchStateWithNewTags({text("tax"), text("work")}), {bill, scan}},
        {"none of the branch",
         all->searchStateWithNewExcludeTags({text("tax")}),
         {late, note}}, // one that cannot be read may have it
        {"listed", listing->searchStateWithNewTags({text("tax")}), {bill}},
    });
}

TEST_F(IndexedState, IsFoundInItsPlaces)
{
    const Ptr listing = all->searchStateWithNewFinderListing(true, false);
    expect({
        {"not in a folder",
         all->searchStateWithNewExcludeFolders({path("sub/deep")}),
         {bill, damaged, late, note}},
        {"in one, not in one inside",
         IndexedFolder::stateIn({path("sub")})
             ->searchStateWithNewExcludeFolders({path("sub/deep")}),
         {note}},
        {"listing", listing, {bill, damaged, late, text("sub")}},
        {"deep listing",
         all->searchStateWithNewFinderListing(true, true),
         {bill, damaged, late, scan, note}},
        {"narrower listing",
         listing->searchStateWithNewPostContstraintFolders({path("sub")}),
         {text("sub/deep"), note}},
        {"files by name, hidden ones too",
         all->searchStateWithNewFileList(QStringList{path("late.txt"), path(".hidden.txt")}),
         {text(".hidden.txt"), late}},
        {"files and a type",
         all->searchStateWithNewFileList(QStringList{path("late.txt"), path("Bill.pdf")})
             ->searchStateWithNewUTIs(types({text("com.adobe.pdf")})),
         {bill}},
        {"both of two",
         all->searchStateWithNewRating(text(">= 1"))
             ->searchStateWithAND(*IndexedFolder::stateIn({path("sub")})),
         {note}},
        {"two that exclude each other",
         IndexedFolder::stateIn({path("sub/deep")})
             ->searchStateWithAND(*IndexedFolder::stateIn({path("other")})),
         {}},
    });
}

// What cannot be read is unknown, not absent; it is told unless something else leaves it out.
TEST_F(IndexedState, TakesNothingUnreadableForAbsent)
{
    const struct
    {
        Ptr state;
        bool isTold;
    } cases[] = {
        {all->searchStateWithNewExcludeTags({text("other")}), true},
        {all->searchStateWithNewUntaggedFiles(true), true},
        {all->searchStateWithNewTags({text("work")}), true},
        {all->searchStateWithNewRating(text("!= *")), true},
        {all->searchStateWithNewSearchString(text("bill"), false, true, true), true},
        {all->searchStateWithNewSearchString(text("bill"), false, false, true), false},
        {all->searchStateWithNewRating(text(">= 3"))
             ->searchStateWithNewUTIs(types({text("com.adobe.pdf")})),
         false},
        {IndexedFolder::stateIn({path("sub")})->searchStateWithNewTags({text("work")}), false},
    };
    for (const auto &each : cases) {
        QStringList problems;
        EXPECT_FALSE(found(each.state, &problems).contains(damaged));
        EXPECT_EQ(problems.size(), each.isTold ? 1 : 0) << problems.join(u'\n').toStdString();
        if (each.isTold && !problems.isEmpty()) {
            EXPECT_TRUE(problems.first().startsWith(path("damaged.jpg") + u':'));
        }
    }
    QStringList problems;
    EXPECT_TRUE(found(all, &problems).contains(damaged));
    EXPECT_EQ(problems, QStringList()) << "the document tells itself";
}

// Views leave out what the user has hidden, and nothing else: not what cannot be read.
TEST_F(IndexedState, ShowsWhatIsHiddenOnlyWhereItIsAskedFor)
{
    const Names before = found(KPSearcher::shownOf(all));
    EXPECT_TRUE(before.contains(damaged) && before.contains(late));
    const QString file = path("late.txt");
    ASSERT_FALSE(Karvex::addUserTags({text("hidden")}, file));
    folder.catchUp();
    Names without = before;
    without.removeOne(late);
    QStringList problems;
    EXPECT_EQ(found(KPSearcher::shownOf(all), &problems), without);
    EXPECT_EQ(problems, QStringList());
    const struct
    {
        Ptr state;
        bool isShown;
    } cases[] = {
        {all, false},
        {all->searchStateWithNewTags({text("Hidden")}), true},
        {all->searchStateWithNewTags({text("old")}), false},
        {all->searchStateWithNewTaggedFiles(true), false},
        {all->searchStateWithNewUntaggedFiles(true), false},
        {all->searchStateWithNewFileList(QStringList{file}), true},
        {all->searchStateWithNewSearchString(text("late"), false, false, true), false},
    };
    for (const auto &each : cases) {
        EXPECT_EQ(found(KPSearcher::shownOf(each.state)).contains(late), each.isShown);
    }
    ASSERT_FALSE(Karvex::clearUserTags({text("hidden")}, file));
    folder.catchUp();
    EXPECT_EQ(found(KPSearcher::shownOf(all)), before);
}

TEST_F(IndexedState, FollowsWhatComesAndGoes)
{
    const Ptr state = all->searchStateWithNewExcludeTags({text("old")})
                          ->searchStateWithNewExcludeFolders({path("out")})
                          ->searchStateWithNewExcludeUTIs(types({text("public.png")}));
    FollowedSearch results(folder.index());
    results.search(state);
    ASSERT_TRUE(results.waitUntilFinished());
    const auto become = [&](const Names &wanted) {
        return FollowedSearch::waitFor([&] { return names(results) == wanted; });
    };
    ASSERT_TRUE(become({bill, late, note}));
    ASSERT_FALSE(Karvex::addUserTags({text("Old")}, path("Bill.pdf")));
    EXPECT_TRUE(become({late, note}));
    ASSERT_FALSE(Karvex::clearUserTags({text("old")}, path("Bill.pdf")));
    EXPECT_TRUE(become({bill, late, note}));
    move(path("sub"), path("out"));
    EXPECT_TRUE(become({bill, late}));
    move(path("out/note.txt"), path("note.txt"));
    EXPECT_TRUE(become({bill, late, text("note.txt")}));
    move(path("note.txt"), path("note.png"));
    EXPECT_TRUE(become({bill, late}));
    move(path("Bill.pdf"), path(".Bill.pdf"));
    EXPECT_TRUE(become({late}));
    const QString tags = Karvex::spotlightKey(Karvex::userTagsKey);
    ASSERT_FALSE(XPExtendedAttributes::write(path("late.txt"), tags, "bplist00x"));
    EXPECT_TRUE(become({}));
}

// The caches that documents read their tags from hear of a change when they please, before the
// search or after it.
TEST_F(IndexedState, IsRightWhateverTheAttributeCachesKnow)
{
    xpGuiThread.assertHere();
    KPDoc::startMetaDataSearching(folder.index());
    const auto stop = qScopeGuard([] {
        xpGuiThread.assertHere();
        KPDoc::stopMetaDataSearching();
    });
    FollowedSearch results(folder.index());
    results.search(all->searchStateWithNewExcludeTags({text("old")}));
    const QString changed = path("late.txt");
    const auto isShown = [&](bool shown) {
        return FollowedSearch::waitFor(
            [&] { return results.isFinished && results.holds(changed) == shown; });
    };
    ASSERT_TRUE(isShown(true));
    for (int round = 0; round < 20; ++round) {
        ASSERT_FALSE(Karvex::addUserTags({text("old")}, changed));
        ASSERT_TRUE(isShown(false)) << round;
        ASSERT_FALSE(Karvex::clearUserTags({text("old")}, changed));
        ASSERT_TRUE(isShown(true)) << round;
    }
}

// Without folders all that is indexed is meant; a folder that is indexed is not hidden.
TEST_F(IndexedState, LooksEverywhereWithoutFolders)
{
    at(".share/inbox/new.txt");
    at(".share/inbox/.not");
    at(".share/other.txt");
    folder.moreRoots = QStringList{path(".share/inbox")};
    const Ptr everywhere = KPSearchState::searchStateWithNativeDictionary({});
    const Names texts = {text(".share/inbox/new.txt"), text("late.txt"), text("sub/note.txt")};
    const auto plainText = types({text("public.plain-text")});
    EXPECT_EQ(found(everywhere->searchStateWithNewUTIs(plainText)), texts);
    EXPECT_EQ(
        found(everywhere->searchStateWithNewUTIs(plainText)->searchStateWithNewContstraintFolders(
            {KPSearchFolders::everywhere})),
        texts);
    QStringList problems;
    EXPECT_EQ(found(IndexedFolder::stateIn({text("no place")}), &problems), Names());
    EXPECT_EQ(problems.size(), 1) << "not everything, and not nothing without a word";
}

TEST_F(IndexedState, NamesTheFoldersThatTheIndexDoesNotCover)
{
    XPTranslations::install(QLocale::c());
    const TestFolder volume;
    KPSearchFolders::instance().setIndexAvailability({{volume.path(), KPSearchVolumes::fails}});
    const auto restore = qScopeGuard([] { KPSearchFolders::instance().updateIndexAvailability(); });
    const QString there = volume.path(text("folder"));
    QStringList problems;
    EXPECT_EQ(found(IndexedFolder::stateIn({path("sub"), there}), &problems).size(), 2);
    ASSERT_EQ(problems.size(), 1);
    EXPECT_TRUE(problems.first().startsWith(there + u' '));
    EXPECT_EQ(found(IndexedFolder::stateIn({there}), &problems), Names());
    ASSERT_EQ(problems.size(), 1);
    EXPECT_TRUE(problems.first().startsWith(there + u' '));
    // Files by name are looked for on the disk, covered or not.
    const QString file = volume.file(text("file"));
    EXPECT_EQ(found(all->searchStateWithNewFileList(QStringList{path("late.txt"), file})).size(),
              2);
}

TEST_F(IndexedState, RefusesWhatTheIndexCannotRead)
{
    XPTranslations::install(QLocale::c());
    QStringList problems;
    const Ptr torn =
        all->searchStateWithNewSearchString(text("mdq:kMDItemFSName =="), false, false, true);
    EXPECT_EQ(found(torn, &problems), Names());
    ASSERT_EQ(problems.size(), 1);
    EXPECT_TRUE(problems.first().contains(u"cannot be asked"));
}

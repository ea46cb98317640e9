// Hand-over, passes, limits and live updates of a searcher, on real files.
#include "FollowedSearch.h"
#include "IndexedFolder.h"
#include "KPDocCache.h"
#include "Karvex.h"
#include "UserDefaults.h"
#include "XPPath.h"

#include <QScopeGuard>
#include <filesystem>
#include <thread>

namespace fs = std::filesystem;

static void remove(const QString &path)
{
    fs::remove(XPPath::encode(path).toStdString());
}

static void move(const QString &from, const QString &to)
{
    fs::rename(XPPath::encode(from).toStdString(), XPPath::encode(to).toStdString());
}

// The files alone, whereas all of a folder are asked for with the folder itself.
static KPSearchState::Ptr named(const IndexedFolder &folder, const char *word)
{
    return folder.state()->searchStateWithNewSearchString(QLatin1String(word), false, false, true);
}

namespace {
// Answers nothing: what is asked of the searcher itself.
struct NoDelegate : public KPThreadedSearcher::Delegate
{
    void updatedResults(const KPResultsDelivery::Ptr &delivery) override
    {
        counts.append(std::ssize(*delivery->documents.docs));
    }
    void searchDone(const QStringList &) override { isDone = true; }
    void fileListSearchProgress(qint64) override {}
    bool isDone = false;
    QList<qsizetype> counts;
};
} // namespace

TEST(ThreadedSearcher, TakesAStateOverOnlyWhereThereIsSomethingToDo)
{
    IndexedFolder folder;
    folder.file(QStringLiteral("sub/a"));
    NoDelegate delegate;
    KPThreadedSearcher searcher(folder.index(), &delegate, FollowedSearch::quick());
    searcher.startSearchThread();
    const auto words =
        folder.state()->searchStateWithNewSearchString(QStringLiteral("a"), false, false, true);
    EXPECT_TRUE(searcher.mdQueryNeedsRestart(*words));
    EXPECT_TRUE(searcher.newSearchState(words));
    ASSERT_TRUE(FollowedSearch::waitFor([&] { return delegate.isDone; }));
    EXPECT_EQ(searcher.mdQueryStringCurrentlyInUse(), words->mdQueryString());
    EXPECT_EQ(searcher.constraintFoldersCurrentlyInUse(), QStringList{folder.path()});
    EXPECT_FALSE(searcher.newSearchState(
        KPSearchState::searchStateWithNativeDictionary(words->nativeDictionary())));
    searcher.forceNewSearchNextTime();
    EXPECT_TRUE(searcher.newSearchState(words));
    EXPECT_FALSE(searcher.newSearchState(words)) << "forced once";
    EXPECT_FALSE(searcher.mdQueryNeedsRestart(
        *words->searchStateWithNewPostContstraintFolders({folder.path(QStringLiteral("sub"))})));
    EXPECT_TRUE(searcher.mdQueryNeedsRestart(*words->searchStateWithNewContstraintFolders({})));
}

// Half a second goes by whenever the searcher looks.
TEST(ThreadedSearcher, ShowsManyResultsInPassesAndFewAtOnce)
{
    IndexedFolder folder;
    for (int i = 0; i < 999; ++i)
        folder.file(QStringLiteral("doc %1").arg(i));
    const auto deliveriesOf = [&](qsizetype count) {
        auto setup = FollowedSearch::quick();
        auto now = std::make_shared<std::atomic<int>>(0);
        setup.clock = [now] { return now->fetch_add(1) / 2.0; };
        FollowedSearch results(folder.index(), setup);
        results.search(named(folder, "doc"));
        EXPECT_TRUE(results.waitUntilFinished());
        EXPECT_EQ(results.documents.size(), count);
        return results.deliveries;
    };
    EXPECT_EQ(deliveriesOf(999), 1);
    folder.file(QStringLiteral("one more doc"));
    folder.catchUp();
    EXPECT_EQ(deliveriesOf(1000), 9) << "0.25 s, seven growing ones, the rest";
}

// Nobody waits for all of another search; the same one, run again, keeps its rows till all are
// there.
TEST(ThreadedSearcher, ShowsTheFirstBatchOfAnotherSearchAtOnce)
{
    IndexedFolder folder;
    for (int i = 0; i < 1200; ++i)
        folder.file(QStringLiteral("doc %1").arg(i));
    auto setup = FollowedSearch::quick();
    setup.clock = [] { return 0.0; }; // no pass is over for its time
    NoDelegate delegate;
    KPThreadedSearcher searcher(folder.index(), &delegate, setup);
    searcher.startSearchThread();
    for (const qsizetype first : {1000, 1200}) {
        delegate.isDone = false;
        delegate.counts.clear();
        searcher.forceNewSearchNextTime();
        searcher.newSearchState(named(folder, "doc"));
        ASSERT_TRUE(FollowedSearch::waitFor([&] { return delegate.isDone; }));
        EXPECT_EQ(delegate.counts.first(), first);
        EXPECT_EQ(delegate.counts.last(), 1200);
    }
}

TEST(ThreadedSearcher, TellsAtOnceWhatComesAndLaterWhatGoes)
{
    IndexedFolder folder;
    const QString first = folder.file(QStringLiteral("first"));
    const QString second = folder.file(QStringLiteral("second"));
    auto setup = FollowedSearch::quick();
    setup.removalDelay = std::chrono::hours(1);
    FollowedSearch results(folder.index(), setup);
    results.search(folder.state());
    ASSERT_TRUE(results.waitUntilFinished());
    remove(first);
    folder.catchUp();
    QCoreApplication::processEvents();
    EXPECT_TRUE(results.holds(first)) << "it may be being saved";
    const QString third = folder.file(QStringLiteral("third"));
    ASSERT_TRUE(FollowedSearch::waitFor([&] { return results.holds(third); }));
    EXPECT_FALSE(results.holds(first));
    // What the program deletes itself is left out without waiting for the index.
    results.searcher->documentDeleted(second);
    EXPECT_TRUE(FollowedSearch::waitFor([&] { return !results.holds(second); }));
}

// The index may not know of it yet.
TEST(ThreadedSearcher, WhatIsTakenOutOfTheLibraryIsNotFoundAndNothingElseIsMissing)
{
    IndexedFolder folder;
    const QString out = folder.file(QStringLiteral("out"));
    const QString stays = folder.file(QStringLiteral("stays"));
    for (const QString &path : {out, stays})
        ASSERT_FALSE(Karvex::setRating(3, path));
    FollowedSearch results(folder.index());
    const auto library =
        KPSearchState::blankSearchState()->searchStateWithNewContstraintFolders({folder.path()});
    results.search(library);
    ASSERT_TRUE(
        FollowedSearch::waitFor([&] { return results.holds(out) && results.holds(stays); }));
    {
        xpGuiThread.assertHere();
        KPDoc::setManaged({out}, false);
    }
    results.searcher->forceNewSearchNextTime();
    results.search(library);
    ASSERT_TRUE(results.waitUntilFinished());
    EXPECT_FALSE(results.holds(out));
    EXPECT_TRUE(results.holds(stays));
}

// Out of the trash, for one.
TEST(ThreadedSearcher, ShowsADeletedDocumentAgainOnceItsFileIsBack)
{
    for (const bool isNoticed : {true, false}) {
        IndexedFolder folder;
        const TestFolder elsewhere;
        const QString path = folder.file(QStringLiteral("a"));
        const QString away = elsewhere.path(QStringLiteral("a"));
        FollowedSearch results(folder.index());
        results.search(folder.state());
        ASSERT_TRUE(results.waitUntilFinished());
        move(path, away);
        xpGuiThread.assertHere();
        KPDoc::deleteDoc(KPDocCache::docAtPathIfExists(path), false, [](const auto &) {});
        ASSERT_TRUE(FollowedSearch::waitFor([&] { return !results.holds(path); }));
        if (isNoticed)
            folder.catchUp();
        move(away, path);
        folder.catchUp();
        EXPECT_TRUE(FollowedSearch::waitFor([&] { return results.holds(path); })) << isNoticed;
    }
}

TEST(ThreadedSearcher, SaysWhenThereWasMoreThanItTakes)
{
    IndexedFolder folder;
    for (int i = 0; i < 12; ++i)
        folder.file(QStringLiteral("doc %1").arg(i));
    for (const int maximum : {13, 12, 5, 0}) {
        auto setup = FollowedSearch::quick();
        setup.maximum = maximum;
        FollowedSearch results(folder.index(), setup);
        results.search(named(folder, "doc"));
        ASSERT_TRUE(results.waitUntilFinished());
        const int shown = maximum == 0 ? 12 : std::min(maximum, 12);
        EXPECT_EQ(results.documents.size(), shown);
        EXPECT_EQ(results.searcher->currentSearchIsMaxxedOut(), maximum == shown) << maximum;
    }
}

TEST(ThreadedSearcher, GoesOnAfterAnException)
{
    IndexedFolder folder;
    folder.file(QStringLiteral("a"));
    auto setup = FollowedSearch::quick();
    auto fails = std::make_shared<std::atomic<bool>>(false);
    setup.clock = [fails] {
        if (fails->exchange(false))
            throw std::runtime_error("no time");
        return 0.0;
    };
    FollowedSearch results(folder.index(), setup);
    *fails = true;
    testing::internal::CaptureStderr();
    results.search(folder.state());
    ASSERT_TRUE(FollowedSearch::waitFor([&] { return !*fails; }));
    const QString other = folder.file(QStringLiteral("b"));
    results.search(
        folder.state()->searchStateWithNewSearchString(QStringLiteral("b"), false, false, true));
    EXPECT_TRUE(FollowedSearch::waitFor([&] { return results.holds(other); }));
    EXPECT_NE(testing::internal::GetCapturedStderr().find("Exception thrown in search thread"),
              std::string::npos);
}

TEST(ThreadedSearcher, EndsItsThreadWhenTheProcessDoes)
{
    IndexedFolder folder;
    for (int i = 0; i < 2000; ++i)
        folder.file(QString::number(i));
    const int before = KPThreadedSearcher::searchThreadCount();
    FollowedSearch results(folder.index());
    EXPECT_EQ(KPThreadedSearcher::searchThreadCount(), before + 1);
    results.search(folder.state());
    KPThreadedSearcher::terminate();
    EXPECT_TRUE(KPThreadedSearcher::waitForSearchThreads(std::chrono::seconds(30)));
}

TEST(ThreadedSearcher, CountsFoldersTagsAndTypes)
{
    IndexedFolder folder;
    const auto tag = [&](const char *name, const QStringList &tags) {
        EXPECT_FALSE(Karvex::setUserTags(tags, folder.file(QString::fromLatin1(name))));
    };
    const QString work = QStringLiteral("sea");
    const QString tax = QStringLiteral("Lake");
    tag("a.pdf", {work, tax});
    tag("sub/b.pdf", {work});
    tag("sub/deep/c.txt", {tax});
    folder.file(QStringLiteral("sub/deep/d.txt"));
    FollowedSearch results(folder.index());
    KPSearcher &searcher = *results.searcher;
    const QString sub = folder.path(QStringLiteral("sub"));
    const auto state = folder.state()->searchStateWithNewExcludeTags({QStringLiteral("none")});
    results.search(state);
    ASSERT_TRUE(results.waitUntilFinished());
    EXPECT_EQ(searcher.numberOfItemsInFolder(folder.path()), 4);
    EXPECT_EQ(searcher.numberOfItemsInFolder(sub), 3);
    const auto counts = [&] {
        searcher.buildTagSets();
        QStringList texts;
        for (const auto &set : searcher.zenTagsSorted() + searcher.fileTypeTagsSorted())
            texts.append(set.tag->displayName() + u' ' + QString::number(set.count));
        return texts.join(u',');
    };
    EXPECT_TRUE(counts().startsWith(u"Lake 2,sea 2,")) << counts().toStdString();
    ASSERT_EQ(searcher.fileTypeTagsSorted().size(), 2);
    EXPECT_EQ(searcher.fileTypeTagsSorted()[0].count, 2);
    const auto related = searcher.relatedTags(KPTagName::tagNameForUserEnteredTag(work));
    ASSERT_EQ(related.size(), 1);
    EXPECT_EQ(related[0].tag->displayName(), tax);
    // A change moves the counts by its difference.
    ASSERT_FALSE(Karvex::addUserTags({work}, folder.path(QStringLiteral("sub/deep/d.txt"))));
    EXPECT_TRUE(FollowedSearch::waitFor([&] { return counts().startsWith(u"Lake 2,sea 3,"); }));
    // Narrower folders count for what is shown, not for the folders.
    results.search(state->searchStateWithNewPostContstraintFolders({sub}));
    ASSERT_TRUE(FollowedSearch::waitFor([&] { return results.documents.size() == 3; }));
    EXPECT_EQ(searcher.numberOfItemsInFolder(folder.path()), 4);
    EXPECT_TRUE(counts().startsWith(u"Lake 1,sea 2,")) << counts().toStdString();
}

TEST(Searcher, ReadsTagsFromComments)
{
    UserDefaults::standard().setValue(QStringLiteral("KPSpotlightPrefix"), QStringLiteral("#"));
    const auto restore =
        qScopeGuard([] { UserDefaults::standard().remove(QStringLiteral("KPSpotlightPrefix")); });
    EXPECT_EQ(KPSearcher::spotlightCommentToTagsArray(
                  QStringLiteral("bought @home &Work\n#tax @ @HOME mail@place")),
              (QStringList{QStringLiteral("home"), QStringLiteral("Work"), QStringLiteral("tax")}));
}

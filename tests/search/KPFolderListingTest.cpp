// Listings of folders and of files by name, against what lies on the disk.
#include "KPFolderListing.h"
#include "FollowedSearch.h"
#include "IndexedFolder.h"
#include "Karvex.h"
#include "TestSystem.h"
#include "UserDefaults.h"
#include "XPExtendedAttributes.h"
#include "XPPath.h"

#include <QScopeGuard>
#include <atomic>
#include <fcntl.h>
#include <filesystem>
#include <random>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

class FolderListing : public testing::Test
{
protected:
    FolderListing()
    {
        for (const char *name : {"a.txt", "sub/b.txt", "sub/deep/c.txt", ".hidden", ".dots/d.txt",
                                 "Tool.app/inside.txt"})
            folder.file(QLatin1String(name));
        folder.file(XPPath::decode("sub/raw\xff"));
        EXPECT_EQ(::symlink("sub", qPrintable(folder.path(QStringLiteral("link")))), 0);
        EXPECT_EQ(::symlink("..", qPrintable(folder.path(QStringLiteral("sub/loop")))), 0);
        EXPECT_EQ(::mkfifo(qPrintable(folder.path(QStringLiteral("fifo"))), 0600), 0);
    }
    QString at(const char *name) const { return folder.path(QString::fromLatin1(name)); }
    QStringList names(const FollowedSearch &results) const
    {
        QStringList names;
        for (const QString &path : results.paths())
            names.append(path.mid(folder.path().size() + 1));
        return names;
    }
    QStringList found(const KPSearchState::Ptr &state, QStringList *problems = nullptr)
    {
        auto setup = FollowedSearch::quick();
        setup.live = false;
        FollowedSearch results(folder.index(), setup);
        results.search(state);
        EXPECT_TRUE(results.waitUntilFinished());
        if (problems != nullptr)
            *problems = results.problems;
        return names(results);
    }
    static QStringList list(const std::vector<const char *> &names)
    {
        QStringList texts;
        for (const char *name : names)
            texts.append(XPPath::decode(QByteArrayView(name)));
        texts.sort();
        return texts;
    }

    IndexedFolder folder;
    const KPSearchState::Ptr plain = folder.state()->searchStateWithNewFinderListing(true, false);
    const KPSearchState::Ptr deep = folder.state()->searchStateWithNewFinderListing(true, true);
};

} // namespace

TEST_F(FolderListing, ShowsWhatLiesThere)
{
    const auto all = list({"a.txt", "Tool.app", "sub/b.txt", "sub/deep/c.txt", "sub/raw\xff"});
    const struct
    {
        const char *name;
        KPSearchState::Ptr state;
        QStringList found;
    } cases[] = {
        {"plain", plain, list({"a.txt", "Tool.app", "link", "sub"})},
        {"deep", deep, all},
        {"inside of packages", deep->searchStateWithNewShowBundleContents(true),
         list({"a.txt", "Tool.app/inside.txt", "sub/b.txt", "sub/deep/c.txt", "sub/raw\xff"})},
        {"all words, and none negated",
         deep->searchStateWithNewSearchString(QStringLiteral("b txt"), false, false, true),
         list({"sub/b.txt"})},
        {"narrower", deep->searchStateWithNewPostContstraintFolders({at("sub/deep")}),
         list({"sub/deep/c.txt"})},
        {"left out", deep->searchStateWithNewExcludeFolders({at("sub")}),
         list({"a.txt", "Tool.app"})},
        {"files by name",
         folder.state()->searchStateWithNewFileList(
             QStringList{at(".hidden"), at("sub/b.txt"), at("missing")}),
         list({".hidden", "sub/b.txt"})},
    };
    for (const auto &each : cases)
        EXPECT_EQ(found(each.state), each.found) << each.name;
    UserDefaults::standard().setValue(QStringLiteral("KPFollowSymLinksGoDeep"),
                                      PropertyValue::boolean(true));
    const auto restore = qScopeGuard(
        [] { UserDefaults::standard().remove(QStringLiteral("KPFollowSymLinksGoDeep")); });
    EXPECT_EQ(found(deep).size(), all.size()) << "each folder once, whatever leads to it";
    QStringList problems;
    EXPECT_EQ(
        found(IndexedFolder::stateIn({at("nowhere")})->searchStateWithNewFinderListing(true, false),
              &problems),
        QStringList());
    EXPECT_EQ(problems.size(), 1);
}

// Tags are those on the files; what cannot be read is told.
TEST_F(FolderListing, AsksTheFilesThemselves)
{
    const QString work = QStringLiteral("work");
    ASSERT_FALSE(Karvex::setUserTags(QStringList{work}, at("sub/b.txt")));
    ASSERT_FALSE(Karvex::setRating(4, at("a.txt")));
    EXPECT_EQ(found(deep->searchStateWithNewTags({QStringLiteral("WORK")})), list({"sub/b.txt"}));
    EXPECT_EQ(found(deep->searchStateWithNewRating(QStringLiteral(">= 3"))), list({"a.txt"}));
    ASSERT_FALSE(XPExtendedAttributes::write(at("a.txt"), Karvex::spotlightKey(Karvex::userTagsKey),
                                             "bplist00x"));
    QStringList problems;
    EXPECT_EQ(found(deep->searchStateWithNewExcludeTags({work}), &problems),
              list({"Tool.app", "sub/deep/c.txt", "sub/raw\xff"}));
    ASSERT_EQ(problems.size(), 1);
    EXPECT_TRUE(problems[0].startsWith(at("a.txt")));
}

TEST_F(FolderListing, FollowsChanges)
{
    FollowedSearch results(folder.index());
    results.search(deep);
    ASSERT_TRUE(results.waitUntilFinished());
    const auto holds = [&](const char *name, bool isThere) {
        return FollowedSearch::waitFor(
            [&] { return names(results).contains(XPPath::decode(name)) == isThere; });
    };
    folder.file(QStringLiteral("new/folder/e.txt"));
    EXPECT_TRUE(holds("new/folder/e.txt", true));
    fs::rename(XPPath::encode(at("sub")).toStdString(), XPPath::encode(at("moved")).toStdString());
    EXPECT_TRUE(holds("moved/deep/c.txt", true));
    EXPECT_TRUE(holds("sub/deep/c.txt", false));
    fs::remove_all(XPPath::encode(at("moved")).toStdString());
    EXPECT_TRUE(holds("moved/deep/c.txt", false));
    EXPECT_EQ(names(results), list({"a.txt", "Tool.app", "new/folder/e.txt"}));
    // Files by name come and go too.
    results.search(
        folder.state()->searchStateWithNewFileList(QStringList{at("later"), at("a.txt")}));
    EXPECT_TRUE(holds("a.txt", true));
    folder.file(QStringLiteral("later"));
    EXPECT_TRUE(holds("later", true));
    fs::remove(XPPath::encode(at("a.txt")).toStdString());
    EXPECT_TRUE(holds("a.txt", false));
}

// A folder that was asked for and is not there is told of, and shown when it comes, however deep it
// lay; when it goes it is awaited again.
TEST_F(FolderListing, AwaitsAFolderThatIsNotThere)
{
    FollowedSearch results(folder.index());
    results.search(
        IndexedFolder::stateIn({at("late/below/it")})->searchStateWithNewFinderListing(true, true));
    ASSERT_TRUE(results.waitUntilFinished());
    EXPECT_EQ(results.problems.size(), 1);
    const QString path = at("late/below/it/f.txt");
    for (int round = 0; round < 2; ++round) {
        folder.file(QStringLiteral("late/below/it/f.txt"));
        EXPECT_TRUE(FollowedSearch::waitFor([&] { return results.holds(path); })) << round;
        EXPECT_TRUE(results.last->problems.isEmpty()) << round;
        fs::remove_all(XPPath::encode(at("late")).toStdString());
        EXPECT_TRUE(FollowedSearch::waitFor([&] { return !results.holds(path); })) << round;
    }
    ASSERT_TRUE(fs::create_directory(XPPath::encode(at("late")).toStdString()));
    fs::rename(XPPath::encode(at("sub")).toStdString(),
               XPPath::encode(at("late/below")).toStdString());
    fs::rename(XPPath::encode(at("late/below/deep")).toStdString(),
               XPPath::encode(at("late/below/it")).toStdString());
    EXPECT_TRUE(FollowedSearch::waitFor([&] { return results.holds(at("late/below/it/c.txt")); }));
}

// The end of a folder that another program stands in is told late, or never.
TEST_F(FolderListing, AwaitsBelowAFolderThatIsReplacedWhileItIsHeldOpen)
{
    const QString path = at("late/below/f.txt");
    folder.file(QStringLiteral("late/below/f.txt"));
    FollowedSearch results(folder.index());
    results.search(
        IndexedFolder::stateIn({at("late/below")})->searchStateWithNewFinderListing(true, true));
    ASSERT_TRUE(FollowedSearch::waitFor([&] { return results.holds(path); }));
    const QByteArray late = XPPath::encode(at("late"));
    fs::remove_all((late + "/below").toStdString());
    ASSERT_TRUE(FollowedSearch::waitFor(
        [&] { return !results.holds(path) && !results.last->problems.isEmpty(); }));
    const XPFileDescriptor held(::open(late.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    fs::remove(late.toStdString());
    folder.file(QStringLiteral("late/below/f.txt"));
    EXPECT_TRUE(FollowedSearch::waitFor([&] { return results.holds(path); }));
}

// What may not be read is told, and all else is there.
TEST_F(FolderListing, SaysWhatMayNotBeRead)
{
    const QByteArray locked = XPPath::encode(at("sub/deep"));
    ASSERT_EQ(::chmod(locked.constData(), 0), 0);
    const int outcome = asPlainUser(folder.path(), [this] {
        KPFolderListing::Setup setup;
        setup.state = deep;
        setup.live = false;
        setup.isAbandoned = [] { return false; };
        int count = 0;
        setup.found = [&](KPDoc *, const auto &) { ++count; };
        KPFolderListing listing(setup);
        const bool isWhole = listing.start();
        const QStringList problems = listing.problems();
        const bool isTold = problems.size() == 1 && problems[0].startsWith(at("sub/deep"));
        return isWhole && isTold && count == 4 ? 0 : 1;
    });
    EXPECT_EQ(::chmod(locked.constData(), 0755), 0);
    EXPECT_EQ(outcome, 0);
}

TEST_F(FolderListing, HoldsPathsLongerThanTheSystemTakes)
{
    const std::string name(200, 'd');
    int at = ::open(qPrintable(folder.path()), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    for (int depth = 0; depth < 40; ++depth) {
        ASSERT_EQ(::mkdirat(at, name.c_str(), 0755), 0);
        const int next = ::openat(at, name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        ::close(std::exchange(at, next));
    }
    ::close(::openat(at, "far", O_WRONLY | O_CREAT | O_CLOEXEC, 0644));
    ::close(at);
    const QStringList all = found(deep);
    EXPECT_TRUE(std::any_of(all.begin(), all.end(),
                            [](const QString &each) { return each.endsWith(u"/far"); }));
}

// States and files change at once; when both rest, the results are what the state says of the disk.
class SearchUnderStress : public testing::TestWithParam<int>
{
};

static QStringList plainEvaluation(const QString &folder, const KPSearchState &state)
{
    QStringList paths;
    const fs::path root = XPPath::encode(folder).toStdString();
    for (auto it = fs::recursive_directory_iterator(root); it != fs::end(it); ++it) {
        if (it->path().filename().native().front() == '.') {
            it.disable_recursion_pending();
            continue;
        }
        const QString path = XPPath::decode(QByteArrayView(it->path().native()));
        if (!it->is_regular_file() || it->is_symlink())
            continue;
        const bool isWanted =
            state.searchTags().isEmpty() ||
            Karvex::getUserTags(path).valueOr({}).contains(state.searchTags().first());
        if (isWanted && (state.searchString().isEmpty() ||
                         XPPath::fileName(path).contains(state.searchString())))
            paths.append(path);
    }
    paths.sort();
    return paths;
}

TEST_P(SearchUnderStress, ComesToRestAtWhatIsThere)
{
    IndexedFolder folder;
    for (int i = 0; i < 300; ++i)
        folder.file(QStringLiteral("f%1/n%2").arg(i % 7).arg(i));
    const QString work = QStringLiteral("work");
    const auto base = folder.state();
    const std::vector<KPSearchState::Ptr> states = {
        base->searchStateWithNewSearchString(QStringLiteral("n1"), false, false, true),
        base->searchStateWithNewTags({work}),
        base->searchStateWithNewFinderListing(true, true),
        base->searchStateWithNewTags({work})->searchStateWithNewSearchString(QStringLiteral("n2"),
                                                                             false, false, true),
        base->searchStateWithNewFinderListing(true, true)->searchStateWithNewTags({work}),
    };
    FollowedSearch results(folder.index());
    std::mt19937 random(static_cast<unsigned>(GetParam()));
    for (int rest = 0; rest < 3; ++rest) {
        std::atomic<bool> isDone = false;
        std::thread other([&, seed = random()] {
            std::mt19937 own(static_cast<unsigned>(seed));
            std::error_code ignored;
            for (int i = 0; i < 400; ++i) {
                const QString path =
                    folder.path(QStringLiteral("f%1/n%2").arg(own() % 7).arg(own() % 300));
                const QString to =
                    folder.path(QStringLiteral("f%1/n%2").arg(own() % 7).arg(own() % 300));
                switch (own() % 6) {
                case 0:
                    fs::rename(XPPath::encode(path).toStdString(), XPPath::encode(to).toStdString(),
                               ignored);
                    break;
                case 1:
                    fs::remove(XPPath::encode(path).toStdString(), ignored);
                    break;
                case 2:
                    static_cast<void>(Karvex::addUserTags({work}, path));
                    break;
                case 3:
                    static_cast<void>(Karvex::clearUserTags({work}, path));
                    break;
                default:
                    ::close(::open(XPPath::encode(path).constData(), O_CREAT | O_WRONLY, 0644));
                }
            }
            isDone = true;
        });
        KPSearchState::Ptr state;
        while (!isDone) {
            state = states[random() % states.size()];
            results.search(state);
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        }
        other.join();
        folder.catchUp();
        const QStringList wanted = plainEvaluation(folder.path(), *state);
        EXPECT_TRUE(FollowedSearch::waitFor([&] {
            return !results.searcher->isSearching() && results.paths() == wanted;
        })) << rest
            << ": " << results.paths().size() << " shown, " << wanted.size() << " there, "
            << state->searchString().toStdString() << state->isDeep();
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, SearchUnderStress, testing::Range(1, 5));

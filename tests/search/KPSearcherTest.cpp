#include "KPSearcher.h"

#include "FollowedSearch.h"
#include "IndexedFolder.h"
#include "Karvex.h"
#include "MetadataIndex.h"
#include "UserDefaults.h"
#include "XPExtendedAttributes.h"
#include "XPPath.h"
#include "XPTranslations.h"

#include <atomic>
#include <fcntl.h>
#include <filesystem>
#include <random>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace fs = std::filesystem;

// What the results should be, found the plain way.
static QStringList naiveList(const QString &folder, const QString &tag = {})
{
    QStringList paths;
    const fs::path root = XPPath::encode(folder).toStdString();
    for (auto it = fs::recursive_directory_iterator(root); it != fs::end(it); ++it) {
        if (it->path().filename().native().front() == '.') {
            it.disable_recursion_pending();
        } else if (it->is_regular_file() && !it->is_symlink()) {
            const QString path = XPPath::decode(QByteArrayView(it->path().native()));
            if (tag.isEmpty() || Karvex::getUserTags(path).valueOr({}).contains(tag))
                paths.append(path);
        }
    }
    paths.sort();
    return paths;
}

// A few thousand random edits of a tree, as another program would make them.
class Editor
{
public:
    Editor(const QString &folder, unsigned seed)
        : m_root(XPPath::encode(folder).toStdString()), m_random(seed)
    {
        m_folders.push_back(m_root);
    }

    void edit(int count)
    {
        for (int i = 0; i < count; ++i)
            editOnce();
    }

private:
    size_t below(size_t count) { return count ? m_random() % count : 0; }
    const fs::path &anyFolder() { return m_folders[below(m_folders.size())]; }
    fs::path newName() { return (below(12) ? "n" : ".n") + std::to_string(below(40)); }
    fs::path anyName(const fs::path &folder) { return folder / ("n" + std::to_string(below(40))); }

    void editOnce()
    {
        std::error_code ignored;
        const fs::path target = anyFolder() / newName();
        const QString path = XPPath::decode(QByteArrayView(target.native()));
        switch (below(10)) {
        case 0:
            if (fs::create_directory(target, ignored))
                m_folders.push_back(target);
            break;
        case 1:
            fs::rename(anyName(anyFolder()), target, ignored);
            break;
        case 2: // a whole folder moves; its old places stay in the list and fail from now on
            fs::rename(anyFolder(), target, ignored);
            m_folders.push_back(target);
            break;
        case 3:
            fs::remove(target, ignored);
            break;
        case 4:
            if (below(8) == 0 && target != m_root)
                fs::remove_all(target, ignored);
            break;
        case 5:
            static_cast<void>(Karvex::addUserTags({QStringLiteral("Work")}, path));
            break;
        case 6:
            static_cast<void>(Karvex::clearUserTags({QStringLiteral("Work")}, path));
            break;
        default:
            if (const int file = ::open(target.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
                file >= 0) {
                EXPECT_GE(::write(file, "text", below(5)), 0);
                ::close(file);
            }
        }
    }

    const fs::path m_root;
    std::mt19937 m_random;
    std::vector<fs::path> m_folders;
};

class SearchUnderEdits : public testing::TestWithParam<int>
{
};

TEST_P(SearchUnderEdits, ShowInTheEndWhatIsThere)
{
    IndexedFolder folder;
    Editor editor(folder.path(), static_cast<unsigned>(GetParam()));
    editor.edit(500);
    KPSearchState::Ptr state = folder.state();
    if (GetParam() % 2)
        state = state->searchStateWithNewTags({QStringLiteral("work")});
    const QString tag = GetParam() % 2 ? QStringLiteral("Work") : QString();
    FollowedSearch results(folder.index());
    results.search(state);
    std::atomic<bool> done = false;
    std::thread other([&] {
        editor.edit(3000);
        done = true;
    });
    FollowedSearch::waitFor([&] { return done.load() && results.isFinished; });
    other.join();
    const QStringList wanted = naiveList(folder.path(), tag);
    EXPECT_TRUE(FollowedSearch::waitFor([&] { return results.paths() == wanted; }))
        << results.paths().size() << " shown, " << wanted.size() << " there";
}

INSTANTIATE_TEST_SUITE_P(Seeds, SearchUnderEdits, testing::Range(1, 5));

TEST(Searcher, AreTheRegularFilesThatAreNotHidden)
{
    IndexedFolder folder;
    const QStringList names = {
        QStringLiteral("plain.txt"),           QStringLiteral("new\nline"),
        QStringLiteral("Caf\u00e9"),           QStringLiteral("Cafe\u0301"),
        XPPath::decode("raw\xff\xfe\x80.pdf"), QStringLiteral("sub/") + QString(255, u'x'),
        QStringLiteral("sub/deeper/-dash")};
    QStringList wanted;
    for (const QString &name : names)
        wanted.append(folder.file(name));
    wanted.sort();
    folder.file(QStringLiteral(".hidden"));
    folder.file(QStringLiteral("sub/.hidden"));
    ASSERT_EQ(::symlink("..", qPrintable(folder.path(QStringLiteral("sub/loop")))), 0);
    ASSERT_EQ(::symlink("plain.txt", qPrintable(folder.path(QStringLiteral("link")))), 0);
    ASSERT_EQ(::mkfifo(qPrintable(folder.path(QStringLiteral("fifo"))), 0600), 0);
    FollowedSearch results(folder.index());
    // A folder inside another one does not bring its documents twice.
    const QString sub = folder.path(QStringLiteral("sub"));
    results.search(IndexedFolder::stateIn({folder.path(), sub}));
    ASSERT_TRUE(results.waitUntilFinished());
    EXPECT_EQ(results.paths(), wanted);
    EXPECT_EQ(results.problems, QStringList());
    results.search(IndexedFolder::stateIn({sub}));
    ASSERT_TRUE(FollowedSearch::waitFor([&] { return results.documents.size() == 2; }));
}

// A search that is done at once is shown at once, too.
TEST(Searcher, ShowTheirResultsBeforeTheySayThatTheseAreAll)
{
    IndexedFolder folder;
    const QString file = folder.file(QStringLiteral("few"));
    FollowedSearch results(folder.index());
    std::optional<bool> wereShown;
    QObject::connect(results.searcher.get(), &KPSearcher::finished, &results,
                     [&] { wereShown = results.holds(file); });
    results.search(IndexedFolder::stateIn({folder.path()}));
    ASSERT_TRUE(results.waitUntilFinished());
    EXPECT_EQ(wereShown, true);
}

TEST(Searcher, FollowRenamesAsGoneAndNew)
{
    IndexedFolder folder;
    const QString a = folder.file(QStringLiteral("a"), "aa");
    const QString b = folder.file(QStringLiteral("b"), "bbb");
    const QString deep = folder.file(QStringLiteral("sub/deep"));
    FollowedSearch results(folder.index());
    results.search(folder.state());
    ASSERT_TRUE(results.waitUntilFinished());
    // Two that change places, with results checked at every step by FollowedSearch.
    const auto move = [](const QString &from, const QString &to) {
        fs::rename(XPPath::encode(from).toStdString(), XPPath::encode(to).toStdString());
    };
    move(a, folder.path(QStringLiteral(".t")));
    move(b, a);
    move(folder.path(QStringLiteral(".t")), b);
    move(folder.path(QStringLiteral("sub")), folder.path(QStringLiteral("moved")));
    EXPECT_TRUE(FollowedSearch::waitFor([&] {
        return results.holds(a) && results.docAt(a)->unixFileSize() == 3 && results.holds(b) &&
               results.docAt(b)->unixFileSize() == 2 &&
               results.holds(folder.path(QStringLiteral("moved/deep"))) && !results.holds(deep);
    }));
    ASSERT_FALSE(Karvex::setRating(4, a));
    EXPECT_TRUE(FollowedSearch::waitFor([&] { return results.docAt(a)->rating() == 4; }));
    move(a, folder.path(QStringLiteral(".away")));
    EXPECT_TRUE(FollowedSearch::waitFor([&] { return !results.holds(a); }));
}

TEST(Searcher, HoldPathsLongerThanTheSystemTakes)
{
    IndexedFolder folder;
    const std::string name(200, 'd');
    int at = ::open(qPrintable(folder.path()), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    for (int depth = 0; depth < 100; ++depth) {
        ASSERT_EQ(::mkdirat(at, name.c_str(), 0755), 0);
        const int next = ::openat(at, name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        ::close(std::exchange(at, next));
    }
    ::close(::openat(at, "deep", O_WRONLY | O_CREAT | O_CLOEXEC, 0644));
    const QString inside = QStringLiteral("/proc/self/fd/%1/deep").arg(at);
    ASSERT_FALSE(Karvex::addUserTags({QStringLiteral("Deep")}, inside));
    FollowedSearch results(folder.index());
    results.search(folder.state());
    ASSERT_TRUE(results.waitUntilFinished());
    ASSERT_EQ(results.documents.size(), 1);
    const KPDoc *doc = results.documents.begin().key();
    EXPECT_EQ(KPTagName::displayStringsForTagNames(doc->tagNamesOfTypeUserEntered()),
              QStringList{QStringLiteral("Deep")});
    ::close(at);
}

TEST(Searcher, ReportNothingOfAnOlderStateAndNothingAfterStop)
{
    IndexedFolder folder;
    for (int i = 0; i < 3000; ++i)
        folder.file(QStringLiteral("old/%1").arg(i));
    const QString wanted = folder.file(QStringLiteral("new/only"));
    const auto old = IndexedFolder::stateIn({folder.path(QStringLiteral("old"))});
    const auto next = IndexedFolder::stateIn({folder.path(QStringLiteral("new"))});
    FollowedSearch results(folder.index());
    for (int round = 0; round < 20; ++round) {
        results.search(old);
        FollowedSearch::waitFor(
            [&] { return round % 3 == 0 || results.documents.size() > round * 100; });
        results.search(next);
        results.documents.clear(); // whatever comes now has to be of the new state
        ASSERT_TRUE(FollowedSearch::waitFor(
            [&] { return results.isFinished && results.documents.size() == 1; }));
        ASSERT_EQ(results.paths(), QStringList{wanted});
    }
    results.search(old);
    FollowedSearch::waitFor([&] { return results.documents.size() > 1; });
    results.searcher->stop();
    const qsizetype shown = results.documents.size();
    folder.file(QStringLiteral("old/later"));
    folder.catchUp();
    QCoreApplication::processEvents();
    EXPECT_EQ(results.documents.size(), shown);
}

TEST(Searcher, EndInTheMiddleOfTheirWork)
{
    IndexedFolder folder;
    for (int i = 0; i < 3000; ++i)
        folder.file(QString::number(i));
    for (int round = 0; round < 10; ++round) {
        FollowedSearch results(folder.index());
        results.search(folder.state());
        FollowedSearch::waitFor([&] { return results.documents.size() >= round * 300; });
    }
}

TEST(Searcher, TellWhichFoldersTheIndexDoesNotHold)
{
    XPTranslations::install(QLocale::c());
    IndexedFolder folder;
    folder.file(QStringLiteral("a"));
    folder.file(QStringLiteral("node_modules/b"));
    const TestFolder elsewhere;
    const QString below = XPPath::absolute(QStringLiteral("/")); // holds it, and is not held
    FollowedSearch results(folder.index());
    results.search(IndexedFolder::stateIn({folder.path(), elsewhere.path(),
                                           folder.path(QStringLiteral("node_modules/deep")), below,
                                           folder.path(QStringLiteral("to come"))}));
    ASSERT_TRUE(results.waitUntilFinished());
    EXPECT_EQ(results.documents.size(), 1);
    ASSERT_EQ(results.problems.size(), 3) << results.problems.join(u'\n').toStdString();
    EXPECT_TRUE(results.problems[0].startsWith(elsewhere.path() + u' '));
    EXPECT_TRUE(results.problems[1].contains(u"rule"));
    EXPECT_TRUE(results.problems[2].startsWith(u"/ "));
    // A folder that comes later is followed all the same.
    results.search(IndexedFolder::stateIn({folder.path(QStringLiteral("to come"))}));
    ASSERT_TRUE(FollowedSearch::waitFor([&] { return results.documents.isEmpty(); }));
    folder.file(QStringLiteral("to come/c"));
    EXPECT_TRUE(FollowedSearch::waitFor([&] { return results.documents.size() == 1; }));
}

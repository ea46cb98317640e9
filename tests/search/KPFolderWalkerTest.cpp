#include "KPFolderWalker.h"

#include "FollowedResults.h"
#include "Karvex.h"
#include "TestHome.h"
#include "XPExtendedAttributes.h"
#include "XPPath.h"

#include <atomic>
#include <fcntl.h>
#include <filesystem>
#include <linux/capability.h>
#include <random>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

namespace fs = std::filesystem;

static KPSearchRequest requestIn(const QStringList &folders)
{
    KPSearchRequest request;
    request.folders = folders;
    return request;
}

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

class WalkerUnderEdits : public testing::TestWithParam<int>
{
};

TEST_P(WalkerUnderEdits, ShowsInTheEndWhatIsThere)
{
    const TestFolder folder;
    Editor editor(folder.path(), static_cast<unsigned>(GetParam()));
    editor.edit(500);
    KPSearchRequest request = requestIn({folder.path()});
    if (GetParam() % 2)
        request.tags = {QStringLiteral("work")};
    const QString tag = GetParam() % 2 ? QStringLiteral("Work") : QString();
    KPFolderWalker walker;
    FollowedResults results(walker);
    walker.setRequest(request);
    std::atomic<bool> done = false;
    std::thread other([&] {
        editor.edit(4000);
        done = true;
    });
    FollowedResults::waitFor([&] { return done.load() && results.isFinished; });
    other.join();
    const QStringList wanted = naiveList(folder.path(), tag);
    // Notices may have been lost: that is a problem until everything was read again.
    EXPECT_TRUE(FollowedResults::waitFor([&] {
        return results.paths() == wanted && results.problems.isEmpty();
    })) << results.paths().size()
        << " shown, " << wanted.size() << " there";
}

INSTANTIATE_TEST_SUITE_P(Seeds, WalkerUnderEdits, testing::Range(1, 7));

TEST(Walker, FindsEveryNameAndFollowsNoLink)
{
    const TestFolder folder;
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
    folder.file(QStringLiteral(".git/inside"));
    ASSERT_EQ(::symlink("..", qPrintable(folder.path(QStringLiteral("sub/loop")))), 0);
    ASSERT_EQ(::symlink("plain.txt", qPrintable(folder.path(QStringLiteral("link")))), 0);
    ASSERT_EQ(::mkfifo(qPrintable(folder.path(QStringLiteral("fifo"))), 0600), 0);
    KPFolderWalker walker;
    FollowedResults results(walker);
    // A folder inside another one, and one given twice, are still walked once.
    walker.setRequest(requestIn(
        {folder.path(), folder.path(QStringLiteral("sub")), folder.path() + QStringLiteral("/.")}));
    ASSERT_TRUE(results.waitUntilFinished());
    EXPECT_EQ(results.paths(), wanted);
    EXPECT_EQ(results.problems, QStringList());
}

TEST(Walker, ReadsPathsLongerThanTheSystemTakes)
{
    const TestFolder folder;
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
    KPFolderWalker walker;
    FollowedResults results(walker);
    walker.setRequest(requestIn({folder.path()}));
    ASSERT_TRUE(results.waitUntilFinished());
    ASSERT_EQ(results.documents.size(), 1);
    EXPECT_EQ(results.documents.begin()->tags, QStringList{QStringLiteral("Deep")});
    ASSERT_EQ(::unlinkat(at, "deep", 0), 0);
    EXPECT_TRUE(FollowedResults::waitFor([&] { return results.documents.isEmpty(); }));
    ::close(at);
    fs::remove_all(XPPath::encode(folder.path()).toStdString()); // QTemporaryDir cannot
}

TEST(Walker, ReportsNothingOfAnOlderRequestAndNothingAfterStop)
{
    const TestFolder folder;
    for (int i = 0; i < 1000; ++i)
        folder.file(QStringLiteral("old/%1").arg(i));
    const QString wanted = folder.file(QStringLiteral("new/only"));
    KPFolderWalker walker;
    FollowedResults results(walker);
    for (int round = 0; round < 20; ++round) {
        walker.setRequest(requestIn({folder.path(QStringLiteral("old"))}));
        FollowedResults::waitFor(
            [&] { return round % 3 == 0 || results.documents.size() > round * 40; });
        walker.setRequest(requestIn({folder.path(QStringLiteral("new"))}));
        results.documents.clear(); // whatever comes now has to be of the new request
        ASSERT_TRUE(FollowedResults::waitFor(
            [&] { return results.isFinished && results.documents.size() == 1; }));
        ASSERT_EQ(results.paths(), QStringList{wanted});
    }
    walker.setRequest(requestIn({folder.path(QStringLiteral("old"))}));
    FollowedResults::waitFor([&] { return results.documents.size() > 1; });
    walker.stop();
    const qsizetype shown = results.documents.size();
    folder.file(QStringLiteral("old/later"));
    QCoreApplication::processEvents();
    EXPECT_EQ(results.documents.size(), shown);
}

TEST(Walker, EndsInTheMiddleOfItsWork)
{
    const TestFolder folder;
    for (int i = 0; i < 1000; ++i)
        folder.file(QString::number(i));
    for (int round = 0; round < 10; ++round) {
        KPFolderWalker walker;
        FollowedResults results(walker);
        walker.setRequest(requestIn({folder.path()}));
        FollowedResults::waitFor([&] { return results.documents.size() >= round; });
    }
}

TEST(Walker, SurvivesABurst)
{
    const TestFolder folder;
    KPFolderWalker walker;
    FollowedResults results(walker);
    walker.setRequest(requestIn({folder.path()}));
    ASSERT_TRUE(results.waitUntilFinished());
    for (int i = 0; i < 3000; ++i)
        folder.file(QString::number(i));
    EXPECT_TRUE(FollowedResults::waitFor([&] { return results.documents.size() == 3000; }));
}

TEST(Walker, LooksAgainForAFolderThatWasNotThere)
{
    const TestFolder folder;
    const QString root = folder.path(QStringLiteral("later"));
    KPFolderWalker walker({true, std::chrono::milliseconds(10)});
    FollowedResults results(walker);
    walker.setRequest(requestIn({root}));
    ASSERT_TRUE(results.waitUntilFinished());
    ASSERT_EQ(results.problems.size(), 1);
    EXPECT_TRUE(results.problems.first().startsWith(root));
    folder.file(QStringLiteral("later/a"));
    EXPECT_TRUE(FollowedResults::waitFor([&] { return results.documents.size() == 1; }));
    fs::rename(qPrintable(root), qPrintable(folder.path(QStringLiteral("away"))));
    EXPECT_TRUE(FollowedResults::waitFor(
        [&] { return results.documents.isEmpty() && results.problems.size() == 1; }));
}

TEST(Walker, TellsWhichTagsCannotBeRead)
{
    const TestFolder folder;
    const QString damaged = folder.file(QStringLiteral("damaged"));
    ASSERT_FALSE(
        XPExtendedAttributes::write(damaged, Karvex::spotlightKey(Karvex::userTagsKey), "bplist"));
    KPFolderWalker walker({false, {}});
    FollowedResults results(walker);
    walker.setRequest(requestIn({folder.path()}));
    ASSERT_TRUE(results.waitUntilFinished());
    EXPECT_FALSE(results.documents.value(damaged).error.isEmpty());
    EXPECT_EQ(results.problems, QStringList()); // the document tells itself
    KPSearchRequest request = requestIn({folder.path()});
    request.notTags = {QStringLiteral("Work")};
    walker.setRequest(request);
    ASSERT_TRUE(FollowedResults::waitFor([&] { return results.problems.size() == 1; }));
    EXPECT_TRUE(results.documents.isEmpty());
}

// Takes root's rights to pass over permissions from this thread (and those it starts).
class WithoutOverride
{
public:
    WithoutOverride() { set(&m_old, false); }
    ~WithoutOverride() { set(&m_old, true); }

private:
    struct Sets
    {
        __user_cap_data_struct words[2];
    };
    static void set(Sets *old, bool restore)
    {
        __user_cap_header_struct header = {_LINUX_CAPABILITY_VERSION_3, 0};
        if (!restore)
            ::syscall(SYS_capget, &header, old->words);
        Sets changed = *old;
        if (!restore)
            changed.words[0].effective &= ~((1U << CAP_DAC_OVERRIDE) | (1U << CAP_DAC_READ_SEARCH));
        ASSERT_EQ(::syscall(SYS_capset, &header, changed.words), 0);
    }

    Sets m_old = {};
};

TEST(Walker, NamesUnreadableFoldersAndReadsThemWhenTheyOpen)
{
    const TestFolder folder;
    folder.file(QStringLiteral("open/a"));
    folder.file(QStringLiteral("shut/b"));
    const QString shut = folder.path(QStringLiteral("shut"));
    ASSERT_EQ(::chmod(qPrintable(shut), 0), 0);
    const WithoutOverride plainRights;
    KPFolderWalker walker;
    FollowedResults results(walker);
    walker.setRequest(requestIn({folder.path()}));
    ASSERT_TRUE(results.waitUntilFinished());
    EXPECT_EQ(results.documents.size(), 1);
    ASSERT_EQ(results.problems.size(), 1);
    EXPECT_TRUE(results.problems.first().startsWith(shut));
    ASSERT_EQ(::chmod(qPrintable(shut), 0755), 0);
    EXPECT_TRUE(FollowedResults::waitFor(
        [&] { return results.documents.size() == 2 && results.problems.isEmpty(); }));
    ASSERT_EQ(::chmod(qPrintable(shut), 0), 0);
    EXPECT_TRUE(FollowedResults::waitFor(
        [&] { return results.documents.size() == 1 && results.problems.size() == 1; }));
    ASSERT_EQ(::chmod(qPrintable(shut), 0755), 0);
}

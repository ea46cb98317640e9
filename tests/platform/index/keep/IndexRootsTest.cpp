#include "IndexCatalog.h"
#include "IndexKeeper.h"
#include "IndexLive.h"
#include "IndexSetup.h"
#include "IndexTestKept.h"
#include "IndexVerifier.h"
#include "TestChild.h"
#include "TestHome.h"
#include "XPPath.h"

#include <QDir>
#include <QFile>
#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

using State = IndexStatus::Root::State;
using namespace std::chrono_literals;

// An index of some roots, kept here, that looks again soon where it has no watch.
class Scene
{
public:
    explicit Scene(const QStringList &roots)
    {
        setup.path = m_store.path(QStringLiteral("index.sqlite"));
        setup.roots = roots;
        setup.unwatchedInterval = 50ms;
        setup.patience = 1s;
    }
    void open() { index = MetadataIndex::open(setup); }
    bool settle()
    {
        const QDeadlineTimer deadline(60'000);
        return !index->sync(false, [&] { return deadline.hasExpired(); });
    }
    IndexItem item(const QString &path) const
    {
        const IndexCatalog::Reading reading(index->source().catalog());
        return index->source().catalog().itemAtPath(XPPath::encode(path));
    }
    bool has(const QString &path) const { return item(path) != 0; }
    bool comes(const QString &path) const
    {
        return holdsSoon([&] { return has(path); });
    }
    bool goes(const QString &path) const
    {
        return holdsSoon([&] { return !has(path); });
    }
    bool becomes(State state, qsizetype root = 0) const
    {
        return holdsSoon([&] {
            const auto roots = index->status()->roots;
            return roots.size() > root && roots[root].state == state;
        });
    }
    std::vector<IndexProblem::Kind> problems() const
    {
        std::vector<IndexProblem::Kind> kinds;
        const auto status = index->status();
        for (const IndexProblem &problem : status->problems)
            kinds.push_back(problem.kind);
        return kinds;
    }
    std::string differences() const
    {
        std::string text;
        for (const auto &found :
             IndexVerifier(index->source().catalog(), IndexRules(setup.rules)).run())
            text += std::to_string(static_cast<int>(found.kind)) + ' ' + found.path.toStdString() +
                    '\n';
        return text;
    }

    IndexSetup setup;
    std::unique_ptr<MetadataIndex> index;

private:
    const TestFolder m_store;
};

TEST(IndexRoots, AMissingRootKeepsItsFilesAndComesBack)
{
    const TestFolder folder;
    const QString root = folder.path(QStringLiteral("a/root"));
    const QString away = folder.path(QStringLiteral("away"));
    const QString file = root + QStringLiteral("/sub/file.txt");
    Scene scene({root});
    scene.open();
    ASSERT_TRUE(scene.becomes(State::Missing));
    EXPECT_EQ(scene.problems(), std::vector{IndexProblem::Kind::RootMissing});
    (void)folder.file(QStringLiteral("a/root/sub/file.txt"));
    ASSERT_TRUE(scene.comes(file));
    ASSERT_TRUE(scene.becomes(State::Live));
    EXPECT_TRUE(scene.problems().empty());
    const IndexItem number = scene.item(file);

    ASSERT_TRUE(QDir().rename(root, away));
    ASSERT_TRUE(scene.becomes(State::Missing));
    EXPECT_EQ(scene.item(file), number);
    scene.index.reset();
    scene.open();
    ASSERT_TRUE(scene.becomes(State::Missing));
    EXPECT_EQ(scene.item(file), number);

    QFile::remove(away + QStringLiteral("/sub/file.txt"));
    ASSERT_TRUE(QDir().rename(away, root));
    ASSERT_TRUE(scene.becomes(State::Live));
    EXPECT_TRUE(scene.goes(file));
    scene.index->setFolders({}, {});
    EXPECT_TRUE(scene.goes(root));
}

TEST(IndexRoots, RulesAndInnerRootsAreAppliedAtOnce)
{
    const TestFolder folder;
    const QString hidden = folder.file(QStringLiteral(".store/inbox/paper.txt"));
    const QString built = folder.file(QStringLiteral("build/a.txt"));
    const QString inbox = folder.path(QStringLiteral(".store/inbox"));
    Scene scene({folder.path(), inbox, folder.path(QStringLiteral("build"))});
    scene.setup.rules = {QStringLiteral(".*")};
    scene.open();
    ASSERT_TRUE(scene.settle());
    EXPECT_EQ(scene.index->status()->roots.size(), 2); // the third is read with the first
    EXPECT_TRUE(scene.has(hidden));
    EXPECT_FALSE(scene.has(folder.path(QStringLiteral(".store"))));
    EXPECT_TRUE(scene.has(built));
    EXPECT_EQ(scene.differences(), "");

    // A folder that the rules leave out now, and that was asked for by itself, becomes a root;
    // one that nobody asks for goes.
    scene.setup.rules = {QStringLiteral("build")};
    scene.index->setFolders(scene.setup.roots, scene.setup.rules);
    EXPECT_TRUE(scene.comes(folder.path(QStringLiteral(".store"))));
    ASSERT_TRUE(scene.settle());
    EXPECT_EQ(scene.index->status()->roots.size(), 2); // the inbox is read with the first now
    EXPECT_TRUE(scene.has(built));
    EXPECT_TRUE(scene.has(hidden));
    EXPECT_EQ(scene.differences(), "");
    scene.setup.roots = {folder.path()};
    scene.index->setFolders(scene.setup.roots, scene.setup.rules);
    EXPECT_TRUE(scene.goes(built));
    EXPECT_TRUE(scene.has(hidden));
    ASSERT_TRUE(scene.settle());
    EXPECT_EQ(scene.differences(), "");
}

TEST(IndexRoots, VolumesComeAndGo)
{
    const TestFolder folder;
    const QString volume = folder.path(QStringLiteral("volume"));
    const QString inner = folder.path(QStringLiteral("home/inner"));
    (void)folder.file(QStringLiteral("home/inner/below.txt"));
    QDir().mkpath(volume);
    EXPECT_EQ(runChild([&] {
                  if (!havePrivateMounts())
                      return;
                  const auto mountAt = [](const QString &point) {
                      return ::mount("none", XPPath::encode(point).constData(), "tmpfs", 0,
                                     "size=1m") == 0;
                  };
                  ASSERT_TRUE(mountAt(volume));
                  const QString file = folder.file(QStringLiteral("volume/file.txt"));
                  Scene scene({volume, folder.path(QStringLiteral("home"))});
                  scene.open();
                  ASSERT_TRUE(scene.settle());
                  EXPECT_TRUE(scene.has(inner + QStringLiteral("/below.txt")));
                  // A mount over a folder covers it; it is no root of its own.
                  ASSERT_TRUE(mountAt(inner));
                  EXPECT_TRUE(scene.goes(inner + QStringLiteral("/below.txt")));
                  EXPECT_TRUE(scene.has(inner));
                  ASSERT_EQ(::umount(XPPath::encode(inner).constData()), 0);
                  EXPECT_TRUE(scene.comes(inner + QStringLiteral("/below.txt")));
                  // An empty mount point does not mean deleted files.
                  ASSERT_TRUE(scene.settle());
                  ASSERT_EQ(::umount2(XPPath::encode(volume).constData(), MNT_DETACH), 0);
                  ASSERT_TRUE(scene.becomes(State::Missing));
                  EXPECT_TRUE(scene.has(file));
                  scene.index.reset();
                  scene.open();
                  ASSERT_TRUE(scene.becomes(State::Missing));
                  EXPECT_TRUE(scene.has(file));
                  ASSERT_TRUE(mountAt(volume));
                  const QString other = folder.file(QStringLiteral("volume/other.txt"));
                  EXPECT_TRUE(scene.comes(other));
                  EXPECT_TRUE(scene.goes(file));
              }),
              0);
}

TEST(IndexRoots, AVolumeThatIsBackAsItWasIsNoProblem)
{
    const TestFolder folder;
    const QString volume = folder.path(QStringLiteral("volume"));
    (void)folder.file(QStringLiteral("disk/file.txt"));
    QDir().mkpath(volume);
    EXPECT_EQ(runChild([&] {
                  if (!havePrivateMounts())
                      return;
                  const QByteArray point = XPPath::encode(volume);
                  const QByteArray disk = XPPath::encode(folder.path(QStringLiteral("disk")));
                  const auto mount = [&] {
                      return ::mount(disk.constData(), point.constData(), nullptr, MS_BIND,
                                     nullptr) == 0;
                  };
                  ASSERT_TRUE(mount());
                  Scene scene({volume});
                  scene.open();
                  ASSERT_TRUE(scene.settle());
                  ASSERT_EQ(::umount2(point.constData(), MNT_DETACH), 0);
                  ASSERT_TRUE(scene.becomes(State::Missing));
                  EXPECT_EQ(scene.problems(), std::vector{IndexProblem::Kind::RootUnmounted});
                  ASSERT_TRUE(mount());
                  ASSERT_TRUE(scene.becomes(State::Live));
                  EXPECT_TRUE(scene.problems().empty());
              }),
              0);
}

// A file system whose program never answers.
TEST(IndexRoots, AHangingVolumeHoldsUpNobody)
{
    const TestFolder folder;
    const QString volume = folder.path(QStringLiteral("volume"));
    const QString file = folder.file(QStringLiteral("home/file.txt"));
    QDir().mkpath(volume);
    EXPECT_EQ(runChild([&] {
                  const int device = ::open("/dev/fuse", O_RDWR | O_CLOEXEC);
                  if (device < 0 || !havePrivateMounts())
                      return;
                  const QByteArray options =
                      "fd=" + QByteArray::number(device) + ",rootmode=40000,user_id=0,group_id=0";
                  if (::mount("none", XPPath::encode(volume).constData(), "fuse.sshfs", 0,
                              options.constData()) != 0)
                      return;
                  Scene scene({volume, folder.path(QStringLiteral("home"))});
                  scene.open();
                  EXPECT_TRUE(scene.comes(file));
                  EXPECT_TRUE(scene.becomes(State::Silent));
                  ASSERT_TRUE(scene.settle());
                  EXPECT_TRUE(scene.comes(folder.file(QStringLiteral("home/second.txt"))));
                  scene.index.reset();
                  ::close(device); // what hangs fails now
              }),
              0);
}

TEST(IndexRoots, LooksAgainWhereNoWatchIsLeft)
{
    const TestFolder folder;
    for (int i = 0; i < 60; ++i)
        (void)folder.file(QStringLiteral("d%1/sub/file.txt").arg(i));
    EXPECT_EQ(runChild([&] {
                  if (::unshare(CLONE_NEWUSER) != 0)
                      return;
                  const int limit = ::open("/proc/sys/user/max_inotify_watches", O_WRONLY);
                  if (limit < 0 || ::write(limit, "20", 2) != 2)
                      return;
                  ::close(limit);
                  Scene scene({folder.path()});
                  scene.open();
                  ASSERT_TRUE(scene.settle());
                  EXPECT_EQ(scene.problems(), std::vector{IndexProblem::Kind::FoldersUnwatched});
                  for (int i = 0; i < 60; i += 10) {
                      const QString first = QStringLiteral("d%1/sub/new.txt").arg(i);
                      EXPECT_TRUE(scene.comes(folder.file(first)));
                      EXPECT_TRUE(
                          scene.comes(folder.file(QStringLiteral("d%1/made/below/it.txt").arg(i))));
                      QFile::remove(folder.path(first));
                      EXPECT_TRUE(scene.goes(folder.path(first)));
                  }
              }),
              0);
}

TEST(IndexRoots, ReadsWhatOnceCouldNotBeRead)
{
    const TestFolder folder;
    EXPECT_EQ(runChild([&] {
                  ::chmod(XPPath::encode(folder.path()).constData(), 0777);
                  becomeNobody();
                  const QString file = folder.file(QStringLiteral("closed/file.txt"));
                  const QByteArray closed = XPPath::encode(folder.path(QStringLiteral("closed")));
                  ::chmod(closed.constData(), 0);
                  IndexSetup setup; // in memory: nobody may write here
                  setup.roots = {folder.path()};
                  IndexLive live;
                  IndexKeeper keeper(live, setup);
                  ASSERT_TRUE(keeper.sync(false));
                  const auto problems = keeper.status().problems;
                  ASSERT_FALSE(problems.isEmpty());
                  EXPECT_TRUE(std::any_of(problems.begin(), problems.end(), [](const auto &one) {
                      return one.kind == IndexProblem::Kind::FoldersUnreadable && one.count == 1;
                  }));
                  ::chmod(closed.constData(), 0700);
                  EXPECT_TRUE(holdsSoon([&] {
                      const IndexCatalog::Reading reading(live.catalog());
                      return live.catalog().itemAtPath(XPPath::encode(file)) != 0;
                  }));
              }),
              0);
}

TEST(IndexRoots, FindsWhatChangedInALargeFolderMeanwhile)
{
    const TestFolder folder;
    const auto name = [](int i) { return QStringLiteral("a file of many, number %1").arg(i); };
    for (int i = 0; i < 4000; ++i)
        (void)folder.file(name(i));
    Scene scene({folder.path()});
    scene.open();
    ASSERT_TRUE(scene.settle());
    EXPECT_EQ(scene.differences(), "");
    scene.index.reset();
    for (int i = 0; i < 4000; i += 700)
        QFile::remove(folder.path(name(i)));
    (void)folder.file(name(5000));
    scene.open();
    ASSERT_TRUE(scene.settle());
    EXPECT_EQ(scene.differences(), "");
}

TEST(IndexRoots, FollowsPathsThatAreTooLongForTheSystem)
{
    const TestFolder folder;
    const QByteArray part(200, 'x');
    QByteArray path = XPPath::encode(folder.path());
    int at = ::open(path.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    for (int depth = 0; depth < 30; ++depth) {
        ASSERT_EQ(::mkdirat(at, part.constData(), 0700), 0);
        const int next = ::openat(at, part.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        ::close(at);
        at = next;
        path += '/' + part;
    }
    Scene scene({folder.path()});
    scene.open();
    ASSERT_TRUE(scene.settle());
    ASSERT_TRUE(scene.has(XPPath::decode(path)));
    const int made = ::openat(at, "late.txt", O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    EXPECT_TRUE(scene.comes(XPPath::decode(path + "/late.txt")));
    ::close(made);
    ::unlinkat(at, "late.txt", 0);
    EXPECT_TRUE(scene.goes(XPPath::decode(path + "/late.txt")));
    ::close(at);
}

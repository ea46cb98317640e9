#include "IndexTestKept.h"
#include "IndexTestTree.h"
#include "TestChild.h"
#include "TestHome.h"
#include "XPPath.h"

#include <QDir>
#include <QFile>
#include <atomic>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <random>
#include <sys/prctl.h>
#include <thread>

using namespace std::chrono_literals;

// What the process that keeps the index is at when it is killed.
enum class Moment { FirstCrawl, Import, HeavyChange, Restart, Rebuild };

static constexpr const char *momentNames[] = {"first crawl", "import", "heavy change", "restart",
                                              "rebuild"};

static int rounds()
{
    const QByteArray asked = qgetenv("MURN_KILL_ROUNDS");
    return asked.isEmpty() ? 8 : asked.toInt();
}

// The killed process: keeps the index until then. While restarting it ends and begins again all
// the time, so that saving and loading are killed too.
static pid_t startKeeping(const QString &store, const QString &root, Moment moment)
{
    return startChild([=] {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL); // not to be left behind when the test fails
        for (;;) {
            IndexTestKept kept(store, root);
            if (!kept.isOpen())
                return;
            if (moment == Moment::Restart || !kept.settle())
                kept.settle();
            else
                ::pause();
        }
    });
}

// A store that must be set aside: the rebuild is what gets killed.
static void damage(const QString &store)
{
    QFile file(store);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    file.write("this was a database once");
}

class Somebody
{
public:
    explicit Somebody(IndexTestTree &tree)
        : m_thread([this, &tree] {
              while (!m_stopping)
                  tree.change();
          })
    {
    }
    ~Somebody()
    {
        m_stopping = true;
        m_thread.join();
    }

private:
    std::atomic<bool> m_stopping = false;
    std::thread m_thread;
};

TEST(IndexKill, IsRightAgainAfterAnyMoment)
{
    const TestFolder folder;
    const QString root = folder.path(QStringLiteral("tree"));
    const QString store = folder.path(QStringLiteral("store/index.sqlite"));
    QDir().mkpath(root);
    IndexTestTree tree(XPPath::encode(root), 5);
    tree.grow(600);
    std::mt19937 random(6); // not the tree's, which changes meanwhile
    for (int round = 0; round < rounds(); ++round) {
        const auto moment = static_cast<Moment>(round % 5);
        SCOPED_TRACE(testing::Message() << "round " << round << ", " << momentNames[round % 5]);
        if (moment == Moment::FirstCrawl || moment == Moment::Import)
            QDir(XPPath::folder(store)).removeRecursively();
        else if (moment == Moment::Rebuild)
            damage(store);
        const pid_t child = startKeeping(store, root, moment);
        {
            const Somebody somebody(tree);
            // The moment itself is what is random here.
            const bool soon = moment == Moment::FirstCrawl || moment == Moment::Rebuild;
            std::this_thread::sleep_for(std::chrono::milliseconds(random() % (soon ? 120 : 500)));
            ::kill(child, SIGKILL);
            ASSERT_EQ(waitForChild(child), -SIGKILL);
        }
        for (int i = 0; i < 20; ++i)
            tree.change(); // while nobody watches
        IndexTestKept kept(store, root);
        ASSERT_TRUE(kept.isOpen());
        ASSERT_TRUE(kept.settle());
        ASSERT_EQ(indexDisagreement(kept.source(), tree.root()), "");
    }
}

// As where files were unpacked together.
TEST(IndexKeeping, ReadsAFileThatReplacedOneOfTheSameTimeAndSize)
{
    const TestFolder folder;
    const TestFolder tree;
    const QString store = folder.path(QStringLiteral("store/index.sqlite"));
    const QByteArray root = XPPath::encode(tree.path());
    const QString live = tree.file(QStringLiteral("live.txt"), "kz1");
    const QString later = tree.file(QStringLiteral("later.txt"), "kz2");
    const auto replace = [&](const QString &path, const QByteArray &text) {
        const std::filesystem::path old = XPPath::encode(path).toStdString();
        const std::filesystem::path fresh =
            XPPath::encode(folder.file(QStringLiteral("fresh"), text)).toStdString();
        std::filesystem::last_write_time(fresh, std::filesystem::last_write_time(old));
        std::filesystem::rename(fresh, old);
    };
    {
        IndexTestKept kept(store, tree.path());
        ASSERT_TRUE(kept.settle());
        replace(live, "kz3");
        ASSERT_TRUE(kept.settle());
        EXPECT_EQ(indexDisagreement(kept.source(), root), "");
    }
    replace(later, "kz4");
    IndexTestKept kept(store, tree.path());
    ASSERT_TRUE(kept.settle());
    EXPECT_EQ(indexDisagreement(kept.source(), root), "");
}

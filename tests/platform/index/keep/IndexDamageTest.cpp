#include "IndexTestKept.h"
#include "IndexTestTree.h"
#include "TestHome.h"
#include "XPPath.h"

#include <QDir>
#include <QDirIterator>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>

namespace fs = std::filesystem;

// What a power loss, a bad disk or a careless program leaves of a file.
enum class Damage { Shortened, Emptied, Zeroed, Garbled, Grown, Deleted };

static constexpr const char *damageNames[] = {"shortened", "emptied", "zeroed",
                                              "garbled",   "grown",   "deleted"};

static void damage(const fs::path &path, Damage how, std::mt19937 &random)
{
    const auto size = static_cast<std::streamoff>(fs::file_size(path));
    const auto somewhere = [&] { return static_cast<std::streamoff>(random()) % (size + 1); };
    if (how == Damage::Shortened)
        return fs::resize_file(path, static_cast<std::uintmax_t>(somewhere()));
    if (how == Damage::Emptied)
        return fs::resize_file(path, 0);
    if (how == Damage::Grown)
        return fs::resize_file(path, static_cast<std::uintmax_t>(size + 5000));
    if (how == Damage::Deleted) {
        fs::remove(path);
        return;
    }
    std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(somewhere());
    for (int i = 0; i < (how == Damage::Zeroed ? 4096 : 64); ++i)
        file.put(how == Damage::Zeroed ? '\0' : static_cast<char>(random()));
    if (fs::file_size(path) < static_cast<std::uintmax_t>(size))
        fs::resize_file(path, static_cast<std::uintmax_t>(size));
}

// The kinds of files that an index consists of, one of each, by the name behind the last number.
static std::vector<fs::path> filesOfEachKind(const fs::path &store)
{
    std::map<std::string, fs::path> kinds;
    for (const auto &entry : fs::recursive_directory_iterator(store)) {
        if (!entry.is_regular_file() || entry.file_size() == 0)
            continue;
        std::string kind = entry.path().lexically_relative(store).string();
        std::erase_if(kind, [](char letter) { return letter >= '0' && letter <= '9'; });
        kinds[kind] = entry.path();
    }
    std::vector<fs::path> files;
    files.reserve(kinds.size());
    for (const auto &[kind, path] : kinds)
        files.push_back(path);
    return files;
}

// Without the socket that others ask at.
static void copyFiles(const fs::path &from, const fs::path &to)
{
    fs::create_directories(to);
    for (const auto &entry : fs::recursive_directory_iterator(from)) {
        const fs::path target = to / entry.path().lexically_relative(from);
        if (entry.is_directory())
            fs::create_directories(target);
        else if (entry.is_regular_file())
            fs::copy_file(entry.path(), target);
    }
}

// With `killed`, files as a process leaves them that could not end in order.
static void expectHealing(bool killed)
{
    const TestFolder folder;
    const QString root = folder.path(QStringLiteral("tree"));
    const QString store = folder.path(QStringLiteral("store/index.sqlite"));
    QDir().mkpath(root);
    IndexTestTree tree(XPPath::encode(root), 3);
    tree.grow(150);
    const fs::path live(XPPath::encode(XPPath::folder(store)).toStdString());
    const fs::path saved(live.string() + ".saved");
    {
        IndexTestKept kept(store, root);
        ASSERT_TRUE(kept.settle());
        for (int i = 0; i < 50; ++i)
            tree.change();
        ASSERT_TRUE(kept.settle());
        if (killed)
            copyFiles(live, saved);
    }
    if (!killed)
        copyFiles(live, saved);
    const int seed = qEnvironmentVariableIntValue("MURN_DAMAGE_SEED"); // other places
    std::mt19937 random(static_cast<unsigned>(seed));
    const std::vector<fs::path> files = filesOfEachKind(saved);
    ASSERT_FALSE(files.empty());
    for (const fs::path &file : files) {
        const fs::path name = file.lexically_relative(saved);
        for (int how = 0; how < 6; ++how) {
            SCOPED_TRACE(testing::Message() << name << ' ' << damageNames[how]);
            fs::remove_all(live);
            copyFiles(saved, live);
            damage(live / name, static_cast<Damage>(how), random);
            IndexTestKept kept(store, root);
            ASSERT_TRUE(kept.isOpen());
            ASSERT_TRUE(kept.settle());
            // Pages of the text that only a question meets: asking is what heals them.
            if (!indexDisagreement(kept.source(), tree.root()).empty()) {
                ASSERT_TRUE(kept.settle());
            }
            EXPECT_EQ(indexDisagreement(kept.source(), tree.root()), "");
        }
    }
}

TEST(IndexDamage, IsHealedAfterAnOrderlyEnd)
{
    expectHealing(false);
}

TEST(IndexDamage, IsHealedAfterAKill)
{
    expectHealing(true);
}

#include "KPContentTypes.h"
#include "KPFileType.h"
#include "MurnBench.h"
#include "XPPath.h"

#include <QDir>
#include <QTemporaryDir>
#include <chrono>
#include <dirent.h>
#include <fcntl.h>
#include <random>
#include <sys/stat.h>
#include <unistd.h>

using KPContentTypes::Number;

// Taken before main(), when nothing of the table was touched yet.
static double firstUseMs()
{
    const auto start = std::chrono::steady_clock::now();
    benchmark::DoNotOptimize(KPContentTypes::numberOf(u"public.image"));
    benchmark::DoNotOptimize(KPFileType::preferredUTIForExtension(QStringLiteral("jpg")));
    benchmark::DoNotOptimize(KPContentTypes::typeTree(QStringLiteral("public.jpeg")));
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
        .count();
}
static const double startUp = firstUseMs();

static void typesStartUpMs(benchmark::State &state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(startUp);
    XPBench::valueAtMost(state, startUp, 3);
}
BENCHMARK(typesStartUpMs);

static const QStringList &commonExtensions()
{
    static const QStringList extensions =
        QStringLiteral("pdf,jpg,png,docx,xlsx,odt,txt,html,mp3,mov,c,h,cpp,PNG,JPG,zip")
            .split(u',');
    return extensions;
}

static void utiForPathWarm(benchmark::State &state)
{
    const QString path = QStringLiteral("/nowhere/file");
    for (const QString &extension : commonExtensions())
        KPFileType::utiForPath(path, extension);
    qsizetype next = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(KPFileType::utiForPath(path, commonExtensions()[next]));
        next = (next + 1) & 15;
    }
    state.SetItemsProcessed(state.iterations());
    XPBench::itemsPerSecondAtLeast(state, 10e6);
}
BENCHMARK(utiForPathWarm);
BENCHMARK(utiForPathWarm)->Threads(2)->UseRealTime();

static std::vector<std::pair<Number, Number>> somePairs()
{
    std::mt19937 random(1);
    std::vector<std::pair<Number, Number>> pairs(4096);
    for (auto &pair : pairs) {
        pair.first = static_cast<Number>(1 + random() % KPContentTypes::count());
        pair.second = static_cast<Number>(1 + random() % KPContentTypes::count());
    }
    return pairs;
}

static void conformanceByNumber(benchmark::State &state)
{
    const auto pairs = somePairs();
    size_t next = 0;
    for (auto _ : state) {
        const auto &pair = pairs[next++ & 4095];
        benchmark::DoNotOptimize(KPContentTypes::conforms(pair.first, pair.second));
    }
    state.SetItemsProcessed(state.iterations());
    XPBench::itemsPerSecondAtLeast(state, 50e6);
}
BENCHMARK(conformanceByNumber);

static void conformanceByPooledText(benchmark::State &state)
{
    std::vector<std::pair<KPPooledString, KPPooledString>> texts;
    for (const auto &pair : somePairs())
        texts.emplace_back(KPPool::pooledString(KPContentTypes::identifier(pair.first)),
                           KPPool::pooledString(KPContentTypes::identifier(pair.second)));
    size_t next = 0;
    for (auto _ : state) {
        const auto &pair = texts[next++ & 4095];
        benchmark::DoNotOptimize(KPContentTypes::conforms(KPContentTypes::numberOf(pair.first),
                                                          KPContentTypes::numberOf(pair.second)));
    }
    state.SetItemsProcessed(state.iterations());
    XPBench::itemsPerSecondAtLeast(state, 10e6);
}
BENCHMARK(conformanceByPooledText);

namespace {

// 100,000 files with known extensions in 200 folders, made once.
class Tree
{
public:
    static const Tree &instance()
    {
        static const Tree tree;
        return tree;
    }
    static constexpr int folders = 200;
    static constexpr int filesPerFolder = 500;

    const QByteArrayList &paths() const { return m_paths; }

private:
    Tree()
    {
        for (int f = 0; f < folders; ++f) {
            const QByteArray folder =
                QFile::encodeName(m_folder.filePath(QStringLiteral("folder %1").arg(f)));
            ::mkdir(folder.constData(), 0700);
            m_paths.append(folder);
            for (int i = 0; i < filesPerFolder; ++i) {
                const QByteArray name = folder + "/some document " + QByteArray::number(i) + '.' +
                                        commonExtensions()[i % 16].toLatin1();
                ::close(::open(name.constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
            }
        }
    }

    QTemporaryDir m_folder;
    QByteArrayList m_paths;
};

} // namespace

// Calls `file(name, record)` for every entry of the tree after its lstat, `folder(path)` before.
template <typename Folder, typename File>
static void walk(Folder folder, File file)
{
    for (const QByteArray &path : Tree::instance().paths()) {
        folder(path);
        DIR *entries = ::opendir(path.constData());
        // NOLINTNEXTLINE(concurrency-mt-unsafe): the folder stream belongs to this thread
        while (const dirent *entry = ::readdir(entries)) {
            struct stat record = {};
            ::fstatat(::dirfd(entries), entry->d_name, &record, AT_SYMLINK_NOFOLLOW);
            file(entry->d_name, record);
        }
        ::closedir(entries);
    }
}

static void typesOfAWalk(benchmark::State &state)
{
    Tree::instance();
    QString folderPath;
    for (auto _ : state) {
        walk([&](const QByteArray &path) { folderPath = XPPath::decode(path) + u'/'; },
             [&](const char *name, const struct stat &record) {
                 const QString path = folderPath + XPPath::decode(name);
                 benchmark::DoNotOptimize(
                     KPFileType::utiForPath(path, XPPath::extension(path), record.st_mode));
             });
    }
    XPBench::timeAtMost(state, 1.2);
}
BENCHMARK(typesOfAWalk)->Unit(benchmark::kMillisecond);

static void bareLstatWalk(benchmark::State &state)
{
    Tree::instance();
    for (auto _ : state) {
        walk([](const QByteArray &) {},
             [](const char *, const struct stat &record) {
                 benchmark::DoNotOptimize(record.st_mode);
             });
    }
}
BENCHMARK(bareLstatWalk)->Name("typesOfAWalk/baseline")->Unit(benchmark::kMillisecond);

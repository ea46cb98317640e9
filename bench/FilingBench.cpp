// Moves, copies and free names, beside the bare system calls and `cp`.
#include "MurnBench.h"
#include "XPExtendedAttributes.h"
#include "XPFileMover.h"
#include "XPFileUtils.h"
#include "XPPath.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <sys/xattr.h>
#include <unistd.h>

static constexpr int fileCount = 1000;
static constexpr qint64 bigSize = 1 << 30;

namespace {

// Files that go to and fro between two folders of one disk, the build's.
class Files
{
public:
    Files() : m_folder(QDir::currentPath() + QStringLiteral("/filing-bench-XXXXXX"))
    {
        for (const QString &side : {QStringLiteral("a/"), QStringLiteral("b/")}) {
            QDir().mkpath(m_folder.filePath(side));
            for (int i = 0; i < fileCount; ++i)
                sides[side == u"b/"].append(
                    m_folder.filePath(side + QStringLiteral("document %1.pdf").arg(i)));
        }
        for (const QString &path : sides[0])
            ::close(::open(XPPath::encode(path).constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
    }

    QStringList sides[2];
    bool isThere = false;

private:
    QTemporaryDir m_folder;
};

} // namespace

static const QString managed = QStringLiteral("com.apple.metadata:kMDItemKXManaged");

static void move(benchmark::State &state)
{
    Files files;
    for (auto _ : state) {
        for (int i = 0; i < fileCount; ++i) {
            const QString &to = files.sides[!files.isThere][i];
            if (XPFileMover::move(files.sides[files.isThere][i], to) ||
                XPExtendedAttributes::write(to, managed, "bplist00"))
                state.SkipWithError("a move failed");
        }
        files.isThere = !files.isThere;
    }
    XPBench::timeAtMost(state, 1.5);
}
BENCHMARK(move)->Name("fileMove")->Unit(benchmark::kMillisecond)->UseRealTime();

static void moveBare(benchmark::State &state)
{
    Files files;
    std::vector<QByteArray> sides[2];
    for (int side = 0; side < 2; ++side) {
        for (const QString &path : files.sides[side])
            sides[side].push_back(XPPath::encode(path));
    }
    const QByteArray name = XPExtendedAttributes::nameOnDisk(managed);
    for (auto _ : state) {
        for (size_t i = 0; i < fileCount; ++i) {
            const char *to = sides[!files.isThere][i].constData();
            if (::renameat2(AT_FDCWD, sides[files.isThere][i].constData(), AT_FDCWD, to,
                            RENAME_NOREPLACE) != 0 ||
                ::lsetxattr(to, name.constData(), "bplist00", 8, 0) != 0)
                state.SkipWithError("a move failed");
        }
        files.isThere = !files.isThere;
    }
}
BENCHMARK(moveBare)->Name("fileMove/baseline")->Unit(benchmark::kMillisecond)->UseRealTime();

// A folder where "report.pdf" and 999 numbered ones are taken.
static QTemporaryDir *takenNames()
{
    auto *folder = new QTemporaryDir(QDir::currentPath() + QStringLiteral("/filing-bench-XXXXXX"));
    for (int i = 0; i < fileCount; ++i) {
        const QString number = i == 0 ? QString() : QStringLiteral(" %1").arg(i);
        const QString path = folder->filePath(QStringLiteral("report%1.pdf").arg(number));
        ::close(::open(XPPath::encode(path).constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
    }
    return folder;
}

static void unusedPath(benchmark::State &state)
{
    const std::unique_ptr<QTemporaryDir> folder(takenNames());
    const QString wanted = folder->filePath(QStringLiteral("report.pdf"));
    for (auto _ : state) {
        if (!XPFileUtils::findUnusedPath(wanted).endsWith(u" 1000.pdf"))
            state.SkipWithError("another name");
    }
    XPBench::timeAtMost(state, 2);
}
BENCHMARK(unusedPath)->Name("findUnusedPath")->Unit(benchmark::kMicrosecond);

static void readFolder(benchmark::State &state)
{
    const std::unique_ptr<QTemporaryDir> folder(takenNames());
    const QByteArray path = XPPath::encode(folder->path());
    for (auto _ : state) {
        DIR *const opened = ::opendir(path.constData());
        // NOLINTNEXTLINE(concurrency-mt-unsafe): a stream of this thread's own
        while (const dirent *entry = ::readdir(opened))
            benchmark::DoNotOptimize(entry->d_name[0]);
        ::closedir(opened);
    }
}
BENCHMARK(readFolder)->Name("findUnusedPath/baseline")->Unit(benchmark::kMicrosecond);

namespace {

// A big file on the disk and a folder in shared memory, where syncing costs nothing: `cp` does not
// sync, and the disk's own speed says nothing about either.
class BigFile
{
public:
    BigFile()
        : m_folder(QDir::currentPath() + QStringLiteral("/filing-bench-XXXXXX")),
          m_other(QStringLiteral("/dev/shm/filing-bench-XXXXXX"))
    {
        path = m_folder.filePath(QStringLiteral("big"));
        copy = m_other.filePath(QStringLiteral("big"));
        const int file =
            ::open(XPPath::encode(path).constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
        const QByteArray bytes(1 << 20, 'x');
        for (qint64 done = 0; done < bigSize; done += bytes.size()) {
            if (::write(file, bytes.constData(), static_cast<size_t>(bytes.size())) < 0)
                std::abort();
        }
        ::fsync(file);
        ::close(file);
    }

    QString path;
    QString copy;

private:
    QTemporaryDir m_folder;
    QTemporaryDir m_other;
};

} // namespace

static void copyAcross(benchmark::State &state)
{
    const BigFile file;
    for (auto _ : state) {
        if (XPFileMover::copy(file.path, file.copy))
            state.SkipWithError("a copy failed");
        ::unlink(XPPath::encode(file.copy).constData());
    }
    XPBench::speedAtLeast(state, 0.9);
}
BENCHMARK(copyAcross)->Name("copyAcross")->Unit(benchmark::kMillisecond)->UseRealTime();

static void copyByCp(benchmark::State &state)
{
    const BigFile file;
    for (auto _ : state) {
        if (QProcess::execute(QStringLiteral("cp"), {file.path, file.copy}) != 0)
            state.SkipWithError("a copy failed");
        ::unlink(XPPath::encode(file.copy).constData());
    }
}
BENCHMARK(copyByCp)->Name("copyAcross/baseline")->Unit(benchmark::kMillisecond)->UseRealTime();

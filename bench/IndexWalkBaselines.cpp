// IndexBaselines: bare walks of the disk.
#include "IndexBaselines.h"

#include <algorithm>
#include <condition_variable>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <mutex>
#include <sched.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <thread>
#include <unistd.h>

namespace IndexBaselines {

// Folders still to be read, and how many threads might find more.
struct Pool
{
    std::mutex mutex;
    std::condition_variable wake;
    std::vector<QByteArray> folders;
    int busy = 0;
    size_t files = 0;
};

static void lookAt(int folder, const char *name, bool attributes)
{
    struct statx facts = {};
    ::statx(folder, name, AT_SYMLINK_NOFOLLOW | AT_STATX_DONT_SYNC, STATX_BASIC_STATS | STATX_BTIME,
            &facts);
    if (!attributes)
        return;
    char bytes[4096];
    // By bare name: the folder is the thread's working directory.
    (void)::llistxattr(name, bytes, sizeof bytes);
    for (const char *attribute :
         {"user.com.apple.metadata:kMDItemKXUserTags", "user.com.apple.metadata:kMDItemStarRating"})
        (void)::lgetxattr(name, attribute, bytes, sizeof bytes);
}

static size_t readFolder(const QByteArray &path, Calls calls, std::vector<QByteArray> &below)
{
    const int folder = ::open(path.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (folder < 0)
        return 0;
    const bool attributes = calls == Calls::FactsAndAttributes && ::fchdir(folder) == 0;
    size_t files = 0;
    alignas(dirent64) char buffer[32768];
    for (;;) {
        const ssize_t size = ::getdents64(folder, buffer, sizeof buffer);
        if (size <= 0)
            break;
        for (ssize_t at = 0; at < size;) {
            const auto *entry = reinterpret_cast<const dirent64 *>(buffer + at);
            at += entry->d_reclen;
            if (std::strcmp(entry->d_name, ".") == 0 || std::strcmp(entry->d_name, "..") == 0)
                continue;
            lookAt(folder, entry->d_name, attributes);
            ++files;
            if (entry->d_type == DT_DIR)
                below.push_back(path + '/' + entry->d_name);
        }
    }
    ::close(folder);
    return files;
}

static void work(Pool &pool, Calls calls)
{
    ::unshare(CLONE_FS);
    std::unique_lock lock(pool.mutex);
    for (;;) {
        pool.wake.wait(lock, [&] { return !pool.folders.empty() || pool.busy == 0; });
        if (pool.folders.empty())
            return;
        const QByteArray folder = std::move(pool.folders.back());
        pool.folders.pop_back();
        ++pool.busy;
        lock.unlock();
        std::vector<QByteArray> below;
        const size_t files = readFolder(folder, calls, below);
        lock.lock();
        --pool.busy;
        pool.files += files;
        pool.folders.insert(pool.folders.end(), below.begin(), below.end());
        pool.wake.notify_all();
    }
}

size_t walk(const QByteArray &root, Calls calls)
{
    Pool pool;
    pool.folders.push_back(root);
    std::thread one([&] { work(pool, calls); });
    std::thread two([&] { work(pool, calls); });
    one.join();
    two.join();
    return pool.files;
}

size_t readWhole(const QByteArray &path)
{
    const int file = ::open(path.constData(), O_RDONLY | O_CLOEXEC);
    struct stat facts = {};
    if (file < 0 || ::fstat(file, &facts) != 0)
        return 0;
    const auto size = static_cast<size_t>(facts.st_size);
    const std::unique_ptr<char[]> memory(new char[size]); // not filled beforehand
    size_t all = 0;
    for (ssize_t got = 1; got > 0 && all < size;
         all += static_cast<size_t>(std::max<ssize_t>(got, 0)))
        got = ::read(file, memory.get() + all, size - all);
    ::close(file);
    return all;
}

} // namespace IndexBaselines

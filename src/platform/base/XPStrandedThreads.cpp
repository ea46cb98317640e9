#include "XPStrandedThreads.h"

#include "XPMutex.h"

#include <algorithm>
#include <vector>

namespace {

struct Stranded
{
    std::thread thread;
    std::function<bool()> hasEnded;
};

struct Shore
{
    XPMutex mutex;
    std::vector<Stranded> threads XP_GUARDED_BY(mutex);
};

} // namespace

void XPStrandedThreads::adopt(std::thread thread, std::function<bool()> hasEnded)
{
    // Never destroyed: a thread that hangs at the end can neither be joined nor let go.
    static auto *const shore = new Shore;
    std::vector<Stranded> ended;
    {
        const XPLocker lock(shore->mutex);
        const auto first =
            std::stable_partition(shore->threads.begin(), shore->threads.end(),
                                  [](const Stranded &held) { return !held.hasEnded(); });
        ended.assign(std::make_move_iterator(first), std::make_move_iterator(shore->threads.end()));
        shore->threads.erase(first, shore->threads.end());
        shore->threads.push_back({std::move(thread), std::move(hasEnded)});
    }
    for (Stranded &held : ended)
        held.thread.join();
}

#include "KPSlowFolders.h"

#include "XPMutex.h"

#include <chrono>
#include <condition_variable>
#include <deque>

using namespace std::chrono_literals;

static constexpr auto patience = 100ms; // with a file call, at the end

// What the thread and its owner share; it outlives the owner where the thread is left behind.
struct KPSlowFolders::Lane
{
    void loop();

    XPMutex mutex;
    std::condition_variable_any wake, left;
    std::deque<Job> jobs XP_GUARDED_BY(mutex);
    std::vector<KPFolderContents> done XP_GUARDED_BY(mutex);
    KPSlowFolders *owner XP_GUARDED_BY(mutex) = nullptr; // null: gone
    bool hasEnded XP_GUARDED_BY(mutex) = false;
    std::atomic<bool> isStopping = false;
};

KPSlowFolders::KPSlowFolders() : m_lane(std::make_shared<Lane>())
{
}

KPSlowFolders::~KPSlowFolders()
{
    m_lane->isStopping = true;
    {
        const XPLocker lock(m_lane->mutex);
        m_lane->owner = nullptr;
        m_lane->jobs.clear();
    }
    m_lane->wake.notify_all();
    if (!m_thread.joinable())
        return;
    bool hasEnded = false;
    {
        const auto deadline = std::chrono::steady_clock::now() + patience;
        XPLocker lock(m_lane->mutex);
        while (!m_lane->hasEnded &&
               m_lane->left.wait_until(lock, deadline) != std::cv_status::timeout) {
        }
        hasEnded = m_lane->hasEnded;
    }
    if (hasEnded)
        m_thread.join();
    else
        m_thread.detach();
}

void KPSlowFolders::read(const Job &job)
{
    ++m_asked;
    {
        const XPLocker lock(m_lane->mutex);
        m_lane->owner = this;
        m_lane->jobs.push_back(job);
        // Whoever asked may be gone before the volume answers.
        m_lane->jobs.back().how.isAbandoned = [lane = m_lane.get()] {
            return lane->isStopping.load();
        };
        m_lane->jobs.back().how.opened = {};
    }
    m_lane->wake.notify_one();
    if (!m_thread.joinable())
        m_thread = std::thread([lane = m_lane] { lane->loop(); });
}

std::vector<KPFolderContents> KPSlowFolders::take()
{
    std::vector<KPFolderContents> done;
    const XPLocker lock(m_lane->mutex);
    done.swap(m_lane->done);
    m_taken += static_cast<qint64>(done.size());
    return done;
}

void KPSlowFolders::Lane::loop()
{
    XPLocker lock(mutex);
    while (!isStopping) {
        if (jobs.empty()) {
            wake.wait(lock);
            continue;
        }
        const Job job = std::move(jobs.front());
        jobs.pop_front();
        lock.unlock();
        KPFolderContents contents = KPFolderContents::read(job.path, job.only, job.how);
        lock.lock();
        done.push_back(std::move(contents));
        if (owner != nullptr)
            Q_EMIT owner->folderRead();
    }
    hasEnded = true;
    left.notify_all();
}

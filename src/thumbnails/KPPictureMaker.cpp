#include "KPPictureMaker.h"

#include "KPPictureSlot.h"

#include <algorithm>

using namespace std::chrono_literals;

// An importer that has nothing to do for so long ends; but for one, for the next picture.
static constexpr auto restAfter = 30s;
// Cutting it off costs the start of another importer.
static constexpr auto cutOffAfter = 200ms;

static int slotsOfThisMachine()
{
    return static_cast<int>(std::clamp(std::thread::hardware_concurrency(), 1U, 4U));
}

KPPictureMaker::KPPictureMaker(Setup setup, std::function<void()> ready)
    : m_setup(std::move(setup)), m_shared(m_setup.sharedCache, m_setup.failuresFolder),
      m_ready(std::move(ready))
{
    const int count = m_setup.slots > 0 ? m_setup.slots : slotsOfThisMachine();
    for (int number = 0; number < count; ++number)
        m_threads.emplace_back([this, number] { work(number); });
}

KPPictureMaker::~KPPictureMaker()
{
    {
        const XPLocker locker(m_mutex);
        m_quit = true;
        for (Begun &begun : m_begun)
            begun.stop.request_stop();
    }
    m_wake.notify_all();
    for (std::thread &thread : m_threads)
        thread.join();
}

void KPPictureMaker::setPrefs(std::chrono::seconds lifetime, bool storesSlow)
{
    const XPLocker locker(m_mutex);
    m_prefs = {lifetime, storesSlow};
}

// Done and not taken yet counts too.
bool KPPictureMaker::isBegun(const Request &request) const
{
    const bool isDone = std::any_of(m_results.begin(), m_results.end(), [&](const Result &result) {
        return result.request.key == request.key && result.request.side == request.side;
    });
    return isDone || std::any_of(m_begun.begin(), m_begun.end(), [&](const Begun &begun) {
               return begun.key == request.key && begun.side == request.side &&
                      !begun.stop.stop_requested();
           });
}

void KPPictureMaker::want(std::vector<Request> requests)
{
    {
        const XPLocker locker(m_mutex);
        QHash<QString, int> lookedUp;
        for (const Job &job : m_jobs) {
            if (job.isLookedUp)
                lookedUp.insert(job.request.key, job.request.side);
        }
        m_jobs.clear();
        m_wanted.clear();
        for (Request &request : requests) {
            m_wanted.insert(request.key, request.side);
            if (isBegun(request))
                continue;
            const bool isLookedUp = lookedUp.value(request.key) == request.side;
            m_jobs.push_back({std::move(request), isLookedUp, static_cast<int>(m_jobs.size())});
        }
    }
    cutOffUnwanted();
    m_wake.notify_all();
}

void KPPictureMaker::cutOffUnwanted()
{
    const XPLocker locker(m_mutex);
    const Clock::time_point now = Clock::now();
    for (Begun &begun : m_begun) {
        if (!begun.key.isEmpty() && !isWanted(begun.key, begun.side) &&
            now - begun.since >= cutOffAfter)
            begun.stop.request_stop();
    }
}

bool KPPictureMaker::isWanted(const QString &key, int side) const
{
    return m_wanted.value(key) == side;
}

std::vector<KPPictureMaker::Result> KPPictureMaker::take()
{
    const XPLocker locker(m_mutex);
    return std::exchange(m_results, {});
}

std::optional<XPResult<ImportHello>> KPPictureMaker::hello() const
{
    const XPLocker locker(m_mutex);
    return m_hello;
}

// --- The threads

std::stop_source KPPictureMaker::begin(const QString &key, int side)
{
    m_begun.push_back({key, side, Clock::now(), {}});
    return m_begun.back().stop;
}

void KPPictureMaker::end(const std::stop_source &stop)
{
    std::erase_if(m_begun, [&](const Begun &begun) { return begun.stop == stop; });
}

// False: the end.
bool KPPictureMaker::waitForJob(XPLocker &locker, Slot &slot, bool mayRest)
{
    while (!m_quit && m_jobs.empty()) {
        if (!mayRest || !slot.isWarm()) {
            m_wake.wait(locker);
        } else if (m_wake.wait_for(locker, restAfter) == std::cv_status::timeout &&
                   m_jobs.empty()) {
            m_mutex.unlock();
            slot.rest();
            m_mutex.lock();
        }
    }
    return !m_quit;
}

KPPictureMaker::Job KPPictureMaker::takeJob()
{
    const auto first =
        std::min_element(m_jobs.begin(), m_jobs.end(),
                         [](const Job &a, const Job &b) { return a.rank() < b.rank(); });
    Job job = std::move(*first);
    m_jobs.erase(first);
    return job;
}

// It ends here: whoever asks again once he has the result is to get another.
void KPPictureMaker::deliver(Result result, const std::stop_source &stop)
{
    bool isFirst = false;
    {
        const XPLocker locker(m_mutex);
        end(stop);
        m_results.push_back(std::move(result));
        isFirst = m_results.size() == 1;
    }
    if (isFirst)
        m_ready();
}

void KPPictureMaker::work(int number)
{
    Slot slot(m_setup, m_shared);
    XPLocker locker(m_mutex);
    if (number == 0 && !m_quit) {
        const std::stop_source stop = begin({}, 0);
        locker.unlock();
        auto hello = slot.warmUp(stop.get_token());
        locker.lock();
        end(stop);
        m_hello = std::move(hello);
        locker.unlock();
        m_ready();
        locker.lock();
    }
    while (waitForJob(locker, slot, number > 0)) {
        Job job = takeJob();
        const std::stop_source stop = begin(job.request.key, job.request.side);
        const Prefs prefs = m_prefs;
        locker.unlock();
        auto result = job.isLookedUp ? slot.draw(job.request, prefs, stop.get_token())
                                     : slot.lookUp(job.request, prefs);
        const bool isDone = result.has_value();
        if (result)
            deliver(*std::move(result), stop);
        slot.store();
        locker.lock();
        end(stop);
        if (!isDone && !job.isLookedUp && isWanted(job.request.key, job.request.side)) {
            job.isLookedUp = true;
            m_jobs.push_back(std::move(job));
            m_wake.notify_one();
        }
    }
}

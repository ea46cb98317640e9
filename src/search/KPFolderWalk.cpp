#include "KPFolderWalk.h"

#include "XPFolders.h"
#include "XPPath.h"

#include <algorithm>
#include <poll.h>
#include <sys/eventfd.h>

KPFolderWalk::KPFolderWalk(const KPSearchRequest &request, const Options &options, int wake,
                           std::function<bool()> isStopped, Deliver deliver)
    : m_matcher(request), m_options(options), m_wake(wake), m_isStopped(std::move(isStopped)),
      m_deliver(std::move(deliver)), m_delivered(Clock::now())
{
    if (options.live)
        m_watch = std::make_unique<KPFolderWatch>();
    const QStringList folders =
        request.folders.isEmpty() ? QStringList{XPFolders::home()} : request.folders;
    for (const QString &folder : folders) {
        QByteArray path = XPPath::encode(XPPath::absolute(folder));
        if (path == "/")
            path.clear();
        if (!m_rootPaths.insert(path).second)
            continue;
        m_roots.push_back(std::make_unique<KPFolderNode>());
        m_roots.back()->name = path;
    }
    for (auto root = m_roots.rbegin(); root != m_roots.rend(); ++root)
        push(**root, false);
}

KPFolderWalk::~KPFolderWalk()
{
    m_watch.reset();
    // Without recursion: a tree can be deeper than the stack.
    std::vector<std::unique_ptr<KPFolderNode>> nodes = std::move(m_roots);
    for (size_t i = 0; i < nodes.size(); ++i) {
        for (auto &[name, folder] : nodes[i]->folders)
            nodes.push_back(std::move(folder));
        nodes[i]->folders.clear();
    }
}

void KPFolderWalk::run()
{
    while (!m_isStopped()) {
        workOff();
        if (m_isStopped())
            return;
        passFinished();
        if (!m_watch)
            return;
        wait();
        takeEvents();
        readAgainInTime();
    }
}

void KPFolderWalk::workOff()
{
    while (!m_visits.empty() && !m_isStopped()) {
        const Visit next = m_visits.back();
        m_visits.pop_back();
        visit(next);
        takeEvents();
    }
}

void KPFolderWalk::push(KPFolderNode &node, bool deep)
{
    if (node.queued && !deep)
        return;
    node.queued = true;
    m_visits.push_back({&node, deep});
}

void KPFolderWalk::passFinished()
{
    m_opener.clear();
    const Clock::time_point now = Clock::now();
    if (m_againBegan)
        m_againTook = now - *std::exchange(m_againBegan, std::nullopt);
    // Lost notices are made good soon; what can never be watched must not cost much.
    const Clock::duration interval = m_options.interval;
    const auto soon = now + std::min<Clock::duration>(interval, std::chrono::seconds(1));
    if (m_lostEvents)
        m_againAt = std::min(m_againAt.value_or(soon), soon);
    else if (m_unwatched.empty())
        m_againAt.reset();
    else if (!m_againAt)
        m_againAt = now + std::max(interval, 10 * m_againTook);
    if (const QStringList present = problems(); m_reportedProblems != present) {
        m_reportedProblems = present;
        m_reports.finished(present);
    }
    deliverNow();
}

void KPFolderWalk::wait()
{
    int timeout = -1;
    if (m_againAt) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(*m_againAt - Clock::now());
        timeout = static_cast<int>(std::max<qint64>(left.count(), 0));
    }
    pollfd descriptors[] = {{m_wake, POLLIN, 0}, {m_watch->descriptor(), POLLIN, 0}};
    ::poll(descriptors, 2, timeout);
    if (descriptors[0].revents) {
        eventfd_t ignored = 0;
        ::eventfd_read(m_wake, &ignored);
    }
}

void KPFolderWalk::readAgainInTime()
{
    const Clock::time_point now = Clock::now();
    if (!m_againAt || now < *m_againAt)
        return;
    m_againAt.reset();
    m_againBegan = now;
    for (KPFolderNode *node : m_unwatched)
        push(*node, false);
    if (std::exchange(m_lostEvents, false)) {
        for (const auto &root : m_roots)
            push(*root, true);
    }
}

void KPFolderWalk::deliverInTime()
{
    constexpr std::chrono::milliseconds period(50);
    if (m_reports.isFull() || (!m_reports.isEmpty() && Clock::now() - m_delivered >= period))
        deliverNow();
}

void KPFolderWalk::deliverNow()
{
    m_delivered = Clock::now();
    if (!m_reports.isEmpty())
        m_deliver(m_reports.take());
}

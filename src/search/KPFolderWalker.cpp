#include "KPFolderWalker.h"

#include <QTimer>
#include <pthread.h>
#include <sys/eventfd.h>
#include <unistd.h>

KPFolderWalker::KPFolderWalker(QObject *parent) : KPFolderWalker(KPFolderWalk::Options(), parent)
{
}

KPFolderWalker::KPFolderWalker(const KPFolderWalk::Options &options, QObject *parent)
    : KPResultSource(parent), m_options(options), m_wake(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    connect(this, &KPFolderWalker::reportsWaiting, this, &KPFolderWalker::deliverNext,
            Qt::QueuedConnection);
    m_thread = std::thread([this] { loop(); });
    ::pthread_setname_np(m_thread.native_handle(), "murn-walk");
}

KPFolderWalker::~KPFolderWalker()
{
    {
        const XPLocker locker(m_mutex);
        m_quit = true;
    }
    supersede({});
    m_thread.join();
    ::close(m_wake);
}

void KPFolderWalker::setRequest(const KPSearchRequest &request)
{
    supersede(request);
}

void KPFolderWalker::stop()
{
    supersede({});
}

void KPFolderWalker::supersede(const std::optional<KPSearchRequest> &request)
{
    {
        const XPLocker locker(m_mutex);
        ++m_generation;
        m_request = request;
        m_reports.clear();
        if (request)
            m_reports.push_back({KPWalkReport::Kind::Reset, {}, {}});
    }
    m_changed.notify_one();
    ::eventfd_write(m_wake, 1);
    if (request)
        Q_EMIT reportsWaiting(QPrivateSignal());
}

void KPFolderWalker::loop()
{
    for (;;) {
        KPSearchRequest request;
        quint64 generation = 0;
        {
            XPLocker locker(m_mutex);
            while (!m_quit && !m_request)
                m_changed.wait(locker);
            if (m_quit)
                return;
            request = *std::exchange(m_request, std::nullopt);
            generation = m_generation;
        }
        KPFolderWalk walk(
            request, m_options, m_wake, [this, generation] { return m_generation != generation; },
            [this, generation](std::vector<KPWalkReport> reports) {
                receive(std::move(reports), generation);
            });
        walk.run();
    }
}

void KPFolderWalker::receive(std::vector<KPWalkReport> reports, quint64 generation)
{
    bool isFirst = false;
    {
        const XPLocker locker(m_mutex);
        if (generation != m_generation)
            return;
        isFirst = m_reports.empty();
        std::move(reports.begin(), reports.end(), std::back_inserter(m_reports));
    }
    if (isFirst)
        Q_EMIT reportsWaiting(QPrivateSignal());
}

void KPFolderWalker::deliverNext()
{
    KPWalkReport report;
    bool isLast = false;
    {
        const XPLocker locker(m_mutex);
        if (m_reports.empty())
            return;
        report = std::move(m_reports.front());
        m_reports.pop_front();
        isLast = m_reports.empty();
    }
    // By a timer, so that input and painting come between two reports.
    if (!isLast)
        QTimer::singleShot(0, this, &KPFolderWalker::deliverNext);
    deliver(report);
}

void KPFolderWalker::deliver(const KPWalkReport &report)
{
    switch (report.kind) {
    case KPWalkReport::Kind::Reset:
        Q_EMIT resultsReset();
        break;
    case KPWalkReport::Kind::Added:
        Q_EMIT documentsAdded(report.documents);
        break;
    case KPWalkReport::Kind::Changed:
        Q_EMIT documentsChanged(report.documents);
        break;
    case KPWalkReport::Kind::Removed:
        Q_EMIT documentsRemoved(report.texts);
        break;
    case KPWalkReport::Kind::Finished:
        Q_EMIT finished(report.texts);
        break;
    }
}

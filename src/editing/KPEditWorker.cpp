#include "KPEditWorker.h"

#include "KarvexPrefs.h"
#include "XPLog.h"

struct KPEditWorker::Job
{
    enum class Kind { Edit, Undo, Redo };

    Kind kind = Kind::Edit;
    KPFileEdit edit;
    Record record;
    quint64 number = 0;
};

KPEditWorker::KPEditWorker(QObject *parent) : QObject(parent)
{
    connect(this, &KPEditWorker::newsWaiting, this, &KPEditWorker::receive, Qt::QueuedConnection);
    m_thread = std::thread([this] { loop(); });
}

KPEditWorker::~KPEditWorker()
{
    {
        const XPLocker locker(m_mutex);
        m_quit = true;
    }
    m_wake.notify_one();
    m_thread.join();
}

void KPEditWorker::edit(const KPFileEdit &edit, const Record &record)
{
    post({Job::Kind::Edit, edit, record});
}

void KPEditWorker::undo(const Record &record)
{
    post({Job::Kind::Undo, {}, record});
}

void KPEditWorker::redo(const Record &record)
{
    post({Job::Kind::Redo, {}, record});
}

void KPEditWorker::post(Job job)
{
    {
        const XPLocker locker(m_mutex);
        job.number = ++m_posted;
        m_jobs.push_back(std::move(job));
    }
    ++m_unreported;
    m_wake.notify_one();
}

void KPEditWorker::stop()
{
    const XPLocker locker(m_mutex);
    m_stopUpTo = m_posted;
}

// The thread.

void KPEditWorker::loop()
{
    XPLocker locker(m_mutex);
    for (;;) {
        while (!m_quit && m_jobs.empty())
            m_wake.wait(locker);
        if (m_jobs.empty())
            return;
        const Job job = std::move(m_jobs.front());
        m_jobs.pop_front();
        locker.unlock();
        KPEditReport report = run(job);
        locker.lock();
        m_news.reports.append(std::move(report));
        if (!std::exchange(m_news.waiting, true))
            Q_EMIT newsWaiting(QPrivateSignal());
    }
}

static void rememberTags(const KPFileEdit &edit)
{
    if (!edit.tags)
        return;
    if (const auto error = KarvexPrefs::updatePrefsRecentTags(edit.tags->before, edit.tags->after))
        qCWarning(xpLog).noquote() << error->message;
}

KPEditReport KPEditWorker::run(const Job &job)
{
    const std::vector<KPFileChange> before = job.record->changes;
    const bool isEdit = job.kind == Job::Kind::Edit;
    KPEditReport report;
    report.total = isEdit ? job.edit.paths.size() : static_cast<qsizetype>(before.size());
    if (isEdit)
        rememberTags(job.edit);
    for (qsizetype number = 0; number < report.total; ++number) {
        if (job.number <= m_stopUpTo) {
            report.stopped = true;
            break;
        }
        const auto at = static_cast<size_t>(number);
        const KPFileOutcome outcome =
            isEdit ? KPFileEditing::apply(job.edit, job.edit.paths[number])
                   : KPFileEditing::repeat(job.kind == Job::Kind::Undo ? before[at].reversed()
                                                                       : before[at]);
        if (outcome.error)
            report.failures.append(*outcome.error);
        if (!outcome.change.isEmpty()) {
            ++report.changed;
            if (isEdit)
                job.record->changes.push_back(outcome.change);
        }
        publish(outcome.change, number + 1, report.total);
    }
    return report;
}

void KPEditWorker::publish(const KPFileChange &change, qsizetype done, qsizetype total)
{
    const XPLocker locker(m_mutex);
    if (!change.isEmpty())
        m_news.changes.append(change);
    m_news.done = done;
    m_news.total = total;
    if (!std::exchange(m_news.waiting, true))
        Q_EMIT newsWaiting(QPrivateSignal());
}

// Back on the main thread.

void KPEditWorker::receive()
{
    News news;
    {
        const XPLocker locker(m_mutex);
        std::swap(news, m_news);
    }
    m_unreported -= news.reports.size();
    if (!news.changes.isEmpty())
        Q_EMIT changed(news.changes);
    if (news.total > 0)
        Q_EMIT progressed(news.done, news.total);
    for (const KPEditReport &report : news.reports)
        Q_EMIT reported(report);
}

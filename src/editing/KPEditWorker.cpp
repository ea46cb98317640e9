#include "KPEditWorker.h"

#include "KPEditJournal.h"
#include "KPRecentTagGroups.h"
#include "KPWaitingTagChanges.h"
#include "KarvexPrefs.h"
#include "XPLog.h"
#include "XPNotificationCenter.h"

struct KPEditWorker::Job
{
    enum class Kind { Edit, Undo, Redo };

    Kind kind = Kind::Edit;
    KPFileEdit edit;
    Record record;
    QString text;
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

void KPEditWorker::edit(const KPFileEdit &edit, const Record &record, const QString &text)
{
    post({Job::Kind::Edit, edit, record, text});
}

void KPEditWorker::undo(const Record &record)
{
    post({Job::Kind::Undo, {}, record, {}});
}

void KPEditWorker::redo(const Record &record)
{
    post({Job::Kind::Redo, {}, record, {}});
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

static void logFailure(const std::optional<XPError> &error)
{
    if (error)
        qCWarning(xpLog).noquote() << error->message;
}

// The lists of tags that people choose from.
static void rememberTags(const KPFileEdit &edit)
{
    if (edit.tags) {
        logFailure(KarvexPrefs::updatePrefsRecentTags(edit.tags->before, edit.tags->after));
        KPRecentTagGroups::addNewTagsToRecentGroups(edit.tags->after);
    }
    if (!edit.rename)
        return;
    logFailure(KarvexPrefs::removeTagsFromRecents(edit.rename->allFrom()));
    if (!edit.rename->isDeletion())
        logFailure(KarvexPrefs::updatePrefsRecentTags({}, {edit.rename->to}));
    KPRecentTagGroups::rename(*edit.rename);
    for (const QString &from : edit.rename->allFrom())
        XPNotificationCenter::instance().post(
            KPTagRename::renamedNotification, {},
            {{QStringLiteral("from"), from}, {QStringLiteral("to"), edit.rename->to}});
}

bool KPEditWorker::isStopped(const Job &job) const
{
    return job.number <= m_stopUpTo;
}

KPEditReport KPEditWorker::run(const Job &job)
{
    return job.kind == Job::Kind::Edit ? runEdit(job) : repeat(job);
}

KPEditReport KPEditWorker::runEdit(const Job &job)
{
    KPEditReport report;
    report.edit = job.edit;
    report.total = job.edit.paths.size();
    job.record->rename = job.edit.rename;
    std::unique_ptr<KPEditJournal> journal;
    if (!job.text.isEmpty())
        journal = KPEditJournal::begin(job.text, job.edit.rename);
    if (journal)
        job.record->journal = journal->file();
    const auto intend = [&](const KPFileChange &change) {
        if (journal)
            journal->append(change);
    };
    rememberTags(job.edit);
    for (qsizetype number = 0; number < report.total; ++number) {
        if (isStopped(job)) {
            report.stopped = true;
            break;
        }
        const KPFileOutcome outcome =
            KPFileEditing::apply(job.edit, job.edit.paths[number], intend);
        if (outcome.error)
            report.failures.append(*outcome.error);
        if (!outcome.change.isEmpty()) {
            ++report.changed;
            job.record->changes.push_back(outcome.change);
        }
        publish(outcome.change, number + 1, report.total);
    }
    if (journal && report.changed == 0)
        KPEditJournal::remove(std::exchange(job.record->journal, {}));
    return report;
}

std::optional<XPError> KPEditWorker::repeatWaiting(KPEditRecord &record, bool undoes)
{
    if (!record.rename)
        return {};
    if (!undoes)
        return KPWaitingTagChanges::add(*record.rename, std::exchange(record.waited, {}));
    auto paths = KPWaitingTagChanges::takeBack(*record.rename);
    if (!paths)
        return paths.error();
    record.waited += *paths;
    return {};
}

KPEditReport KPEditWorker::repeat(const Job &job)
{
    KPEditReport report;
    KPEditRecord &record = *job.record;
    const bool undoes = job.kind == Job::Kind::Undo;
    if (!record.isLoaded) {
        auto contents = KPEditJournal::contents(record.journal);
        if (!contents) {
            report.total = 1;
            report.failures.append(contents.error());
            return report;
        }
        KPEditJournal::Contents loaded = *std::move(contents);
        record.changes = std::move(loaded.changes);
        record.rename = std::move(loaded.rename);
        record.isLoaded = true;
    }
    report.total = static_cast<qsizetype>(record.changes.size());
    if (auto error = repeatWaiting(record, undoes))
        report.failures.append(*error);
    // A stop in the middle leaves the rest to the journal: what is undone already is passed over.
    for (qsizetype number = 0; number < report.total; ++number) {
        if (isStopped(job)) {
            report.stopped = true;
            break;
        }
        const KPFileChange &change = record.changes[static_cast<size_t>(number)];
        const KPFileOutcome outcome = KPFileEditing::repeat(undoes ? change.reversed() : change);
        if (outcome.error)
            report.failures.append(*outcome.error);
        if (!outcome.change.isEmpty())
            ++report.changed;
        publish(outcome.change, number + 1, report.total);
    }
    if (!record.journal.isEmpty() && !(undoes && report.stopped))
        record.journal = KPEditJournal::mark(record.journal, undoes);
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

#pragma once

#include "KPFileEdit.h"
#include "XPMutex.h"

#include <QList>
#include <QObject>
#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

// What an edit changed, for undoing it. Filled and read by the worker's thread alone.
struct KPEditRecord
{
    std::vector<KPFileChange> changes;
    QString journal;      // its file (KPEditJournal); empty: there is none
    bool isLoaded = true; // false: the changes are still in the journal alone
    // Of a tag in the whole library: an undo takes back what waits for volumes, a redo lets these
    // files wait again.
    std::optional<KPTagRename> rename = {};
    QStringList waited = {};
};

// What became of one edit, undo or redo.
struct KPEditReport
{
    qsizetype total = 0;   // files asked for
    qsizetype changed = 0; // files that are different now
    QList<XPError> failures;
    bool stopped = false; // the user stopped it: the rest was left alone
    KPFileEdit edit = {}; // what was asked for; of an undo or redo nothing
};

// Does edits one after the other on a thread of its own.
//
// As they run in the order asked for, an undo may be asked for while its edit is still running.
// Threads: lives on the main thread. The destructor finishes what was asked for before it joins,
//          unless stop() came first: closing the window must not lose what the user typed.
class KPEditWorker : public QObject
{
    Q_OBJECT

public:
    using Record = std::shared_ptr<KPEditRecord>;

    explicit KPEditWorker(QObject *parent = nullptr);
    ~KPEditWorker() override;

    // `text`: what undoing it is called, also after the next start.
    void edit(const KPFileEdit &edit, const Record &record, const QString &text = {});
    void undo(const Record &record);
    void redo(const Record &record);

    // The edit at work ends after the file at hand, those that wait do nothing; each still
    // reports. No effect on later ones.
    void stop() XP_EXCLUDES(m_mutex);
    bool isBusy() const { return m_unreported > 0; }

Q_SIGNALS:
    // What files are like now. Comes in batches while an edit runs.
    void changed(const QList<KPFileChange> &changes);
    void progressed(qsizetype done, qsizetype total); // of the edit at work
    void reported(const KPEditReport &report);
    void newsWaiting(QPrivateSignal);

private:
    struct Job;

    void post(Job job) XP_EXCLUDES(m_mutex);
    void loop() XP_EXCLUDES(m_mutex);
    KPEditReport run(const Job &job) XP_EXCLUDES(m_mutex);
    KPEditReport runEdit(const Job &job) XP_EXCLUDES(m_mutex);
    KPEditReport repeat(const Job &job) XP_EXCLUDES(m_mutex);
    static std::optional<XPError> repeatWaiting(KPEditRecord &record, bool undoes);
    bool isStopped(const Job &job) const;
    void publish(const KPFileChange &change, qsizetype done, qsizetype total) XP_EXCLUDES(m_mutex);
    void receive() XP_EXCLUDES(m_mutex);

    // What the thread has to tell.
    struct News
    {
        QList<KPFileChange> changes;
        QList<KPEditReport> reports;
        qsizetype done = 0;
        qsizetype total = 0;
        bool waiting = false;
    };

    qsizetype m_unreported = 0; // the main thread's alone
    XPMutex m_mutex;
    std::condition_variable_any m_wake;
    std::deque<Job> m_jobs XP_GUARDED_BY(m_mutex);
    News m_news XP_GUARDED_BY(m_mutex);
    bool m_quit XP_GUARDED_BY(m_mutex) = false;
    quint64 m_posted XP_GUARDED_BY(m_mutex) = 0;
    std::atomic<quint64> m_stopUpTo = 0; // jobs up to this number stop
    std::thread m_thread;
};

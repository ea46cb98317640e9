#pragma once

#include "IndexImporters.h"
#include "IndexTextStore.h"

#include <QHash>
#include <QSet>
#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <semaphore>
#include <thread>

// Imports the contents of files in the background: those changed just now first, then the
// backlog, newest file first.
//
// What waits is not saved: an item whose imported state is not that of its file is waiting, so at
// the next start the catalog tells what is left to do. A file that waits takes 16 bytes; where it
// is and what it is are asked for when its turn comes.
// Two threads: one, mostly at idle priority (processor and disk), reads, splits and stores; it
// takes no lock that others wait for, as it may get no time for long. The other feeds it and tells.
// A text that cannot be stored (a full disk) is tried again later; a damaged text index is set
// aside, and everything is imported again.
// Threads: any; the callbacks come from the feeding thread.
class IndexContentQueue
{
public:
    struct File
    {
        QByteArray path;
        QString type;
        qint64 modified = 0; // as the catalog has it
        qint64 size = 0;
        quint64 inode = 0;
        bool imported = false; // the catalog holds what was found in that state of the file
    };
    struct Callbacks
    {
        // What the item is now; nothing: it is gone, or no regular file.
        std::function<std::optional<File>(IndexItem)> lookUp;
        // Applies what was found (an Import change a file); called after the words are stored.
        std::function<void(IndexBatch)> done;
        // What hinders importing; nothing: nothing does any more.
        std::function<void(const std::optional<XPError> &)> problem;
        // Everything is to be imported again: addBacklog() with what the index holds.
        std::function<void()> startedOver;
        // Nothing waits any more; may be told more than once.
        std::function<void()> idle;
    };
    struct Waiting
    {
        qint64 modified = 0;
        IndexItem item = 0;
    };
    using Importers = IndexImporters::Importers;

    // The store must outlive the queue. Of `importers` the first that accepts a type has it.
    // `idle`: only what nobody else wants of processor and disk.
    IndexContentQueue(IndexTextStore &store, Callbacks callbacks,
                      Importers importers = IndexImporters::make(true), bool idle = true);
    ~IndexContentQueue(); // stops within one file's import

    bool accepts(const QString &type) const;
    void add(IndexItem item); // changed just now
    void addBacklog(std::vector<Waiting> &&items);
    void forget(IndexItem item); // the file is gone, or its type no longer accepted
    // Folders may stand elsewhere now: what was not found below its old path, or found there in the
    // place of another file, is read again.
    void folderMoved();
    void retry(); // now, what could not be stored (there is room again)
    // Somebody found the store's file damaged: it is set aside, if it still is that one.
    void storeIsDamaged(quint64 inode);
    qsizetype waiting() const;   // what can be done now; 0: all of it is done and stored
    qsizetype postponed() const; // the same while storing fails: tried again in a while

private:
    using Clock = std::chrono::steady_clock;
    struct Task
    {
        Waiting waiting;
        std::optional<File> file; // nothing: forget the text
        IndexImporter *importer = nullptr;
    };
    // Handed to the idle thread and back; each side has it while the other waits.
    struct Work
    {
        std::vector<Task> tasks;
        bool isBacklog = false;
        quint64 moves = 0;   // that were known when the paths were looked up
        size_t finished = 0; // of the tasks; the others were not looked at
        std::vector<IndexTextStore::Text> texts;
        std::vector<IndexItem> missed; // not found at their paths, or not as they are known
        IndexBatch batch;
        std::optional<XPResult<IndexTextStore::Documents>> stored;
    };
    void feed();
    bool mayEndRenewal() const XP_REQUIRES(m_mutex);
    std::optional<Clock::time_point> nextTime() const XP_REQUIRES(m_mutex);
    qsizetype count() const XP_REQUIRES(m_mutex);
    void takeTasks() XP_REQUIRES(m_mutex);
    void takeChanged(Clock::time_point now) XP_REQUIRES(m_mutex);
    void lookUpTasks();
    void finishWork(Clock::time_point began);
    void keepMissed();
    void putBack(size_t first);
    void rest(const std::vector<IndexItem> &early);
    void storeFailed(const XPError &error);
    void startOver();
    void pause(const XPError &error);
    void renewIfWorthIt();
    IndexImporter *importerFor(const QString &type) const;

    void idleLoop();
    void importTasks();
    void importOne(const Task &task);

    IndexTextStore &m_store;
    const Callbacks m_callbacks;
    const Importers m_importers;
    const bool m_isIdle;

    mutable XPMutex m_typeMutex;
    mutable QHash<QString, IndexImporter *> m_importerOfType XP_GUARDED_BY(m_typeMutex);

    mutable XPMutex m_mutex;
    std::condition_variable_any m_wake;
    std::deque<IndexItem> m_changed XP_GUARDED_BY(m_mutex);
    std::vector<Waiting> m_backlog XP_GUARDED_BY(m_mutex); // a heap, newest on top
    // Files that changed again too soon after they were imported, or just now.
    std::multimap<Clock::time_point, IndexItem> m_resting XP_GUARDED_BY(m_mutex);
    QSet<IndexItem> m_missed XP_GUARDED_BY(m_mutex); // not found, and not known to be gone
    quint64 m_moves XP_GUARDED_BY(m_mutex) = 0;
    std::optional<Clock::time_point> m_pausedUntil XP_GUARDED_BY(m_mutex); // storing failed
    qsizetype m_atWork XP_GUARDED_BY(m_mutex) = 0;
    bool m_hasBacklog XP_GUARDED_BY(m_mutex) = false; // addBacklog() was called
    quint64 m_damaged XP_GUARDED_BY(m_mutex) = 0;     // the inode of a damaged file
    bool m_stopping XP_GUARDED_BY(m_mutex) = false;

    // The feeding thread's.
    QHash<IndexItem, Clock::time_point> m_restUntil; // of files imported a moment ago
    Clock::duration m_pause{};                       // 0: the last attempt was a success

    Work m_work; // whose turn it is, as the semaphores say
    std::binary_semaphore m_workReady{0};
    std::binary_semaphore m_workDone{0};
    std::stop_source m_stop;
    std::atomic<bool> m_hurry = false; // a backlog at work makes way
    std::thread m_idleThread;
    std::thread m_feedThread;
};

#pragma once

#include "XPMutex.h"

#include <QByteArray>
#include <QHash>
#include <atomic>
#include <functional>
#include <thread>
#include <vector>

// What the kernel tells of changes in watched folders: inotify(7), drained on a thread of its own.
//
// Watches follow folders by path; a moved folder keeps its watches under its new path. Events
// come in batches, as read at once, in order. When the kernel's queue overflows one Overflow
// event says that anything may have happened; a folder for which no watch could be had is
// reported by watch() and must be looked at on a timer.
// Threads: watch(), forget… and the counters from any; the callback on the watcher's thread.
class IndexWatcher
{
public:
    struct Event
    {
        enum class Kind {
            Changed,    // made, written, attributes changed, or moved in from elsewhere
            Gone,       // deleted, or moved out
            Moved,      // renamed within what is watched: to toFolder/toName
            FolderGone, // a watched folder itself is gone or was unmounted
            Overflow,
        };
        Kind kind = Kind::Changed;
        bool isFolder = false;
        QByteArray folder;
        QByteArray name;
        QByteArray toFolder;
        QByteArray toName;
    };
    using Callback = std::function<void(std::vector<Event>)>;

    explicit IndexWatcher(Callback callback);
    ~IndexWatcher();
    bool isUsable() const { return m_inotify >= 0; }

    // False: no watch left, or the file system gives none.
    bool watch(const QByteArray &folder);
    void forgetBelow(const QByteArray &folder); // and the folder itself

    // A count of all events so far, and the count at the last event in a folder (0: none).
    quint64 stamp() const { return m_stamp; }
    quint64 lastEventIn(const QByteArray &folder) const;
    // Nothing waits in the kernel, and the callback has returned.
    bool isDrained() const;

private:
    void loop();
    void translate(const char *bytes, size_t size, std::vector<Event> &out);
    void moveBelow(const QByteArray &from, const QByteArray &to);

    struct HalfMove
    {
        quint32 cookie;
        size_t event;
    };

    Callback m_callback;
    int m_inotify = -1;
    int m_stop = -1; // eventfd
    std::atomic<quint64> m_stamp = 0;
    std::atomic<bool> m_busy = false;
    mutable XPMutex m_mutex;
    QHash<int, QByteArray> m_folders XP_GUARDED_BY(m_mutex);
    QHash<QByteArray, int> m_watches XP_GUARDED_BY(m_mutex);
    QHash<QByteArray, quint64> m_lastEvents XP_GUARDED_BY(m_mutex);
    std::vector<HalfMove> m_halfMoves; // watcher's thread only
    std::thread m_thread;
};

#pragma once

#include "XPFileDescriptor.h"
#include "XPMutex.h"

#include <QByteArray>
#include <QHash>
#include <atomic>
#include <functional>
#include <map>
#include <thread>
#include <vector>

// Orders paths so that everything in a folder directly follows the folder.
struct IndexPathOrder
{
    bool operator()(const QByteArray &a, const QByteArray &b) const;
};

// What the kernel tells of changes in watched folders (inotify(7)) and of the mount table, drained
// on a thread of its own.
//
// Watches are set on open folders and known by path; a moved folder keeps its watches under its
// new path, one that left what is watched loses them. Events come in batches, in order. When the
// kernel's queue overflows one Overflow event says that anything may have happened; a folder for
// which no watch could be had is reported by watch() and must be looked at on a timer.
// Threads: watch() and forgetBelow() from any; the callbacks on the watcher's thread.
class IndexWatcher
{
public:
    struct Event
    {
        enum class Kind {
            Changed,    // made, written, attributes changed, or moved in from elsewhere
            Gone,       // deleted, or moved out
            Moved,      // renamed within what is watched: to toFolder/toName
            FolderGone, // a watched folder itself was deleted, moved or unmounted
            Overflow,
            Mounts, // the mount table changed
        };
        Kind kind = Kind::Changed;
        bool isFolder = false;
        bool isMade = false; // made, or moved in from elsewhere
        QByteArray folder;
        QByteArray name;
        QByteArray toFolder;
        QByteArray toName;
        qint64 time = 0; // when it was heard of, in milliseconds of the steady clock
    };
    using Callback = std::function<void(std::vector<Event>)>;
    using Drained = std::function<void()>;

    struct Options
    {
        bool distant = false; // file calls may hang: nothing else is to wait for them
        bool mounts = false;  // tell of the mount table too
    };
    // `drained`: isDrained() may have become true.
    IndexWatcher(Callback callback, Drained drained, Options options);
    ~IndexWatcher();
    void stop(); // the callbacks are not called any more once this has returned
    bool isUsable() const { return m_inotify.isOpen(); }

    // `descriptor`: the folder, open; to be read after this. False: no watch left, or the file
    // system gives none.
    bool watch(const QByteArray &folder, int descriptor);
    void forgetBelow(const QByteArray &folder); // and the folder itself

    // Nothing waits in the kernel, and the callback has returned.
    bool isDrained() const;

private:
    int addWatch(const QByteArray &folder, int descriptor) const;
    void remember(const QByteArray &folder, int watch) XP_REQUIRES(m_mutex);
    void loop();
    void readEvents(std::vector<Event> &events);
    void translate(const char *bytes, size_t size, std::vector<Event> &out);
    bool completeMove(quint32 cookie, const Event &to, std::vector<Event> &out);
    void moveBelow(const QByteArray &from, const QByteArray &to);

    struct HalfMove
    {
        quint32 cookie;
        size_t event;
    };
    using Watches = std::map<QByteArray, int, IndexPathOrder>;
    std::pair<Watches::iterator, Watches::iterator> below(const QByteArray &folder)
        XP_REQUIRES(m_mutex);

    const Callback m_callback;
    const Drained m_drained;
    const bool m_distant;
    const XPFileDescriptor m_inotify;
    const XPFileDescriptor m_stop; // eventfd
    const XPFileDescriptor m_mounts;
    std::atomic<bool> m_busy = false;
    XPMutex m_mutex;
    QHash<int, QByteArray> m_folders XP_GUARDED_BY(m_mutex);
    Watches m_watches XP_GUARDED_BY(m_mutex);
    std::vector<HalfMove> m_halfMoves; // watcher's thread only
    std::thread m_thread;
};

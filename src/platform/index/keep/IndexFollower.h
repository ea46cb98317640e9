#pragma once

#include "IndexLive.h"
#include "IndexStore.h"
#include "IndexTextStore.h"
#include "XPFileDescriptor.h"

#include <thread>

// Keeps this process's index as another process has it: loads the store and follows its journal.
//
// A thread sleeps until the store's bell rings, then applies what is new. Where the journal does
// not reach back far enough, or the store was replaced, everything is loaded again. While there
// is no store yet the index is empty.
// Threads: the constructor, finish() and the destructor on one thread at a time; everything else
// from any.
class IndexFollower
{
public:
    IndexFollower(IndexLive &live, const QString &path);
    ~IndexFollower();

    // Returns when what was in the journal at the call is applied; false: `stop` said so before.
    bool refresh(const std::function<bool()> &stop = {});
    // Ends following, after reading the journal to its end: the store of which the catalog is
    // now the exact state, or null when nothing could be loaded.
    std::unique_ptr<IndexStore> finish();

private:
    void loop();
    void catchUp();
    std::optional<XPError> load();
    void openText();
    bool isReplaced() const;
    void wake() const;
    void stop();

    IndexLive &m_live;
    const QString m_path;
    XPFileDescriptor m_bell; // inotify
    XPFileDescriptor m_wake; // eventfd: m_stopping or m_asked changed

    // The follower's thread, while it runs.
    std::unique_ptr<IndexStore> m_store;
    quint64 m_inode = 0;
    bool m_hasText = false;

    mutable XPMutex m_mutex;
    std::condition_variable_any m_refreshed;
    bool m_stopping XP_GUARDED_BY(m_mutex) = false;
    quint64 m_asked XP_GUARDED_BY(m_mutex) = 0;
    quint64 m_answered XP_GUARDED_BY(m_mutex) = 0;

    std::thread m_thread;
};

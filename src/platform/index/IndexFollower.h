#pragma once

#include "IndexSource.h"
#include "IndexStore.h"
#include "IndexTextStore.h"
#include "XPMutex.h"

#include <map>
#include <thread>

// The index as another process keeps it: loads the store and follows its journal.
//
// A thread sleeps until the store's bell rings, then applies what is new. Where the journal does
// not reach back far enough, everything is loaded again.
// Threads: the constructor and destructor on one thread; everything else from any.
class IndexFollower : public IndexSource
{
public:
    // NotFound: there is no store yet.
    static XPResult<std::unique_ptr<IndexFollower>> start(const QString &path);
    ~IndexFollower() override;

    const IndexCatalog &catalog() const override { return m_catalog; }
    const IndexText *text() const override { return m_text.get(); }
    int addListener(Listener listener) override;
    void removeListener(int number) override;
    // The process that keeps the index sees changes by itself; there is nothing to ask for.
    void reimport(const QByteArray &) override {}

private:
    IndexFollower() = default;
    std::optional<XPError> load(const QString &path);
    void loop();
    void catchUp();

    std::unique_ptr<IndexStore> m_store; // the follower's thread, once it runs
    std::unique_ptr<IndexTextStore> m_text;
    IndexCatalog m_catalog;
    int m_inotify = -1;
    int m_stop = -1;
    XPMutex m_listenerMutex;
    std::map<int, Listener> m_listeners XP_GUARDED_BY(m_listenerMutex);
    int m_lastListener XP_GUARDED_BY(m_listenerMutex) = 0;
    std::thread m_thread;
};

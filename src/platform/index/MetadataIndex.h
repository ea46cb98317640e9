#pragma once

#include "IndexFollower.h"
#include "IndexKeeper.h"

// The metadata index of this user, as this process has it: kept here when no other process does,
// followed otherwise.
//
// Threads: open and destroy on one thread; source() from any. Ownership: the caller's; queries
// must be gone before it.
class MetadataIndex
{
public:
    static XPResult<std::unique_ptr<MetadataIndex>> open();
    ~MetadataIndex();

    IndexSource &source() { return *m_source; }
    // Null when another process keeps the index.
    IndexKeeper *keeper() { return m_keeper.get(); }

    // The file of the store: in the user's caches, as it can be made again at any time.
    static QString storePath();
    // The folders that are indexed: the setting "KPIndexRoots"; the user's home without it.
    static QStringList roots();
    static void setRoots(const QStringList &roots);
    // Deletes the store, so that the next open() builds it anew. NotPermitted while it is kept.
    static std::optional<XPError> remove();

private:
    MetadataIndex() = default;

    std::unique_ptr<IndexKeeper> m_keeper;
    std::unique_ptr<IndexFollower> m_follower;
    IndexSource *m_source = nullptr;
};

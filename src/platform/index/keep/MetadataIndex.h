#pragma once

#include "IndexFollower.h"
#include "IndexKeeper.h"
#include "IndexRequests.h"
#include "UserDefaults.h"

// The metadata index of this user, as this process has it: kept here when no other process does,
// followed otherwise, and taken over when the other process ends, however it ends.
//
// open() returns at once; the index is loaded on a thread of its own (waitUntilLoaded()). Where
// nothing can be saved the index works in memory and its status says so.
// Threads: open and destroy on the main thread, which observes the settings; the rest from any.
// Ownership: the caller's; queries must be gone before it.
class MetadataIndex
{
public:
    // By the settings, which it follows.
    static std::unique_ptr<MetadataIndex> open();
    static std::unique_ptr<MetadataIndex> open(const IndexKeeper::Setup &setup);
    ~MetadataIndex();

    IndexSource &source() { return m_live; }
    const IndexCatalog &catalog() const { return m_live.catalog(); }
    bool waitUntilLoaded(const std::function<bool()> &stop = {}) const;
    // Null while another process keeps the index; stays until the end once it is there.
    IndexKeeper *keeper() const { return m_keeper; }
    // See IndexLive. Nothing is told while another process keeps the index.
    void setLossListener(IndexLosses::Report listener)
    {
        m_live.setLossListener(std::move(listener));
    }

    // Whichever process keeps the index. Cancelled when `stop` said so, else an error when that
    // process does not answer.
    XPResult<IndexStatus> status(const std::function<bool()> &stop = {}) const;
    // Returns when everything that happened before the call is in this process's index too;
    // with `contents` also the text that waits to be imported.
    std::optional<XPError> sync(bool contents, const std::function<bool()> &stop = {});
    // After a change of the settings below, made in this process: tells whoever keeps the index.
    void settingsChanged();

    // The file of the store: in the user's caches, as it can be made again at any time.
    static QString storePath();
    // The folders that are indexed: the setting "KPIndexRoots"; the user's home without it.
    static QStringList roots();
    static void setRoots(const QStringList &roots);
    // The same and what is always indexed: the inbox of documents that wait to be filed.
    static QStringList allRoots();
    // Deletes the store, so that the next open() builds it anew. NotPermitted while it is kept.
    static std::optional<XPError> remove();

private:
    struct Waiter;
    explicit MetadataIndex(const IndexKeeper::Setup &setup) : m_setup(setup) {}
    void start();
    void keep(XPFileDescriptor lock, std::unique_ptr<IndexStore> store);
    void follow(XPFileDescriptor lock);
    void takeOver(XPFileDescriptor lock);
    void answer(IndexRequests::Kind kind, const QByteArray &request,
                const IndexRequests::Answer &answer);
    void followSettings();
    void applySettings();
    std::shared_ptr<IndexFollower> follower() const;

    IndexKeeper::Setup m_setup;
    bool m_followsSettings = false;
    IndexLive m_live;
    std::shared_ptr<Waiter> m_waiter; // for the other process's end
    mutable XPMutex m_mutex;
    std::shared_ptr<IndexFollower> m_follower XP_GUARDED_BY(m_mutex);
    XPFileDescriptor m_lock; // held as long as there is a keeper
    std::unique_ptr<IndexKeeper> m_ownKeeper;
    std::unique_ptr<IndexRequests> m_requests;
    std::atomic<IndexKeeper *> m_keeper = nullptr;
    std::vector<XPObservation> m_observations;
};

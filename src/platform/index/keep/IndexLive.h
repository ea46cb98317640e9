#pragma once

#include "IndexAttributesChange.h"
#include "IndexCatalog.h"
#include "IndexLoss.h"
#include "IndexSource.h"
#include "IndexText.h"
#include "XPMutex.h"

#include <atomic>
#include <condition_variable>
#include <map>

// The one index of this process: its catalog, its text and those who listen, for as long as the
// process uses it.
//
// Who keeps it up to date may change meanwhile: an IndexFollower while another process keeps the
// index, an IndexKeeper from then on when that process ends. Queries notice nothing of it. Until
// it is loaded it is empty; what the load brings reaches the listeners as one large change.
// Threads: any. Ownership: MetadataIndex's; queries must be gone before it.
class IndexLive : public IndexSource
{
public:
    const IndexCatalog &catalog() const override { return m_catalog; }
    const IndexText *text() const override { return m_text; }
    int addListener(Listener listener) override;
    void removeListener(int number) override;
    void reimport(const QByteArray &path) override;

    bool waitUntilLoaded(const std::function<bool()> &stop = {}) const override;

    bool isLoaded() const;

    // Told of files that lost attributes, while this process keeps the index; also of those that
    // were found before it was set. Called on the writer's thread, under the lock of the
    // listeners, so it only takes note. It is not called any more once another one was set.
    void setLossListener(IndexLoss::Report listener);

    // The same, told of attributes that are others than before. When nobody listened yet and they
    // are too many, the later ones are not kept.
    void setAttributesListener(IndexAttributesChange::Report listener);

    // For the one that keeps it up to date, on its thread.
    IndexCatalog &writable() { return m_catalog; }
    // Earlier ones stay until the end: a query may be at work on them.
    void setText(std::shared_ptr<const IndexText> text);
    void tell(const std::vector<IndexItem> &touched);
    void tellLoss(IndexLoss loss);
    void tellAttributesChange(IndexAttributesChange change);
    void setLoaded(); // after each load: tells of every item, also of those that were before
    // What reimport() does; nothing before.
    void setReimport(std::function<void(const QByteArray &path)> reimport);

private:
    IndexCatalog m_catalog;
    std::atomic<const IndexText *> m_text = nullptr;

    mutable XPMutex m_mutex;
    mutable std::condition_variable_any m_wake;
    bool m_loaded XP_GUARDED_BY(m_mutex) = false;
    IndexItem m_lastItem XP_GUARDED_BY(m_mutex) = 0; // at the last load
    std::vector<std::shared_ptr<const IndexText>> m_texts XP_GUARDED_BY(m_mutex);
    std::function<void(const QByteArray &)> m_reimport XP_GUARDED_BY(m_mutex);

    XPMutex m_listenerMutex; // held while they are called, so that removing waits for that
    std::map<int, Listener> m_listeners XP_GUARDED_BY(m_listenerMutex);
    int m_lastListener XP_GUARDED_BY(m_listenerMutex) = 0;
    IndexLoss::Report m_lossListener XP_GUARDED_BY(m_listenerMutex);
    std::vector<IndexLoss> m_losses XP_GUARDED_BY(m_listenerMutex); // while there is no listener
    IndexAttributesChange::Report m_attributesListener XP_GUARDED_BY(m_listenerMutex);
    std::vector<IndexAttributesChange> m_attributesChanges XP_GUARDED_BY(m_listenerMutex);
};

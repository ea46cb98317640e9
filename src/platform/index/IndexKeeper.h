#pragma once

#include "IndexContentQueue.h"
#include "IndexCrawler.h"
#include "IndexSource.h"
#include "IndexStore.h"

#include <QHash>
#include <QSet>
#include <map>

// Keeps the index right: crawls the roots, watches them, repairs what was missed, saves.
//
// One per machine and user, in the process that holds the writer's lock. All changes are applied
// by one writer thread in one order; changes that somebody made just now go before what a crawl
// still finds. A listing that was overtaken by an event in its folder is not applied but read
// again, so the disk's last word stands.
// Threads: the constructor and destructor on one thread; everything else from any.
class IndexKeeper : public IndexSource
{
public:
    struct Status
    {
        enum class Phase { Opening, Crawling, Verifying, Live };
        Phase phase = Phase::Opening;
        qint64 items = 0;
        qint64 foldersRead = 0;
        qint64 contentsWaiting = 0;
        QStringList problems; // what is degraded, in words
    };

    // Takes the writer's lock; NotPermitted-kind error "another process keeps the index" when it
    // is taken. Opens or makes the store at `path` and starts to work.
    static XPResult<std::unique_ptr<IndexKeeper>>
    start(const QString &path, const QStringList &roots, const IndexRules &rules);
    ~IndexKeeper() override;

    const IndexCatalog &catalog() const override { return m_catalog; }
    const IndexText *text() const override { return m_text.get(); }
    int addListener(Listener listener) override;
    void removeListener(int number) override;
    void reimport(const QByteArray &path) override;

    Status status() const;
    // Returns when everything that happened before the call is in the index (and saved); false
    // when `stop` said so before. With a crawl under way that takes as long as the crawl; with
    // `contents`, as long as what waits to be imported.
    bool sync(bool contents, const std::function<bool()> &stop = {});
    void setRoots(const QStringList &roots);

private:
    using Job = std::function<void()>;

    IndexKeeper(const IndexRules &rules, int lock);
    std::optional<XPError> openStore(const QString &path);
    void openTextStore(const QString &path);
    void begin(const QStringList &roots);
    void loop();
    void post(Job job, bool urgent);
    bool nextJob(Job *job);

    // On the writer thread:
    void applyRoots(const QStringList &roots);
    void addRoot(const QByteArray &path);
    void applyListing(const IndexListing &listing);
    void applyEntry(IndexItem folder, const IndexEntry &entry, IndexBatch &batch);
    void removeMissing(IndexItem folder, const IndexListing &listing, IndexBatch &batch);
    void removeTree(IndexItem item, IndexBatch &batch);
    void applyEvents(const std::vector<IndexWatcher::Event> &events);
    void applyChanged(const QByteArray &folder, const QByteArray &name, IndexBatch &batch);
    void applyMoved(const IndexWatcher::Event &event, IndexBatch &batch);
    void applyFolderFacts(const QByteArray &folder, const XPFileInfo &info, IndexBatch &batch);
    void commit(const IndexBatch &batch);
    void checkpoint();
    void queueContents(const IndexBatch &applied);
    void queueAllContents();
    bool wantsContent(IndexSlot slot) const;
    bool isContentStored(IndexSlot slot) const;
    std::optional<IndexContentQueue::File> contentFile(IndexItem item) const;
    bool isQuiet() const;
    void crawlDone();
    void recheckUnwatched();
    IndexItem itemAt(const QByteArray &folder) const;
    void problem(const QString &key, const QString &text);

    const IndexRules m_rules;
    const int m_lock;
    std::unique_ptr<IndexStore> m_store;
    std::unique_ptr<IndexTextStore> m_text;
    IndexCatalog m_catalog;

    // Writer thread only.
    std::unique_ptr<IndexFolderReader> m_reader;
    IndexItem m_lastItem = 0;
    bool m_bulk = false; // a first crawl: chunks are saved whole, the journal is not written
    size_t m_bulkChunks = 0;
    std::vector<quint64> m_childrenBefore; // (folder, item) pairs when the crawl began, sorted
    QSet<QByteArray> m_unwatched;

    mutable XPMutex m_mutex;
    std::condition_variable_any m_wake;
    std::condition_variable_any m_room;
    std::deque<Job> m_urgent XP_GUARDED_BY(m_mutex);
    std::deque<Job> m_bulkJobs XP_GUARDED_BY(m_mutex);
    bool m_stopping XP_GUARDED_BY(m_mutex) = false;
    Status m_status XP_GUARDED_BY(m_mutex);
    std::map<QString, QString> m_problems XP_GUARDED_BY(m_mutex);

    XPMutex m_listenerMutex;
    std::map<int, Listener> m_listeners XP_GUARDED_BY(m_listenerMutex);
    int m_lastListener XP_GUARDED_BY(m_listenerMutex) = 0;

    std::thread m_thread;
    std::unique_ptr<IndexWatcher> m_watcher;
    std::unique_ptr<IndexCrawler> m_crawler;
    std::unique_ptr<IndexContentQueue> m_contents;
};

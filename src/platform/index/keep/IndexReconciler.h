#pragma once

#include "IndexAttributesChange.h"
#include "IndexFolderReader.h"
#include "IndexLosses.h"
#include "IndexWatcher.h"
#include "IndexWriter.h"

#include <QHash>
#include <QSet>

// Turns what was seen on disk into changes of the catalog: the listings of a crawl, and what the
// watcher tells.
//
// The disk's last word stands: what an event made known while a folder was being read is not
// overwritten by that older reading. An event itself says only where to look; the file is then
// read. Both are done in steps of some milliseconds.
// Threads: the writer's.
class IndexReconciler
{
public:
    struct Calls
    {
        std::function<void(const QByteArray &folder, bool deep)> read; // asks the crawler
        std::function<bool(const QByteArray &folder)> isCrawling;      // of the volume it is on
        std::function<bool(const QByteArray &folder)> isDistant;       // file calls may hang
        IndexLoss::Report lost;
        IndexAttributesChange::Report attributesChanged = {};
    };
    IndexReconciler(IndexWriter &writer, std::shared_ptr<const IndexRules> rules, Calls calls);

    // Constructed elsewhere; this much on the writer's thread.
    void begin();
    void setRules(std::shared_ptr<const IndexRules> rules);
    const std::shared_ptr<const IndexRules> &rules() const { return m_rules; }
    qsizetype unreadable() const { return m_unreadable.size(); } // folders
    quint64 stamp() const { return m_stamp; }                    // any thread

    // A listing being applied: to be called until it says true.
    struct Pending
    {
        IndexListing listing;
        size_t next = 0;
    };
    bool apply(Pending &pending);
    // The crawl is over, so nothing older than an event can come any more.
    void crawlDone();

    struct Events
    {
        std::vector<IndexWatcher::Event> events;
        size_t next = 0;
        std::vector<bool> superseded;
    };
    bool apply(Events &events); // those of folders; not the root's own, mounts and overflows

    // Reads one path now; one that is gone is removed.
    void look(const QByteArray &path);
    void removeTree(IndexItem item, IndexBatch &batch);
    // A mount came or went at a folder inside a root.
    void lookAtMount(const QByteArray &path);
    IndexItem itemAt(const QByteArray &path) const { return m_catalog.itemAtPath(path); }

    static QByteArray joined(const QByteArray &folder, const QByteArray &name);
    static QByteArray parentOf(const QByteArray &path);
    static QByteArray nameOf(const QByteArray &path);

private:
    using Name = QPair<QByteArray, QByteArray>; // folder, name

    // Listings:
    void applyChanges(Pending &pending, IndexItem folder);
    // `made`: an event told that another file came to the name; its inode may be used again.
    void putEntry(IndexItem folder, IndexRecord &record, IndexItem known, IndexBatch &batch,
                  bool made = false);
    void tellAttributes(IndexItem folder, const IndexRecord &before, const IndexRecord &now) const;
    void noteGone(const IndexWatcher::Event &event, IndexItem item);
    QByteArray pathIn(IndexItem folder, const QByteArray &name) const;
    void removeMissing(IndexItem folder, const IndexListing &listing, IndexBatch &batch);
    std::vector<IndexItem> membersOf(IndexItem folder);
    void putFolderFacts(const QByteArray &folder, const XPFileInfo &info, IndexBatch &batch);

    // Events:
    static std::vector<bool> supersededIn(std::vector<IndexWatcher::Event> &events);
    void applyEvent(const IndexWatcher::Event &event, IndexBatch &batch);
    void applyTimedEvent(const IndexWatcher::Event &event, IndexBatch &batch);
    void applyChanged(const QByteArray &folder, const QByteArray &name, bool made,
                      IndexBatch &batch);
    void applyGone(const IndexWatcher::Event &event, IndexBatch &batch);
    void applyMoved(const IndexWatcher::Event &event, IndexBatch &batch);
    void note(const QByteArray &folder, const QByteArray &name);
    bool isOvertaken(const IndexListing &listing, const QByteArray &folder,
                     const QByteArray &name) const;
    void flush(IndexBatch &batch) { m_writer.commit(batch); }

    IndexWriter &m_writer;
    const IndexCatalog &m_catalog;
    std::shared_ptr<const IndexRules> m_rules;
    const Calls m_calls;
    std::unique_ptr<IndexFolderReader> m_reader;
    IndexLosses m_losses;
    qint64 m_eventTime = 0; // of the event being applied; 0: a listing is

    std::atomic<quint64> m_stamp = 0;
    QHash<Name, quint64> m_noted;       // what events told of during a crawl, with the stamp
    QHash<QByteArray, quint64> m_early; // folders that events told of before they were known
    quint64 m_notedBefore = 0;          // listings older than this are read again
    std::vector<quint64> m_members;     // (folder, item) pairs, sorted; made when often needed
    int m_memberQuestions = 0;          // in this crawl
    QSet<QByteArray> m_unreadable;
};

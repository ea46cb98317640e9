#pragma once

#include "MDQuery.h"
#include "XPAttributeReader.h"
#include "XPAttributeTable.h"
#include "XPError.h"

#include <QElapsedTimer>
#include <QSet>
#include <QThread>
#include <functional>
#include <memory>

class QTimer;
class XPRecentItems;

// One attribute of all documents, known without touching a file: path to value.
//
// Filled in bulk by a live query over the whole index, kept up to date by it, and completed path
// by path, within about a second, for what is read and not there; what is outside the index is
// then read from the file. What was read late is stored only where nothing was stored or forgotten
// since it was asked for: what this program wrote meanwhile stays. A value that cannot be read is
// held as its XPError, told apart from none (errorIn()). A value that came to differ is told on the
// main thread: "documentChanging" about the item (or, after setAttribute(), the path),
// and the names given at construction, with no object, once for each lot of changes.
// Whoever observes "documentChanging" about an item finds in the table below the path at which
// the item was before; once all were told, the table follows.
// Threads: construct and destroy on the main thread; everything else from any. The query and the
// fixing run on a thread of its own, which the destructor stops and joins.
// Ownership: the caller's; the source must outlive it.
class XPAttributeCache : public QObject
{
    Q_OBJECT

public:
    // A raw value of the attribute as it is to be held; null: as if there were none; unreadable():
    // it is not what it should be. Called on the cache's threads, with no lock held. Bytes that
    // could not be decoded do not get here.
    using Transformer = std::function<XPAttributeValuePtr(const PropertyValue &raw)>;

    // Runs from now on. `maxQuerySize` limits the bulk query; 0: 50000. Without a transformer
    // values are XPAttributeOf<PropertyValue>.
    XPAttributeCache(IndexSource &source, const QString &attributeKey, qsizetype maxQuerySize,
                     const QStringList &changeNotificationsToSend, Transformer transformer = {});
    ~XPAttributeCache() override;

    // Null when there is no value; when it is not known, also queues the path to be fixed. What
    // cannot be read is a value of its own, which is of no type that a reader expects.
    XPAttributeValuePtr attributeAtPath(KPPooledString path);
    // Never queues.
    XPAttributeValuePtr attributeAtPathCacheOnly(KPPooledString path) const;
    // A value that this program just wrote; null: it removed the attribute.
    void setAttribute(const XPAttributeValuePtr &value, KPPooledString path);
    // A value that came from elsewhere, already as it is held: nobody is told. `unknownOnly`: what
    // is known stays. Answers what is held then.
    XPAttributeValuePtr fill(const XPAttributeValuePtr &value, KPPooledString path,
                             bool unknownOnly);
    // The next read queues it.
    void unCacheDataAtPath(KPPooledString path);

    // Has the files looked at again, known or not; what is known stays until they were.
    void addPathToFix(KPPooledString path) { addPathsToFix({path}); }
    void addPathsToFix(const QList<KPPooledString> &paths);
    qsizetype numPathsToFix() const; // those that are being read included

    // Every real value, with its path; the values alone. A copy, in no order.
    QList<std::pair<KPPooledString, XPAttributeValuePtr>> values() const;
    QList<XPAttributeValuePtr> allObjects() const;

    bool usingQuery() const { return m_activeMDQuery; }
    // The bulk query found everything with room to spare: an absent path has no value.
    bool isUpToDate() const { return m_isUpToDate; }
    // Only then may a missing value be taken for "none".
    bool okToCalculateMissingItems() const { return !usingQuery() || isUpToDate(); }
    // Some cache was started, and the first bulk query of each is over.
    static bool allCachingDone();

    // How a value that cannot be read is held, and why it cannot; null: it can.
    static XPAttributeValuePtr unreadable(const XPError &error)
    {
        return XPAttributeOf<XPError>::make(error);
    }
    static const XPError *errorIn(const XPAttributeValuePtr &value)
    {
        return XPAttributeOf<XPError>::in(value);
    }

    // Where items were last seen, by the whole process; nothing for one that has no path.
    static void setCacheForItem(const MDItem &item, KPPooledString path);
    static std::optional<KPPooledString> cachedMDITemGetPath(const MDItem &item); // asks the item
    static std::optional<KPPooledString> cachedMDITemGetPathIfExists(const MDItem &item);
    static std::optional<KPPooledString> cachedMDITemUpdatePathGetPath(const MDItem &item);
    static void clearCacheForItem(const MDItem &item);
    static qsizetype dictCount();

Q_SIGNALS:
    // For itself, from any thread; see MDQuery.
    void pathsWaiting(QPrivateSignal);    // to m_thread, to be fixed
    void readingsWaiting(QPrivateSignal); // to m_thread
    void noticesWaiting(QPrivateSignal);  // to the main thread

private:
    using Lookup = XPAttributeReader::Lookup;
    // A result as the index holds it; an empty path: it is gone.
    struct Row
    {
        IndexItem item = 0;
        KPPooledString path;
        PropertyValue raw;
    };

    // On m_thread:
    void startSearch();
    void takeResults();
    void finishedMDQuery();
    void updatedMDQuery(const QList<IndexItem> &added, const QList<IndexItem> &changed,
                        const QList<IndexItem> &removed);
    bool isNearLimit() const;
    std::vector<Row> rows(const QList<IndexItem> &items) const;
    void takeRemoved(const QList<IndexItem> &removed, bool *news);
    bool checkForChangedPath(const Row &row);
    XPAttributeValuePtr transformed(const XPResult<PropertyValue> &raw) const;
    void prefetchDone();
    void fixPaths();
    void fixSome();
    QList<Lookup> begin(const QList<KPPooledString> &paths) XP_EXCLUDES(m_pathsToFixLock);
    void fix(const QList<Lookup> &lookups);
    void readFiles(const QList<Lookup> &lookups);
    std::vector<Row> rowsAt(const QList<Lookup> &lookups) const;
    void takeRead() XP_EXCLUDES(m_mutex);

    // Any thread. What is stored or removed ends the lookups of that path.
    bool store(KPPooledString path, const XPAttributeValuePtr &value) XP_EXCLUDES(m_pathsToFixLock);
    bool remove(KPPooledString path) XP_EXCLUDES(m_pathsToFixLock);
    void storeFound(const Lookup &lookup, const XPAttributeValuePtr &value)
        XP_EXCLUDES(m_pathsToFixLock);
    void endLookups(KPPooledString path) XP_REQUIRES(m_pathsToFixLock);
    void askFor(KPPooledString path) XP_EXCLUDES(m_pathsToFixLock);

    // To the main thread, and there:
    void announce(IndexItem item) XP_EXCLUDES(m_mutex);
    void notifyMainQ() XP_EXCLUDES(m_mutex);
    void deliverNotices() XP_EXCLUDES(m_mutex);
    void tellOfItem(IndexItem item);
    void mainThreadNotifyUpdatedInfo();

    IndexSource &m_source;
    const QString m_singleAttributeKey;
    const qsizetype m_maxQuerySize;
    const QStringList m_notificationStrings;
    const Transformer m_transformer;
    XPAttributeTable m_values;
    std::atomic<bool> m_activeMDQuery = true;
    std::atomic<bool> m_isUpToDate = false;
    std::atomic<bool> m_stopping = false;

    mutable XPMutex m_pathsToFixLock;
    QSet<KPPooledString> m_pathsToFix XP_GUARDED_BY(m_pathsToFixLock);        // waiting
    QHash<KPPooledString, quint64> m_lookups XP_GUARDED_BY(m_pathsToFixLock); // begun, by number
    quint64 m_lastLookup XP_GUARDED_BY(m_pathsToFixLock) = 0;

    XPMutex m_mutex;
    QList<IndexItem> m_announced XP_GUARDED_BY(m_mutex);
    QSet<IndexItem> m_isAnnounced XP_GUARDED_BY(m_mutex);
    QList<XPAttributeReader::Value> m_read XP_GUARDED_BY(m_mutex); // for m_thread
    bool m_notify XP_GUARDED_BY(m_mutex) = false;
    bool m_woken XP_GUARDED_BY(m_mutex) = false;

    // m_thread's alone:
    std::unique_ptr<MDQuery> m_mdQuery;
    qsizetype m_taken = 0;
    QHash<IndexItem, KPPooledString> m_storedAt; // the query's results, as they are in m_values
    bool m_prefetching = true;
    QTimer *m_fixPathsTimer = nullptr;            // m_onThread's child
    QList<KPPooledString> m_currentlyFixingPaths; // the rest of the pass at hand
    QElapsedTimer m_sinceNotified;
    std::unique_ptr<XPAttributeReader> m_reader; // made when first needed
    std::unique_ptr<XPRecentItems> m_recentItems;

    const bool m_isFirst; // cache of the source
    QThread m_thread;
    QObject *m_onThread; // where calls to m_thread are queued; destroyed there
};

#include "KPRowCounts.h"

#include "IndexLook.h"
#include "IndexSettings.h"
#include "IndexSource.h"
#include "KPIndexFilter.h"
#include "KPSearcher.h"
#include "MDQuery.h"
#include "XPPath.h"

#include <map>
#include <sys/resource.h>
#include <unistd.h>

// On the thread.
class KPRowCounts::Worker : public QObject
{
public:
    Worker(KPRowCounts &owner, IndexSource &source) : m_owner(owner), m_source(source) {}

    void takeRows();

private:
    struct Row
    {
        KPSearchState::Ptr state;
        std::unique_ptr<MDQuery> query; // null: there is nothing to ask
        std::optional<qsizetype> count;
    };

    bool isEnding() const { return m_owner.m_isEnding; }
    void learnDocuments();
    void judge(const IndexItem *items, size_t count);
    bool isDocument(IndexItem item) const
    {
        return item < m_isDocument.size() && m_isDocument[item];
    }
    void start(Row &row);
    void count(Row &row) const;
    void update(const QString &name, const QList<IndexItem> &added,
                const QList<IndexItem> &removed);
    void tell() XP_EXCLUDES(m_owner.m_mutex);

    KPRowCounts &m_owner;
    IndexSource &m_source;
    std::unique_ptr<KPIndexFilter> m_filter;
    std::unique_ptr<MDQuery> m_files;
    std::vector<bool> m_isDocument; // by item; one that is gone keeps what it was
    std::map<QString, Row> m_rows;
};

// Whether each file of the index is a document: asked once, for all rows.
void KPRowCounts::Worker::learnDocuments()
{
    if (m_files)
        return;
    m_source.waitUntilLoaded([this] { return isEnding(); });
    auto query = MDQuery::create(m_source, QStringLiteral("kMDItemFSName == *"));
    if (!query || isEnding())
        return;
    m_filter = std::make_unique<KPIndexFilter>(KPSearchState::searchStateWithNativeDictionary({}));
    QStringList roots;
    for (const QString &root : IndexSettings::allRoots())
        roots.append(XPPath::absolute(root));
    m_filter->setRoots(roots);
    m_files = *std::move(query);
    // Before the rows' own queries, so that what is new is judged when they tell of it.
    connect(m_files.get(), &MDQuery::updated, this,
            [this](const QList<IndexItem> &added, const auto &, const auto &) {
                judge(added.constData(), static_cast<size_t>(added.size()));
            });
    m_files->execute(MDQuery::WantsUpdates | MDQuery::Synchronous);
    constexpr qsizetype atOnce = 4096; // the index is let go in between
    std::vector<IndexItem> items;
    for (qsizetype first = 0; first < m_files->resultCount() && !isEnding(); first += atOnce) {
        items.clear();
        for (qsizetype i = first; i < std::min(first + atOnce, m_files->resultCount()); ++i)
            items.push_back(m_files->itemAt(i));
        judge(items.data(), items.size());
    }
}

void KPRowCounts::Worker::judge(const IndexItem *items, size_t count)
{
    const IndexLook look(m_source);
    for (size_t i = 0; i < count; ++i) {
        const auto row = look.at(items[i]);
        if (!row)
            continue;
        const QByteArray path = row->path();
        const XPFileInfo info = row->info();
        const QString type = info.isDirectory() ? row->type() : QString();
        if (items[i] >= m_isDocument.size())
            m_isDocument.resize(std::max<size_t>(items[i] + 1, m_isDocument.size() * 5 / 4));
        m_isDocument[items[i]] = m_filter->mayHold(path, XPPath::decode(path), info, type);
    }
}

void KPRowCounts::Worker::takeRows()
{
    Rows wanted;
    {
        const XPLocker lock(m_owner.m_mutex);
        wanted = m_owner.m_wanted;
    }
    std::erase_if(m_rows, [&wanted](const auto &row) {
        const KPSearchState::Ptr state = wanted.value(row.first);
        return !state || !state->isEqualToSearchState(*row.second.state);
    });
    if (wanted.isEmpty())
        return;
    learnDocuments();
    for (auto each = wanted.cbegin(); each != wanted.cend(); ++each) {
        if (isEnding())
            return;
        if (m_rows.contains(each.key()))
            continue;
        Row &row = m_rows[each.key()];
        row.state = each.value();
        start(row);
        if (row.query)
            connect(
                row.query.get(), &MDQuery::updated, this,
                [this, name = each.key()](const auto &added, const auto &, const auto &removed) {
                    update(name, added, removed);
                });
    }
    tell();
}

void KPRowCounts::Worker::start(Row &row)
{
    const KPSearchState::Ptr state = KPSearcher::allDocumentsOf(row.state);
    if (state->isFileListSearch() || state->isFinderListing())
        return;
    KPIndexFilter filter(state);
    const KPIndexFilter::Scope scope = filter.scope();
    if (filter.needsRecord())
        return;
    if (filter.findsNothing() || (scope.folders.isEmpty() && !scope.everywhere)) {
        row.count = 0;
        return;
    }
    auto query = MDQuery::create(m_source, filter.text());
    if (!query)
        return;
    row.query = *std::move(query);
    if (!scope.everywhere)
        row.query->setSearchScope(KPIndexFilter::reduced(scope.folders));
    row.query->execute(MDQuery::WantsUpdates | MDQuery::Synchronous);
    count(row);
}

void KPRowCounts::Worker::count(Row &row) const
{
    qsizetype found = 0;
    for (qsizetype i = 0; i < row.query->resultCount(); ++i)
        found += isDocument(row.query->itemAt(i)) ? 1 : 0;
    row.count = found;
}

void KPRowCounts::Worker::update(const QString &name, const QList<IndexItem> &added,
                                 const QList<IndexItem> &removed)
{
    const auto row = m_rows.find(name);
    if (row == m_rows.end() || !row->second.count)
        return;
    judge(added.constData(), static_cast<size_t>(added.size()));
    qsizetype difference = 0;
    for (const IndexItem item : added)
        difference += isDocument(item) ? 1 : 0;
    for (const IndexItem item : removed)
        difference -= isDocument(item) ? 1 : 0;
    if (difference == 0)
        return;
    *row->second.count += difference;
    tell();
}

void KPRowCounts::Worker::tell()
{
    Counts counts;
    for (const auto &[name, row] : m_rows)
        counts.insert(name, row.count);
    {
        const XPLocker lock(m_owner.m_mutex);
        m_owner.m_found = counts;
        if (std::exchange(m_owner.m_isWaiting, true))
            return;
    }
    Q_EMIT m_owner.countsWaiting(KPRowCounts::QPrivateSignal());
}

// --- Main thread

KPRowCounts::KPRowCounts(IndexSource &source, QObject *parent)
    : QObject(parent), m_worker(new Worker(*this, source))
{
    m_worker->moveToThread(&m_thread);
    // Nice: the counts may take time, what a person waits for may not.
    connect(&m_thread, &QThread::started, m_worker,
            [] { setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), 15); });
    connect(this, &KPRowCounts::rowsWaiting, m_worker, [worker = m_worker] { worker->takeRows(); });
    connect(this, &KPRowCounts::countsWaiting, this, &KPRowCounts::takeCounts,
            Qt::QueuedConnection);
    // Its queries end where they run.
    connect(&m_thread, &QThread::finished, m_worker, &QObject::deleteLater);
    m_thread.setObjectName(QStringLiteral("row counts"));
    m_thread.start();
}

KPRowCounts::~KPRowCounts()
{
    m_isEnding = true;
    m_thread.quit();
    m_thread.wait();
}

void KPRowCounts::setRows(const Rows &rows)
{
    {
        const XPLocker lock(m_mutex);
        m_wanted = rows;
    }
    Q_EMIT rowsWaiting(QPrivateSignal());
}

void KPRowCounts::takeCounts()
{
    {
        const XPLocker lock(m_mutex);
        m_isWaiting = false;
        m_counts = m_found;
    }
    Q_EMIT countsChanged();
}

#include "KPRowCounts.h"

#include "IndexLook.h"
#include "IndexSettings.h"
#include "IndexSource.h"
#include "KPIndexFilter.h"
#include "KPSearcher.h"
#include "MDQuery.h"
#include "XPPath.h"

#include <algorithm>
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

    // Of an item that is gone it stays what it was.
    enum class Verdict : quint8 { Unknown, NoDocument, Document };

    bool isEnding() const { return m_owner.m_isEnding; }
    void learnDocuments();
    Verdict judged(const IndexLook &look, IndexItem item) const;
    Verdict &verdict(IndexItem item);
    void learn(const IndexItem *items, size_t count);
    void judgeAgain(const QList<IndexItem> &items);
    qsizetype documentsAmong(const QList<IndexItem> &items);
    void start(Row &row);
    void count(Row &row);
    void update(const QString &name, const QList<IndexItem> &added,
                const QList<IndexItem> &removed);
    void tell() XP_EXCLUDES(m_owner.m_mutex);

    KPRowCounts &m_owner;
    IndexSource &m_source;
    std::unique_ptr<KPIndexFilter> m_filter;
    std::unique_ptr<MDQuery> m_files;
    // By item. A row's count is the sum over what its query holds, at any time: a query's news is
    // counted by the verdicts of that moment, a new verdict in all rows that hold the item.
    std::vector<Verdict> m_verdicts;
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
    // A file that is renamed may become a document, or cease to be one.
    connect(m_files.get(), &MDQuery::updated, this,
            [this](const auto &added, const auto &changed, const auto &) {
                judgeAgain(added + changed);
            });
    m_files->execute(MDQuery::WantsUpdates | MDQuery::Synchronous);
    std::vector<IndexItem> items;
    for (qsizetype i = 0; i < m_files->resultCount(); ++i)
        items.push_back(m_files->itemAt(i));
    learn(items.data(), items.size());
}

KPRowCounts::Worker::Verdict KPRowCounts::Worker::judged(const IndexLook &look,
                                                         IndexItem item) const
{
    const auto row = look.at(item);
    if (!row)
        return Verdict::Unknown;
    const QByteArray path = row->path();
    const XPFileInfo info = row->info();
    const QString type = info.isDirectory() ? row->type() : QString();
    return m_filter->mayHold(path, XPPath::decode(path), info, type) ? Verdict::Document
                                                                     : Verdict::NoDocument;
}

KPRowCounts::Worker::Verdict &KPRowCounts::Worker::verdict(IndexItem item)
{
    if (item >= m_verdicts.size())
        m_verdicts.resize(std::max<size_t>(item + 1, m_verdicts.size() * 5 / 4));
    return m_verdicts[item];
}

// Those of which nothing is known yet.
void KPRowCounts::Worker::learn(const IndexItem *items, size_t count)
{
    constexpr size_t atOnce = 4096; // the index is let go in between
    for (size_t first = 0; first < count && !isEnding(); first += atOnce) {
        const IndexLook look(m_source);
        for (size_t i = first; i < std::min(first + atOnce, count); ++i) {
            Verdict &known = verdict(items[i]);
            if (known == Verdict::Unknown)
                known = judged(look, items[i]);
        }
    }
}

void KPRowCounts::Worker::judgeAgain(const QList<IndexItem> &items)
{
    QList<IndexItem> turned;
    {
        const IndexLook look(m_source);
        for (const IndexItem item : items) {
            Verdict &known = verdict(item);
            const Verdict now = judged(look, item);
            if (now == Verdict::Unknown || now == known)
                continue;
            if (std::exchange(known, now) != Verdict::Unknown)
                turned.append(item);
        }
    }
    for (auto &[name, row] : m_rows) {
        for (const IndexItem item : turned) {
            if (row.count && row.query && row.query->holds(item))
                *row.count += verdict(item) == Verdict::Document ? 1 : -1;
        }
    }
    if (!turned.isEmpty())
        tell();
}

qsizetype KPRowCounts::Worker::documentsAmong(const QList<IndexItem> &items)
{
    return std::count_if(items.begin(), items.end(),
                         [this](IndexItem item) { return verdict(item) == Verdict::Document; });
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
    const KPSearchState::Ptr state = KPSearcher::shownOf(row.state);
    if (state->isFileListSearch() || state->isFinderListing())
        return;
    KPIndexFilter filter(state);
    const KPIndexFilter::Scope &scope = filter.scope();
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

void KPRowCounts::Worker::count(Row &row)
{
    QList<IndexItem> items;
    items.reserve(row.query->resultCount());
    for (qsizetype i = 0; i < row.query->resultCount(); ++i)
        items.append(row.query->itemAt(i));
    // Some may have come since all files were looked at.
    learn(items.constData(), static_cast<size_t>(items.size()));
    row.count = documentsAmong(items);
}

void KPRowCounts::Worker::update(const QString &name, const QList<IndexItem> &added,
                                 const QList<IndexItem> &removed)
{
    const auto row = m_rows.find(name);
    if (row == m_rows.end() || !row->second.count)
        return;
    learn(added.constData(), static_cast<size_t>(added.size()));
    const qsizetype difference = documentsAmong(added) - documentsAmong(removed);
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

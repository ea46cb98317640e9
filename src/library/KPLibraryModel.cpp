#include "KPLibraryModel.h"

#include "KPDocCache.h"
#include "XPPath.h"

#include <algorithm>

// Above it, telling views of each run would cost more than one new layout.
static constexpr size_t fewRuns = 32;

KPLibraryModel::KPLibraryModel(KPSearcher *searcher, QObject *parent) : QAbstractListModel(parent)
{
    connect(searcher, &KPSearcher::delivered, this, &KPLibraryModel::take);
    if (searcher->currentDelivery())
        take(searcher->currentDelivery());
    m_metaDataChanged.setSingleShot(true);
    m_metaDataChanged.setInterval(0);
    connect(&m_metaDataChanged, &QTimer::timeout, this, [this] {
        if (rowCount() > 0)
            showChanged({{0, rowCount()}});
    });
    observe();
}

KPLibraryModel::~KPLibraryModel() = default;

// What records say may change without the search: by a cache that hears of it first, or as
// this program wrote it just now.
void KPLibraryModel::observe()
{
    for (const QString &name :
         {QStringLiteral("KPNotificationDocumentTagsChanged"),
          QStringLiteral("KPNotificationDocumentRatingChanged"), KPDoc::didChangeNotification})
        m_observations.push_back(XPNotificationCenter::instance().addObserver(
            name, [this](const XPNotification &) { m_metaDataChanged.start(); }));
}

int KPLibraryModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_docs->size());
}

Qt::ItemFlags KPLibraryModel::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags flags = QAbstractListModel::flags(index);
    return index.isValid() ? flags | Qt::ItemIsDragEnabled : Qt::NoItemFlags;
}

// Views ask for neighbours.
int KPLibraryModel::rowOf(const KPDoc *doc) const
{
    const auto begin = m_docs->cbegin();
    const auto start = begin + std::min(m_lastFound, rowCount());
    auto found = std::find(start, m_docs->cend(), doc);
    if (found == m_docs->cend()) {
        found = std::find(begin, start, doc);
        if (found == start)
            return -1;
    }
    m_lastFound = static_cast<int>(found - begin);
    return m_lastFound;
}

QModelIndex KPLibraryModel::indexForPath(const QString &path) const
{
    const KPDoc *doc = KPDocCache::docAtPathIfExists(path);
    const int row = doc != nullptr ? rowOf(doc) : -1;
    return row < 0 ? QModelIndex() : index(row);
}

int KPLibraryModel::groupOfRow(int row) const
{
    if (!m_groups)
        return -1;
    const auto after =
        std::upper_bound(m_groups->runs.begin(), m_groups->runs.end(), row,
                         [](int wanted, const auto &run) { return wanted < run.first; });
    return static_cast<int>(after - m_groups->runs.begin()) - 1;
}

// Deliveries.

void KPLibraryModel::take(const KPResultsDelivery::Ptr &delivery)
{
    const Rows now = delivery ? delivery->documents.docs : std::make_shared<const KPDocArray>();
    if (!delivery || delivery->rows.before != m_docs) {
        beginResetModel();
        m_docs = now;
        endResetModel();
    } else {
        const KPRowChanges &changes = delivery->rows;
        if (changes.kept.empty() && changes.removed.size() + changes.inserted.size() <= fewRuns)
            takeFew(changes, now);
        else
            takeMany(changes, now);
        showChanged(changes.changed);
    }
    m_delivery = delivery;
    m_groups = delivery ? delivery->documents.groups : nullptr;
    Q_EMIT groupsChanged();
}

void KPLibraryModel::takeFew(const KPRowChanges &changes, const Rows &now)
{
    const bool isOne = changes.removed.size() + changes.inserted.size() == 1;
    const auto copy = [&] { return isOne ? nullptr : std::make_shared<KPDocArray>(*m_docs); };
    for (auto run = changes.removed.rbegin(); run != changes.removed.rend(); ++run) {
        const auto rows = copy();
        beginRemoveRows({}, run->first, run->first + run->count - 1);
        if (rows)
            rows->erase(rows->begin() + run->first, rows->begin() + run->first + run->count);
        m_docs = rows ? rows : now;
        endRemoveRows();
    }
    for (const Run &run : changes.inserted) {
        const auto from = now->begin() + run.first;
        const auto rows = copy();
        beginInsertRows({}, run.first, run.first + run.count - 1);
        if (rows)
            rows->insert(rows->begin() + run.first, from, from + run.count);
        m_docs = rows ? rows : now;
        endInsertRows();
    }
    m_docs = now; // the same
}

// One layout that has what goes behind what stays, one removal, one insertion behind that, and one
// layout again.
void KPLibraryModel::takeMany(const KPRowChanges &changes, const Rows &now)
{
    std::vector<int> after = changes.rowsAfter();
    std::vector<int> staying(now->size(), -1); // the old row, by the new one
    for (size_t row = 0; row < after.size(); ++row) {
        if (after[row] >= 0)
            staying[static_cast<size_t>(after[row])] = static_cast<int>(row);
    }
    auto rows = std::make_shared<KPDocArray>();
    std::vector<int> next; // the row at last, of each that stays
    std::vector<int> places(after.size());
    for (size_t row = 0; row < staying.size(); ++row) {
        if (staying[row] < 0)
            continue;
        places[static_cast<size_t>(staying[row])] = static_cast<int>(rows->size());
        rows->push_back((*now)[row]);
        next.push_back(static_cast<int>(row));
    }
    const auto kept = static_cast<std::ptrdiff_t>(rows->size());
    for (size_t row = 0; row < after.size(); ++row) {
        if (after[row] >= 0)
            continue;
        places[row] = static_cast<int>(rows->size());
        rows->push_back((*m_docs)[row]);
    }
    rearrange(rows, places);
    if (const auto count = static_cast<std::ptrdiff_t>(rows->size()); count > kept) {
        beginRemoveRows({}, static_cast<int>(kept), static_cast<int>(count) - 1);
        m_docs = std::make_shared<const KPDocArray>(rows->begin(), rows->begin() + kept);
        endRemoveRows();
    }
    if (now->size() == static_cast<size_t>(kept)) {
        m_docs = now;
        return;
    }
    auto all = std::make_shared<KPDocArray>(*m_docs);
    for (size_t row = 0; row < staying.size(); ++row) {
        if (staying[row] >= 0)
            continue;
        all->push_back((*now)[row]);
        next.push_back(static_cast<int>(row));
    }
    beginInsertRows({}, static_cast<int>(kept), static_cast<int>(all->size()) - 1);
    m_docs = std::move(all);
    endInsertRows();
    rearrange(now, next);
}

void KPLibraryModel::rearrange(Rows rows, const std::vector<int> &after)
{
    if (std::is_sorted(after.begin(), after.end())) {
        m_docs = std::move(rows); // the same
        return;
    }
    Q_EMIT layoutAboutToBeChanged({}, VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    m_docs = std::move(rows);
    QModelIndexList now;
    now.reserve(before.size());
    for (const QModelIndex &each : before)
        now.append(index(after[static_cast<size_t>(each.row())]));
    changePersistentIndexList(before, now);
    Q_EMIT layoutChanged({}, VerticalSortHint);
}

void KPLibraryModel::showChanged(const std::vector<Run> &runs)
{
    if (runs.empty())
        return;
    const auto tell = [this](int first, int last) {
        Q_EMIT dataChanged(index(first), index(last));
    };
    if (runs.size() > fewRuns) {
        tell(runs.front().first, runs.back().first + runs.back().count - 1);
        return;
    }
    for (const Run &run : runs)
        tell(run.first, run.first + run.count - 1);
}

QStringList KPLibraryModel::knownTags() const
{
    if (!m_delivery)
        return {};
    const KPResultCounts::TagTable &counts = m_delivery->counts.userTags();
    QList<KPTagName *> known = counts.keys();
    std::sort(known.begin(), known.end(), [&](KPTagName *a, KPTagName *b) {
        const qsizetype first = counts.value(a);
        const qsizetype second = counts.value(b);
        return first != second ? first > second : a->keyName() < b->keyName();
    });
    QStringList tags;
    for (const KPTagName *tag : std::as_const(known))
        tags.append(tag->displayName());
    return tags;
}

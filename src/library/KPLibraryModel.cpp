#include "KPLibraryModel.h"

#include "XPPath.h"
#include "XPText.h"

#include <algorithm>
#include <chrono>

using namespace std::chrono_literals;

KPLibraryModel::KPLibraryModel(KPResultSource *source, QObject *parent) : QAbstractListModel(parent)
{
    m_gathering.setSingleShot(true);
    m_gathering.setInterval(0);
    connect(&m_gathering, &QTimer::timeout, this, &KPLibraryModel::takeGathered);
    connect(source, &KPResultSource::resultsReset, this, &KPLibraryModel::reset);
    connect(source, &KPResultSource::documentsAdded, this, &KPLibraryModel::gather);
    connect(source, &KPResultSource::documentsChanged, this, &KPLibraryModel::take);
    connect(source, &KPResultSource::documentsRemoved, this, &KPLibraryModel::remove);
    connect(source, &KPResultSource::finished, this, &KPLibraryModel::takeGathered);
}

KPLibraryModel::~KPLibraryModel() = default;

int KPLibraryModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_documents.size());
}

const KPShownDocument &KPLibraryModel::document(int row) const
{
    return m_documents[static_cast<size_t>(row)]->document;
}

QModelIndex KPLibraryModel::indexForPath(const QString &path) const
{
    const KPOrderedDocument *found = m_byPath.value(path);
    return found ? index(found->row) : QModelIndex();
}

Qt::ItemFlags KPLibraryModel::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags flags = QAbstractListModel::flags(index);
    return index.isValid() ? flags | Qt::ItemIsDragEnabled : Qt::NoItemFlags;
}

void KPLibraryModel::setOrder(const KPDocOrder &order)
{
    if (order == m_order)
        return;
    takeGathered();
    m_order = order;
    sortDocuments();
}

// Changes.

void KPLibraryModel::reset()
{
    beginResetModel();
    m_gathering.stop();
    m_gathering.setInterval(0);
    m_gathered.clear();
    m_byPath.clear();
    m_documents.clear();
    endResetModel();
}

void KPLibraryModel::gather(const QList<KPFoundDocument> &documents)
{
    m_gathered.append(documents);
    if (!m_gathering.isActive())
        m_gathering.start();
}

// The next pass waits several times as long as this one took: merging never fills the main thread.
void KPLibraryModel::takeGathered()
{
    m_gathering.stop();
    if (m_gathered.isEmpty())
        return;
    QElapsedTimer timer;
    timer.start();
    append(std::exchange(m_gathered, {}));
    m_gathering.setInterval(
        std::clamp(std::chrono::milliseconds(4 * timer.elapsed()), 30ms, 1000ms));
}

void KPLibraryModel::append(const QList<KPFoundDocument> &documents)
{
    QList<KPShownDocument> known;
    std::vector<Document> added;
    added.reserve(static_cast<size_t>(documents.size()));
    for (const KPFoundDocument &found : documents) {
        const KPShownDocument shown(found);
        if (m_byPath.contains(shown.path)) {
            known.append(shown);
            continue;
        }
        added.push_back(std::make_unique<KPOrderedDocument>(shown, m_collator));
        m_byPath.insert(shown.path, added.back().get());
    }
    if (!added.empty()) {
        const auto oldCount = m_documents.size();
        beginInsertRows({}, rowCount(), rowCount() + static_cast<int>(added.size()) - 1);
        std::move(added.begin(), added.end(), std::back_inserter(m_documents));
        for (size_t row = oldCount; row < m_documents.size(); ++row)
            m_documents[row]->row = static_cast<int>(row);
        endInsertRows();
        sortDocuments();
    }
    if (!known.isEmpty())
        change(known);
}

void KPLibraryModel::update(KPOrderedDocument &old, const KPShownDocument &now, bool *moved)
{
    KPOrderedDocument changed(now, m_collator);
    changed.row = old.row;
    *moved = *moved || kpComesBefore(m_order, old, changed) || kpComesBefore(m_order, changed, old);
    old = std::move(changed);
}

void KPLibraryModel::take(const QList<KPFoundDocument> &documents)
{
    QList<KPShownDocument> shown;
    for (const KPFoundDocument &found : documents)
        shown.append(KPShownDocument(found));
    change(shown);
}

void KPLibraryModel::change(const QList<KPShownDocument> &documents)
{
    takeGathered();
    bool moved = false;
    int first = rowCount();
    int last = -1;
    for (const KPShownDocument &now : documents) {
        KPOrderedDocument *old = m_byPath.value(now.path);
        if (!old)
            continue;
        update(*old, now, &moved);
        first = std::min(first, old->row);
        last = std::max(last, old->row);
    }
    if (last < 0)
        return;
    Q_EMIT dataChanged(index(first), index(last));
    if (moved)
        sortDocuments();
}

// What goes is moved to the end first: one removed range, however scattered.
void KPLibraryModel::remove(const QStringList &paths)
{
    takeGathered();
    std::vector<bool> goes(m_documents.size(), false);
    int count = 0;
    for (const QString &path : paths) {
        if (const KPOrderedDocument *old = m_byPath.take(path)) {
            goes[static_cast<size_t>(old->row)] = true;
            ++count;
        }
    }
    if (!count)
        return;
    rearrange([&](std::vector<Document> &documents) {
        std::stable_partition(documents.begin(), documents.end(), [&](const Document &each) {
            return !goes[static_cast<size_t>(each->row)];
        });
    });
    beginRemoveRows({}, rowCount() - count, rowCount() - 1);
    m_documents.resize(m_documents.size() - static_cast<size_t>(count));
    endRemoveRows();
}

template <typename Arrange>
void KPLibraryModel::rearrange(Arrange arrange)
{
    Q_EMIT layoutAboutToBeChanged({}, VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    std::vector<const KPOrderedDocument *> kept;
    for (const QModelIndex &each : before)
        kept.push_back(m_documents[static_cast<size_t>(each.row())].get());
    arrange(m_documents);
    for (size_t row = 0; row < m_documents.size(); ++row)
        m_documents[row]->row = static_cast<int>(row);
    QModelIndexList after;
    for (const KPOrderedDocument *each : kept)
        after.append(index(each->row));
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged({}, VerticalSortHint);
}

void KPLibraryModel::sortDocuments()
{
    const auto comesBefore = [this](const Document &a, const Document &b) {
        return kpComesBefore(m_order, *a, *b);
    };
    if (std::is_sorted(m_documents.begin(), m_documents.end(), comesBefore))
        return;
    // Mostly a sorted run with new ones behind it: those are sorted and merged.
    rearrange([&](std::vector<Document> &documents) {
        const auto run = std::is_sorted_until(documents.begin(), documents.end(), comesBefore);
        std::sort(run, documents.end(), comesBefore);
        std::inplace_merge(documents.begin(), run, documents.end(), comesBefore);
    });
}

// Our own edits.

void KPLibraryModel::setTags(const QHash<QString, QStringList> &tagsByPath)
{
    QList<KPShownDocument> changed;
    for (auto each = tagsByPath.begin(); each != tagsByPath.end(); ++each) {
        if (const KPOrderedDocument *old = m_byPath.value(each.key())) {
            changed.append(old->document);
            changed.last().tags = each.value();
        }
    }
    change(changed);
}

void KPLibraryModel::setRatings(const QHash<QString, double> &ratingsByPath)
{
    QList<KPShownDocument> changed;
    for (auto each = ratingsByPath.begin(); each != ratingsByPath.end(); ++each) {
        if (const KPOrderedDocument *old = m_byPath.value(each.key())) {
            changed.append(old->document);
            changed.last().rating = each.value();
        }
    }
    change(changed);
}

QStringList KPLibraryModel::knownTags() const
{
    struct Use
    {
        QString spelling;
        int count = 0;
    };
    QHash<QString, QString> lower; // most tags are on many documents: fold each spelling once
    QHash<QString, Use> uses;
    for (const Document &each : m_documents) {
        for (const QString &tag : each->document.tags) {
            auto folded = lower.find(tag);
            if (folded == lower.end())
                folded = lower.insert(tag, lowerCase(decomposed(tag)));
            Use &use = uses[*folded];
            use.spelling = use.count++ ? use.spelling : tag;
        }
    }
    QList<Use> sorted = uses.values();
    std::sort(sorted.begin(), sorted.end(), [](const Use &a, const Use &b) {
        return a.count != b.count ? a.count > b.count : a.spelling < b.spelling;
    });
    QStringList tags;
    for (const Use &use : sorted)
        tags.append(use.spelling);
    return tags;
}

QString KPLibraryModel::displayName(const QString &path)
{
    return XPPath::printable(XPPath::fileName(path));
}

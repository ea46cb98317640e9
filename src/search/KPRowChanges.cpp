#include "KPRowChanges.h"

#include <QHash>
#include <QSet>
#include <algorithm>

using Run = KPRowChanges::Run;

static void append(std::vector<Run> &runs, size_t row)
{
    const auto at = static_cast<int>(row);
    if (!runs.empty() && runs.back().first + runs.back().count == at)
        ++runs.back().count;
    else
        runs.push_back({at, 1});
}

std::vector<int> KPRowChanges::rowsAfter() const
{
    if (!kept.empty())
        return kept;
    std::vector<int> rows(before->size());
    auto gone = removed.cbegin();
    auto come = inserted.cbegin();
    int now = 0;
    for (int row = 0; row < static_cast<int>(rows.size()); ++row) {
        if (gone != removed.cend() && row >= gone->first + gone->count)
            ++gone;
        if (gone != removed.cend() && row >= gone->first) {
            rows[static_cast<size_t>(row)] = -1;
            continue;
        }
        for (; come != inserted.cend() && come->first == now; ++come)
            now += come->count;
        rows[static_cast<size_t>(row)] = now++;
    }
    return rows;
}

namespace {

// What is to be expected of a document, by the difference that was told.
class Expected
{
public:
    explicit Expected(const KPResultsDifference &difference)
        : m_removed(docsOf(difference.removed)), m_changed(docsOf(difference.changed)),
          m_added(difference.added.begin(), difference.added.end())
    {
    }
    bool goes(KPDoc *doc) const { return m_removed.contains(doc); }
    bool isChanged(KPDoc *doc) const { return !m_changed.isEmpty() && m_changed.contains(doc); }
    bool comes(KPDoc *doc) const { return m_added.contains(doc); }

private:
    static QSet<KPDoc *> docsOf(const std::vector<KPResultsDifference::Told> &list)
    {
        QSet<KPDoc *> docs;
        for (const auto &told : list)
            docs.insert(told.doc);
        return docs;
    }
    const QSet<KPDoc *> m_removed, m_changed, m_added;
};

} // namespace

// Where documents changed places: the new row of each old one.
static void keepByLookingUp(KPRowChanges &changes, const KPDocArray &now)
{
    QHash<const KPDoc *, int> rows;
    rows.reserve(static_cast<qsizetype>(now.size()));
    for (size_t row = 0; row < now.size(); ++row)
        rows.insert(now[row], static_cast<int>(row));
    std::vector<bool> isOld(now.size(), false);
    bool isInOrder = true;
    int last = -1;
    changes.removed.clear();
    changes.inserted.clear();
    const KPDocArray &before = *changes.before;
    changes.kept.reserve(before.size());
    for (size_t row = 0; row < before.size(); ++row) {
        const int after = rows.value(before[row], -1);
        changes.kept.push_back(after);
        if (after < 0) {
            append(changes.removed, row);
            continue;
        }
        isOld[static_cast<size_t>(after)] = true;
        isInOrder = isInOrder && after > last;
        last = after;
    }
    for (size_t row = 0; row < now.size(); ++row) {
        if (!isOld[row])
            append(changes.inserted, row);
    }
    if (isInOrder)
        changes.kept.clear();
}

// False: some that did not change changed places, or all of it is another difference.
static bool compare(KPRowChanges &changes, const KPDocArray &now, const Expected &expected)
{
    const KPDocArray &before = *changes.before;
    size_t old = 0;
    size_t row = 0;
    bool moves = false;
    while (old < before.size() || row < now.size()) {
        if (old < before.size() && row < now.size() && before[old] == now[row]) {
            ++old;
            ++row;
        } else if (old < before.size() && expected.goes(before[old])) {
            append(changes.removed, old++);
        } else if (row < now.size() && expected.comes(now[row])) {
            append(changes.inserted, row++);
        } else if (old < before.size() && expected.isChanged(before[old])) {
            moves = true;
            ++old;
        } else if (row < now.size() && expected.isChanged(now[row])) {
            moves = true;
            ++row;
        } else {
            return false;
        }
    }
    return !moves;
}

KPRowChanges KPRowChanges::between(const std::shared_ptr<const KPDocArray> &before,
                                   const KPDocArray &now, const KPResultsDifference &difference)
{
    KPRowChanges changes;
    changes.before = before;
    const auto count = static_cast<int>(now.size());
    if (before->empty() || now.empty()) {
        if (!before->empty())
            changes.removed.push_back({0, static_cast<int>(before->size())});
        if (count > 0)
            changes.inserted.push_back({0, count});
        return changes;
    }
    if (difference.isReset) {
        keepByLookingUp(changes, now);
        if (changes.inserted != std::vector<Run>{{0, count}})
            changes.changed.push_back({0, count});
        return changes;
    }
    const Expected expected(difference);
    if (!compare(changes, now, expected))
        keepByLookingUp(changes, now);
    for (size_t row = 0; row < now.size() && !difference.changed.empty(); ++row) {
        if (expected.isChanged(now[row]))
            append(changes.changed, row);
    }
    return changes;
}

#include "KPCloudContents.h"

#include "KPTagClicks.h"
#include "XPText.h"

#include <QCollator>
#include <QCoreApplication>
#include <QSet>
#include <algorithm>
#include <cmath>
#include <numeric>

KPSearcher::TagSets KPCloudContents::sortedTags(const KPSearcher &searcher, int tagType)
{
    KPSearcher::TagSets sets;
    if (tagType == fileTypes)
        sets = searcher.fileTypeTagsSorted();
    else if (tagType == userTags)
        sets = searcher.zenTagsSorted();
    std::stable_sort(sets.begin(), sets.end(),
                     [](const auto &a, const auto &b) { return a.count > b.count; });
    return sets;
}

KPSearcher::TagSets KPCloudContents::filterOutUnwantedTags(const KPSearcher::TagSets &tags,
                                                           int tagType, const Wishes &wishes)
{
    // "Unknown type: %1": what stands before the name.
    const QString unknown =
        qtTrId("KPUnknownUTITagTemplate").section(QStringLiteral("%1"), 0, 0).trimmed();
    const QString filter = wishes.filterString.toLower();
    const QSet<KPTagName *> never(wishes.never.begin(), wishes.never.end());
    KPSearcher::TagSets wanted;
    for (const KPSearcher::TagSet &set : tags) {
        // One that is typed is shown, so that its menu can bring it back.
        if ((filter.isEmpty() && never.contains(set.tag)) || !set.tag->passesSearch(filter))
            continue;
        if (tagType == fileTypes && !unknown.isEmpty() &&
            set.tag->displayName().startsWith(unknown))
            continue;
        wanted.append(set);
    }
    return wanted;
}

static KPSearcher::TagSets withAlways(KPSearcher::TagSets sets, const KPTagName::Tags &always)
{
    QSet<KPTagName *> present;
    for (const KPSearcher::TagSet &set : sets)
        present.insert(set.tag);
    KPSearcher::TagSets missing;
    for (KPTagName *tag : always) {
        if (!present.contains(tag))
            missing.append({tag, 0});
    }
    // Ahead of the least frequent: what the user wants is not what falls away first.
    return missing + sets;
}

KPCloudContents::KPCloudContents(const KPSearcher::TagSets &sorted, int tagType,
                                 const Wishes &wishes, const KPSearchState::Ptr &state)
{
    const KPSearcher::TagSets wanted =
        filterOutUnwantedTags(withAlways(sorted, wishes.always), tagType, wishes);
    m_candidates.reserve(std::min(wanted.size(), mostCandidates));
    for (const KPSearcher::TagSet &set : wanted.first(std::min(wanted.size(), mostCandidates)))
        m_candidates.append({set.tag->keyName(), set.tag->displayName(),
                             set.tag->tagStringForSorting(), static_cast<double>(set.count),
                             KPTagClicks::isSelected(state, set.tag)});
    QCollator collator;
    collator.setNumericMode(true);
    std::vector<QCollatorSortKey> keys;
    keys.reserve(static_cast<size_t>(m_candidates.size()));
    for (const XPCloudItem &item : m_candidates)
        keys.push_back(collator.sortKey(lowerCase(item.tagStringForSorting)));
    m_byName.resize(m_candidates.size());
    std::iota(m_byName.begin(), m_byName.end(), 0);
    std::stable_sort(m_byName.begin(), m_byName.end(), [&](qsizetype a, qsizetype b) {
        return keys[static_cast<size_t>(a)] < keys[static_cast<size_t>(b)];
    });
}

QList<XPCloudItem> KPCloudContents::items(qsizetype count) const
{
    QList<XPCloudItem> items;
    items.reserve(count);
    for (const qsizetype index : m_byName) {
        if (index < count)
            items.append(m_candidates[index]);
    }
    return items;
}

void KPCloudContents::fill(XPCloudLayout &layout, double height) const
{
    constexpr int mostRounds = 10;
    qsizetype count = m_candidates.size();
    layout.setItems(items(count));
    if (layout.requiredHeightToFitAllTags() <= height)
        return;
    const auto available = static_cast<qsizetype>(std::floor(height / layout.lineHeight()));
    for (int round = 0; round < mostRounds; ++round) {
        const qsizetype needed = layout.lineCount();
        if (needed == 0 || available == needed || available - needed == 1)
            return;
        const double aLine = static_cast<double>(count) / static_cast<double>(needed);
        const double estimate =
            static_cast<double>(count) + aLine * static_cast<double>(available - needed);
        count = std::clamp<qsizetype>(static_cast<qsizetype>(estimate), 0, m_candidates.size());
        layout.setItems(items(count));
    }
}

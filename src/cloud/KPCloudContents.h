#pragma once

#include "KPSearcher.h"
#include "XPCloudLayout.h"

// Which tags a cloud shows: of those of the results, the most frequent that fit, by name.
// Threads: main, as the searcher.
class KPCloudContents
{
public:
    // The kinds of tags of a cloud, as bits of KPTagName::Type.
    static constexpr int fileTypes = KPTagName::FileType;
    static constexpr int userTags = KPTagName::User | KPTagName::ReadOnly;
    static constexpr qsizetype mostCandidates = 500;

    struct Wishes
    {
        QString filterString;
        KPTagName::Tags always; // shown though no document of the results has them
        KPTagName::Tags never;  // unless the filter asks for them
    };

    // The searcher's tags of that kind, the most frequent first; none of any other kind.
    static KPSearcher::TagSets sortedTags(const KPSearcher &searcher, int tagType);

    // The candidates among `sorted`; `state` says which are selected (it may be null).
    KPCloudContents(const KPSearcher::TagSets &sorted, int tagType, const Wishes &wishes,
                    const KPSearchState::Ptr &state);

    const QList<XPCloudItem> &candidates() const { return m_candidates; } // by occurrence
    // The `count` most frequent, by name.
    QList<XPCloudItem> items(qsizetype count) const;
    // Gives the layout as many as fit into the height.
    void fill(XPCloudLayout &layout, double height) const;

private:
    // Without those that the filter, the user or the lack of a proper name keeps out.
    static KPSearcher::TagSets filterOutUnwantedTags(const KPSearcher::TagSets &tags, int tagType,
                                                     const Wishes &wishes);

    QList<XPCloudItem> m_candidates;
    QList<qsizetype> m_byName; // indexes into the candidates
};

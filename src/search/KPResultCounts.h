#pragma once

#include "KPTagName.h"
#include "XPFileInfo.h"

#include <QHash>

// How often each tag and type, and which tags together, are on the documents of a search.
//
// Copies share their tables until one of them changes: a delivery holds one.
// Threads: a value.
class KPResultCounts
{
public:
    // What one document counts for. Lists are shared, not copied.
    struct Values
    {
        KPTagName::Tags userTags;
        KPTagName::Tags keywords;
        KPTagName *type = nullptr; // may be none
        size_t facts = 0;          // not counted: differs where the file does

        static size_t factsOf(const XPFileInfo &info)
        {
            return qHashMulti(0, info.mode, info.size, info.modified, info.changed, info.inode);
        }
        bool operator==(const Values &) const = default;
    };
    using TagTable = QHash<KPTagName *, qsizetype>;
    // Lists of tags as documents have them, user's and keywords in one, each with the number of
    // documents.
    using SetTable = QHash<KPTagName::Tags, qsizetype>;

    void add(const Values &values) { count(values, 1); }
    void remove(const Values &values) { count(values, -1); }

    const TagTable &userTags() const { return m_userTags; }
    const TagTable &keywords() const { return m_keywords; }
    const TagTable &types() const { return m_types; } // each document's own, no ancestors
    // Tags on the documents that have this one, with how many of them have both.
    TagTable relatedTags(KPTagName *tag) const;

private:
    void count(const Values &values, qsizetype by);

    TagTable m_userTags, m_keywords, m_types;
    SetTable m_sets;
};

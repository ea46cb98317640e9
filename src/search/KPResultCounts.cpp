#include "KPResultCounts.h"

template <typename Table, typename Key>
static void countIn(Table &table, const Key &key, qsizetype by)
{
    const auto entry = table.find(key);
    if (entry == table.end())
        table.insert(key, by);
    else if ((*entry += by) == 0)
        table.erase(entry);
}

void KPResultCounts::count(const Values &values, qsizetype by)
{
    for (KPTagName *tag : values.userTags)
        countIn(m_userTags, tag, by);
    for (KPTagName *tag : values.keywords)
        countIn(m_keywords, tag, by);
    if (values.type != nullptr)
        countIn(m_types, values.type, by);
    if (!values.userTags.isEmpty() || !values.keywords.isEmpty())
        countIn(m_sets,
                values.keywords.isEmpty() ? values.userTags : values.userTags + values.keywords,
                by);
}

KPResultCounts::TagTable KPResultCounts::relatedTags(KPTagName *tag) const
{
    TagTable related;
    for (auto set = m_sets.cbegin(); set != m_sets.cend(); ++set) {
        if (!set.key().contains(tag))
            continue;
        for (KPTagName *other : set.key()) {
            if (other != tag)
                related[other] += set.value();
        }
    }
    return related;
}

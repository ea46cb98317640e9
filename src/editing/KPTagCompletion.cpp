#include "KPTagCompletion.h"

#include "KPTagDocuments.h"
#include "KarvexPrefs.h"
#include "KarvexTagKey.h"

#include <QSet>
#include <algorithm>

KPTagCompletion::Ptr KPTagCompletion::read()
{
    QList<Known> known;
    for (const auto &each : KPTagDocuments::allUserTags())
        known.append({each.tag, each.count});
    return std::make_shared<const KPTagCompletion>(known, KarvexPrefs::recentTags());
}

KPTagCompletion::Counts KPTagCompletion::usedWith(const QStringList &tags)
{
    constexpr qsizetype mostAsked = 5; // the last ones say most
    Counts counts;
    for (const QString &tag : tags.last(std::min(mostAsked, tags.size()))) {
        const Counts its = KPTagDocuments::tagsBeside(tag);
        for (auto each = its.cbegin(); each != its.cend(); ++each)
            counts[each.key()] += each.value();
    }
    return counts;
}

KPTagCompletion::KPTagCompletion(const QList<Known> &known, const QStringList &recent)
{
    QHash<QString, size_t> places;
    const auto add = [&](const QString &tag, qsizetype count, qsizetype recency) {
        const QString key = karvexTagKey(tag);
        if (key.isEmpty())
            return;
        if (const auto place = places.constFind(key); place != places.cend()) {
            Entry &entry = m_entries[*place];
            entry.count = std::max(entry.count, count);
            entry.recency = std::max(entry.recency, recency);
            return;
        }
        places.insert(key, m_entries.size());
        m_entries.push_back({tag, key, foldText(tag), count, recency});
    };
    for (const Known &each : known)
        add(each.tag, each.count, 0);
    qsizetype recency = recent.size();
    for (const QString &tag : recent)
        add(tag, 0, recency--);
}

QList<KPTagCompletion::Match> KPTagCompletion::matches(const QString &typed,
                                                       const QStringList &present,
                                                       const Counts &together, qsizetype most) const
{
    const QString wanted = foldText(typed);
    if (wanted.isEmpty())
        return {};
    QSet<QString> taken;
    for (const QString &tag : present)
        taken.insert(karvexTagKey(tag));
    struct Found
    {
        const Entry *entry;
        bool begins;
        qsizetype together;
    };
    std::vector<Found> found;
    for (const Entry &entry : m_entries) {
        const qsizetype at = entry.folded.indexOf(wanted);
        if (at >= 0 && !taken.contains(entry.key))
            found.push_back({&entry, at == 0, together.value(entry.key)});
    }
    const auto end = found.begin() + std::min(most, static_cast<qsizetype>(found.size()));
    std::partial_sort(found.begin(), end, found.end(), [](const Found &a, const Found &b) {
        const auto rank = [](const Found &each) {
            return std::tuple(each.begins, each.together, each.entry->recency, each.entry->count);
        };
        return rank(a) != rank(b) ? rank(a) > rank(b) : a.entry->tag < b.entry->tag;
    });
    QList<Match> matches;
    for (auto each = found.begin(); each != end; ++each)
        matches.append({each->entry->tag, each->entry->count});
    return matches;
}

// KPSearcher: the tags and types of the results, and which kinds of tags count.
#include "KPSearcher.h"
#include "UserDefaults.h"

#include <algorithm>

static KPSearcher::TagSets sortedByName(const KPResultCounts::TagTable &table)
{
    KPSearcher::TagSets sets;
    sets.reserve(table.size());
    for (auto entry = table.cbegin(); entry != table.cend(); ++entry)
        sets.append({entry.key(), entry.value()});
    std::sort(sets.begin(), sets.end(), [](const auto &a, const auto &b) {
        const int order = a.tag->compareNumerically(b.tag);
        return order != 0 ? order < 0 : a.tag->keyName() < b.tag->keyName();
    });
    return sets;
}

void KPSearcher::buildTagSets()
{
    static const KPResultCounts none;
    const KPResultCounts &counts = m_current ? m_current->counts : none;
    m_fileTypeTags = sortedByName(counts.types());
    KPResultCounts::TagTable tags;
    if (tagTypeUserEntered())
        tags = counts.userTags();
    if (tagTypeKeywords()) {
        for (auto entry = counts.keywords().cbegin(); entry != counts.keywords().cend(); ++entry)
            tags[entry.key()] += entry.value();
    }
    m_zenTags = sortedByName(tags);
    XPNotificationCenter::instance().post(tagSetsChanged);
}

KPSearcher::TagSets KPSearcher::relatedTags(KPTagName *tag) const
{
    if (!m_current)
        return {};
    TagSets sets = sortedByName(m_current->counts.relatedTags(tag));
    std::stable_sort(sets.begin(), sets.end(),
                     [](const TagSet &a, const TagSet &b) { return a.count > b.count; });
    return sets;
}

KPDoc::Docs KPSearcher::relatedDocs(KPTagName *tag,
                                    const QHash<KPTagName *, KPDoc::Docs> &dictionary,
                                    const KPDoc::Docs &constrainedTo)
{
    const QSet<KPDoc *> allowed(constrainedTo.begin(), constrainedTo.end());
    KPDoc::Docs related = dictionary.value(tag);
    related.removeIf([&](KPDoc *doc) { return !allowed.contains(doc); });
    return related;
}

QStringList KPSearcher::spotlightCommentToTagsArray(const QString &comment)
{
    const QString own = UserDefaults::standard().stringValue(QStringLiteral("KPSpotlightPrefix"));
    QStringList tags;
    for (const QString &word : comment.simplified().split(u' ', Qt::SkipEmptyParts)) {
        for (const QString &prefix : {own, QStringLiteral("@"), QStringLiteral("&")}) {
            if (prefix.isEmpty() || !word.startsWith(prefix))
                continue;
            const QString tag = KPTagName::CleanAndTrimTag(word.mid(prefix.size()));
            if (!tag.isEmpty() && !tags.contains(tag, Qt::CaseInsensitive))
                tags.append(tag);
            break;
        }
    }
    return tags;
}

// --- Settings

static const QString globalSetting = QStringLiteral("KPMurn2UseGlobalTagTypeStates");

bool KPSearcher::tagType(const QString &setting, bool own) const
{
    const UserDefaults &defaults = UserDefaults::standard();
    return defaults.boolValue(globalSetting) ? defaults.boolValue(setting) : own;
}

static void setTagType(const QString &setting, bool on, bool *own)
{
    *own = on;
    if (UserDefaults::standard().boolValue(globalSetting))
        UserDefaults::standard().setValue(setting, PropertyValue::boolean(on));
}

bool KPSearcher::tagTypeUserEntered() const
{
    return tagType(QStringLiteral("KPCloudUserEntered"), m_tagTypeUserEntered);
}

void KPSearcher::setTagTypeUserEntered(bool on)
{
    setTagType(QStringLiteral("KPCloudUserEntered"), on, &m_tagTypeUserEntered);
    buildTagSets();
}

bool KPSearcher::tagTypeKeywords() const
{
    return tagType(QStringLiteral("KPCloudKeywords"), m_tagTypeKeywords);
}

void KPSearcher::setTagTypeKeywords(bool on)
{
    setTagType(QStringLiteral("KPCloudKeywords"), on, &m_tagTypeKeywords);
    buildTagSets();
    restartSearchAction(); // a search for a tag asks the keywords too
}

bool KPSearcher::prefSearchContents()
{
    return UserDefaults::standard().boolValue(QStringLiteral("KPDoSpotlightSearches"));
}

bool KPSearcher::prefUseMetaData()
{
    return UserDefaults::standard().boolValue(QStringLiteral("KPDoMetaDataSearches"));
}

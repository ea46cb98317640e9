#include "KPTagDocuments.h"

#include "KPDocCache.h"
#include "KPDocServices.h"
#include "Karvex.h"
#include "KarvexTagKey.h"
#include "XPPrompts.h"

#include <QHash>
#include <QSet>
#include <algorithm>

// In quotes, where only these mean anything but themselves.
static QString escaped(const QString &text)
{
    QString escaped;
    for (const QChar c : text) {
        if (c == u'\\' || c == u'"' || c == u'*' || c == u'?')
            escaped += u'\\';
        escaped += c;
    }
    return escaped;
}

static bool hasTag(const XPAttributeValuePtr &held, KPTagName *tag)
{
    const auto *tags = XPAttributeOf<KPTagName::Tags>::in(held);
    return tags && tags->contains(tag);
}

// The query finds more than the tag (ß is ss there), as a stored tag need not be clean: each result
// is looked at.
static QStringList pathsWithTag(KPTagName *tag)
{
    const auto query = [&](const QString &key, const KPDocMetaData::Accept &accept) {
        const QString text = QStringLiteral("%1 == \"*%2*\"c");
        return KPDocMetaData::indexedPaths(text.arg(key, escaped(tag->keyNameActivePart())), key,
                                           accept);
    };
    const auto keywords = [&] {
        const auto accept = [&](const PropertyValue &raw) {
            return hasTag(KPDocMetaData::makeKeywordTagNames(raw), tag);
        };
        QStringList paths = query(KPDocMetaData::key(KPDocMetaData::Keywords), accept);
        if (KPDocMetaData::showsXmpKeywords())
            paths += query(KPDocMetaData::key(KPDocMetaData::XmpKeywords), accept);
        paths.removeDuplicates();
        return paths;
    };
    switch (tag->tagType()) {
    case KPTagName::User:
        return query(Karvex::tagsToSearchFor(), [&](const PropertyValue &raw) {
            return hasTag(KPDocMetaData::makeTagNames(raw), tag);
        });
    case KPTagName::ReadOnly:
        return keywords();
    case KPTagName::FileType:
        return query(QStringLiteral("kMDItemContentTypeTree"),
                     [&](const PropertyValue &raw) { return raw.strings().contains(tag->uti()); });
    default:
        return {};
    }
}

KPDoc::Docs KPTagDocuments::docsWithTag(KPTagName *tag)
{
    return KPDocCache::docsAtPaths(pathsWithTag(tag));
}

// Asks for what looks like it; `accept` looks at the stored tags.
static QStringList pathsWithText(const QString &text, const KPDocMetaData::Accept &accept)
{
    const QString query = QStringLiteral("%1 == \"*%2*\"c");
    return KPDocMetaData::indexedPaths(query.arg(Karvex::tagsToSearchFor(), escaped(text)),
                                       Karvex::tagsToSearchFor(), accept);
}

QStringList KPTagDocuments::pathsWithUserTag(const QString &tag, bool withBranch)
{
    const QString key = karvexTagKey(tag);
    return pathsWithText(key, [&](const PropertyValue &raw) {
        const QStringList tags = raw.strings();
        return std::any_of(tags.begin(), tags.end(), [&](const QString &each) {
            const QString its = karvexTagKey(each);
            return its == key || (withBranch && its.startsWith(key + u'/'));
        });
    });
}

QHash<QString, qsizetype> KPTagDocuments::tagsBeside(const QString &tag)
{
    const QString key = karvexTagKey(tag);
    QHash<QString, qsizetype> counts;
    pathsWithText(key, [&](const PropertyValue &raw) {
        QSet<QString> keys;
        for (const QString &each : raw.strings())
            keys.insert(karvexTagKey(each));
        if (!keys.remove(key))
            return false;
        for (const QString &each : std::as_const(keys))
            ++counts[each];
        return false;
    });
    return counts;
}

namespace {

struct Use
{
    QHash<QString, qsizetype> spellings;
    qsizetype count = 0;
    qsizetype branchCount = 0;
};

} // namespace

// "a/b/c" counts for itself and once for "a/b" and "a".
static void countTags(const QStringList &tags, QHash<QString, Use> *uses)
{
    QSet<QString> seen;
    QSet<QString> seenAbove;
    for (const QString &tag : tags) {
        const QString clean = KPTagName::CleanAndTrimTag(tag);
        const QString key = karvexTagKey(clean);
        if (key.isEmpty() || seen.contains(key))
            continue;
        seen.insert(key);
        Use &use = (*uses)[key];
        ++use.count;
        ++use.spellings[clean];
        for (QString above = clean; !above.isEmpty();) {
            const QString its = karvexTagKey(above);
            if (!seenAbove.contains(its)) {
                seenAbove.insert(its);
                ++(*uses)[its].branchCount;
            }
            if (above != clean && !uses->value(its).count)
                (*uses)[its].spellings.insert(above, 0);
            above.truncate(std::max<qsizetype>(0, above.lastIndexOf(u'/')));
        }
    }
}

QList<KPTagDocuments::UsedTag> KPTagDocuments::allUserTags()
{
    QHash<QString, Use> uses;
    KPDocMetaData::indexedPaths(QStringLiteral("%1 == *").arg(Karvex::tagsToSearchFor()),
                                Karvex::tagsToSearchFor(), [&](const PropertyValue &raw) {
                                    countTags(raw.strings(), &uses);
                                    return false;
                                });
    QList<UsedTag> tags;
    tags.reserve(uses.size());
    for (const Use &use : std::as_const(uses)) {
        QString best;
        for (auto each = use.spellings.cbegin(); each != use.spellings.cend(); ++each) {
            const qsizetype lead = best.isEmpty() ? -1 : use.spellings.value(best);
            if (*each > lead || (*each == lead && each.key() < best))
                best = each.key();
        }
        tags.append({best, use.count, use.branchCount});
    }
    return tags;
}

static void removeTags(const KPTagName::Tags &tags, const QStringList &paths)
    XP_REQUIRES(xpGuiThread)
{
    if (paths.isEmpty())
        return;
    KPDocServices::TagChange change;
    change.originalTags = tags;
    change.filePaths = paths;
    change.confirmWhenChangingManyFiles = true;
    KPDocServices::current().replaceOriginalTags(change);
}

void KPTagDocuments::deleteTag(KPTagName *tag, const KPDoc::Docs &fromDocs)
{
    if (tag->tagType() != KPTagName::User)
        return;
    QStringList paths;
    for (const KPDoc *doc : fromDocs) {
        if (!doc->isGone())
            paths.append(doc->filePath());
    }
    removeTags({tag}, paths);
}

void KPTagDocuments::removeTagFromAllDocuments(const KPTagName::Tags &tags)
{
    KPTagName::Tags users;
    for (KPTagName *tag : tags) {
        if (tag->tagType() == KPTagName::User)
            users.append(tag);
    }
    if (users.size() < tags.size())
        XPPrompts::current().alert(qtTrId("KPTagsReadOnly"), {});
    else if (users.isEmpty())
        XPPrompts::current().alert(qtTrId("KPNoTagsToDelete"), {});
    QStringList paths;
    for (KPTagName *tag : users)
        paths += pathsWithTag(tag);
    paths.removeDuplicates();
    removeTags(users, paths);
}

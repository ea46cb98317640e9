#include "KPTagDocuments.h"

#include "KPDocCache.h"
#include "KPDocServices.h"
#include "Karvex.h"
#include "XPPrompts.h"

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
    switch (tag->tagType()) {
    case KPTagName::User:
        return query(Karvex::tagsToSearchFor(), [&](const PropertyValue &raw) {
            return hasTag(KPDocMetaData::makeTagNames(raw), tag);
        });
    case KPTagName::ReadOnly:
        return query(QStringLiteral("kMDItemKeywords"), [&](const PropertyValue &raw) {
            return hasTag(KPDocMetaData::makeKeywordTagNames(raw), tag);
        });
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

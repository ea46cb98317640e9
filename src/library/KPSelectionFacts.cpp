#include "KPSelectionFacts.h"

#include "Karvex.h"
#include "XPText.h"

#include <QSet>

// The same rule as Karvex::getCommonUserTags(), on what the live search knows already. Documents
// without readable tags are passed over: an edit refuses them one by one.
static QStringList commonTags(const QList<KPShownDocument> &documents)
{
    QHash<QString, QString> common;
    QStringList hint;
    bool first = true;
    for (const KPShownDocument &document : documents) {
        if (!document.error.isEmpty())
            continue;
        QHash<QString, QString> own;
        for (const QString &tag : document.tags)
            own.insert(lowerCase(tag), tag);
        if (std::exchange(first, false))
            common = own;
        else
            common.removeIf([&](auto each) { return !own.contains(each.key()); });
        hint = document.tags;
        if (common.isEmpty())
            return {};
    }
    return Karvex::orderedArrayWithDict(common, hint);
}

KPSelectionFacts::KPSelectionFacts(const QList<KPShownDocument> &documents)
    : commonTags(::commonTags(documents))
{
    bool differs = false;
    for (const KPShownDocument &document : documents) {
        paths.append(document.path);
        size += document.doc->unixFileSize();
        if (!document.error.isEmpty() && !unreadable++)
            error = document.error;
        differs = differs || (rating && *rating != document.rating);
        rating = document.rating;
    }
    if (differs)
        rating.reset();
}

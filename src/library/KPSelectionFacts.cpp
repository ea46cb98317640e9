#include "KPSelectionFacts.h"

#include "Karvex.h"
#include "XPText.h"

#include <QSet>

// The same rule as Karvex::getCommonUserTags(), on what records know already. Documents without
// readable tags are passed over: an edit refuses them one by one.
static QStringList commonTags(const KPDoc::Docs &documents)
{
    QHash<QString, QString> common;
    QStringList hint;
    bool first = true;
    for (const KPDoc *document : documents) {
        if (document->unreadableMetaData())
            continue;
        QHash<QString, QString> own;
        QStringList tags;
        for (const KPTagName *tag : document->tagNamesOfTypeUserEntered()) {
            tags.append(tag->displayName());
            own.insert(lowerCase(tags.last()), tags.last());
        }
        if (std::exchange(first, false))
            common = own;
        else
            common.removeIf([&](auto each) { return !own.contains(each.key()); });
        hint = tags;
        if (common.isEmpty())
            return {};
    }
    return Karvex::orderedArrayWithDict(common, hint);
}

KPSelectionFacts::KPSelectionFacts(const KPDoc::Docs &documents)
    : commonTags(::commonTags(documents))
{
    bool differs = false;
    for (const KPDoc *document : documents) {
        paths.append(document->filePath());
        size += document->unixFileSize();
        const auto unreadableBecause = document->unreadableMetaData();
        if (unreadableBecause && unreadable++ == 0)
            error = unreadableBecause->reason();
        const double stars = document->rating();
        differs = differs || (rating && *rating != stars);
        rating = stars;
    }
    if (differs)
        rating.reset();
}

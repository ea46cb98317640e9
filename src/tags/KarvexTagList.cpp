// Karvex: tag lists as they are stored.
#include "Karvex.h"
#include "KarvexTagKey.h"

#include <QHash>
#include <QSet>

bool Karvex::validateAsArrayOfStrings(const PropertyValue &value)
{
    return value.isArrayOfStrings();
}

QStringList Karvex::decomposeArrayOfStrings(const PropertyValue &tags)
{
    QStringList result = tags.strings();
    for (QString &tag : result)
        tag = decomposed(tag);
    return result;
}

QStringList Karvex::removeDuplicateTags(const PropertyValue &tags)
{
    const QStringList hint = decomposeArrayOfStrings(tags);
    QHash<QString, QString> byKey;
    for (const QString &tag : hint)
        byKey.insert(lowerCase(tag), tag);
    return orderedArrayWithDict(byKey, hint);
}

QStringList Karvex::orderedArrayWithDict(const QHash<QString, QString> &tags,
                                         const QStringList &hint)
{
    QHash<QString, QString> left = tags;
    QStringList result;
    result.reserve(left.size());
    for (const QString &tag : hint) {
        if (left.remove(karvexTagKey(tag)) > 0)
            result.append(tag);
    }
    return result + left.values();
}

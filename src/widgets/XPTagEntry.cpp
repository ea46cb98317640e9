#include "XPTagEntry.h"

#include "KPTagName.h"
#include "XPText.h"

#include <QSet>

static QString key(const QString &tag)
{
    return lowerCase(decomposed(tag));
}

QStringList XPTagEntry::tags(const QString &text, const QStringList &present,
                             const QStringList &known)
{
    // From here on they have a spelling.
    (void)KPTagName::tagNamesForUserEnteredTags(known);
    QSet<QString> taken;
    for (const QString &tag : present)
        taken.insert(key(tag));
    QStringList result;
    for (const QString &piece : KPTagName::cleanUpTagStringArray({text})) {
        const QString tag = KPTagName::CleanAndTrimTag(piece);
        if (tag.trimmed().isEmpty() || taken.contains(key(tag)))
            continue;
        taken.insert(key(tag));
        result.append(tag);
    }
    return KPTagName::fixCaseForUserEnteredTags(result);
}

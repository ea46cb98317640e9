#include "XPTagEntry.h"

#include "KPTagName.h"
#include "UserDefaults.h"
#include "XPText.h"

#include <QCoreApplication>
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

bool XPTagEntry::usesCommas()
{
    return UserDefaults::standard().boolValue(QStringLiteral("KPUseCommas"));
}

QString XPTagEntry::hint()
{
    return usesCommas() ? qtTrId("KPTagsHintCommas") : qtTrId("KPTagsHintQuotes");
}

XPTagEntry::Typed XPTagEntry::split(const QString &text, bool useCommas)
{
    Typed typed;
    bool isQuoted = false;
    for (const QChar c : text) {
        const bool endsLine = c == u'\n' || c == u'\r';
        if (!useCommas && c == u'"')
            isQuoted = !isQuoted;
        const bool separates = endsLine || (!isQuoted && (c == u',' || c == u'\t')) ||
                               (!isQuoted && !useCommas && c == u' ');
        if (!separates) {
            typed.rest += c;
            continue;
        }
        if (const QString tag = tagOfTyped(typed.rest); !tag.isEmpty())
            typed.finished.append(tag);
        typed.rest.clear();
        isQuoted = false;
    }
    return typed;
}

QString XPTagEntry::typed(const QString &tag)
{
    const QString clean = KPTagName::CleanAndTrimTag(tag);
    return clean.contains(u' ') ? u'"' + clean + u'"' : clean;
}

QString XPTagEntry::tagOfTyped(const QString &text)
{
    QString tag = text;
    if (tag.startsWith(u'"') && tag.endsWith(u'"'))
        tag.remove(u'"');
    return KPTagName::CleanAndTrimTag(tag);
}

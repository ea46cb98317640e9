#include "KPTagRename.h"

#include "KarvexTagKey.h"

#include <QJsonArray>
#include <QSet>
#include <algorithm>

const QString KPTagRename::renamedNotification = QStringLiteral("KPNotificationTagRenamed");

static const QString fromKey = QStringLiteral("from");
static const QString toKey = QStringLiteral("to");
static const QString branchKey = QStringLiteral("withBranch");
static const QString alsoKey = QStringLiteral("alsoFrom");

QJsonObject KPTagRename::toJson() const
{
    return {{fromKey, from},
            {toKey, to},
            {branchKey, withBranch},
            {alsoKey, QJsonArray::fromStringList(alsoFrom)}};
}

KPTagRename KPTagRename::fromJson(const QJsonObject &object)
{
    KPTagRename rename{object.value(fromKey).toString(), object.value(toKey).toString(),
                       object.value(branchKey).toBool(true),
                       object.value(alsoKey).toVariant().toStringList()};
    rename.alsoFrom.removeAll(QString());
    return rename;
}

QString KPTagRename::meant(const QString &tag) const
{
    const QString key = karvexTagKey(tag);
    const auto isMeant = [&](const QString &name) {
        const QString old = karvexTagKey(name);
        return key == old || (withBranch && key.startsWith(old + u'/'));
    };
    if (isMeant(from))
        return from;
    const auto other = std::find_if(alsoFrom.begin(), alsoFrom.end(), isMeant);
    return other == alsoFrom.end() ? QString() : *other;
}

QStringList KPTagRename::applied(const QStringList &tags) const
{
    QStringList result;
    QSet<QString> present;
    for (const QString &tag : tags) {
        QString name = tag;
        if (const QString old = meant(tag); !old.isEmpty()) {
            // Parts, not characters: a key may be longer or shorter than its tag.
            const qsizetype parts = old.count(u'/') + 1;
            const QString below = tag.section(u'/', static_cast<int>(parts));
            name = isDeletion() || below.isEmpty() ? to : to + u'/' + below;
        }
        const QString key = karvexTagKey(name);
        if (name.isEmpty() || present.contains(key))
            continue;
        present.insert(key);
        result.append(name);
    }
    return result;
}

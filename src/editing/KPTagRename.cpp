#include "KPTagRename.h"

#include "KarvexTagKey.h"

#include <QSet>

const QString KPTagRename::renamedNotification = QStringLiteral("KPNotificationTagRenamed");

bool KPTagRename::concerns(const QString &tag) const
{
    const QString key = karvexTagKey(tag);
    const QString old = karvexTagKey(from);
    return key == old || (withBranch && key.startsWith(old + u'/'));
}

QStringList KPTagRename::applied(const QStringList &tags) const
{
    // Parts, not characters: a key may be longer or shorter than its tag.
    const qsizetype parts = from.count(u'/') + 1;
    QStringList result;
    QSet<QString> present;
    for (const QString &tag : tags) {
        QString name = tag;
        if (concerns(tag)) {
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

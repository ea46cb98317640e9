#include "KPTagMime.h"

#include <QMimeData>

const QString KPTagMime::type = QStringLiteral("application/x-murn-tags");

QMimeData *KPTagMime::mimeData(const KPTagName::Tags &tags)
{
    QByteArray keys;
    for (const KPTagName *tag : tags)
        keys += tag->keyName().toUtf8() + '\0';
    auto *data = new QMimeData;
    data->setData(type, keys);
    data->setText(KPTagName::displayStringsForTagNames(tags).join(QStringLiteral(", ")));
    return data;
}

bool KPTagMime::hasTags(const QMimeData *data)
{
    return data->hasFormat(type);
}

KPTagName::Tags KPTagMime::tags(const QMimeData *data)
{
    KPTagName::Tags tags;
    for (const QByteArray &bytes : data->data(type).split('\0')) {
        const QString key = QString::fromUtf8(bytes);
        if (KPTagName::tagTypeFromKeyName(key) != KPTagName::User)
            continue;
        // The key is in lower case: a tag that is known keeps its own spelling.
        const QString text = key.section(u':', 1);
        if (KPTagName *tag = KPTagName::tagNameForUserEnteredTag(text))
            tags.append(tag);
    }
    return KPTagName::removeDuplicates(tags);
}

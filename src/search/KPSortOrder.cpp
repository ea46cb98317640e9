#include "KPSortOrder.h"

#include <QStringList>
#include <algorithm>
#include <array>

using Field = KPSortKey::Field;

static constexpr std::array<std::pair<Field, QLatin1String>, 9> fieldNames{{
    {Field::Name, QLatin1String("name")},
    {Field::Type, QLatin1String("type")},
    {Field::Size, QLatin1String("size")},
    {Field::Modified, QLatin1String("modified")},
    {Field::Created, QLatin1String("created")},
    {Field::Added, QLatin1String("added")},
    {Field::Rating, QLatin1String("rating")},
    {Field::Tags, QLatin1String("tags")},
    {Field::Folder, QLatin1String("folder")},
}};

QString KPSortKey::toText() const
{
    for (const auto &[candidate, name] : fieldNames) {
        if (candidate == field)
            return (ascending ? QString() : QStringLiteral("-")) + name;
    }
    return {};
}

std::optional<KPSortKey> KPSortKey::fromText(const QString &text)
{
    const bool isDescending = text.startsWith(u'-');
    for (const auto &[candidate, name] : fieldNames) {
        if (QStringView(text).mid(isDescending ? 1 : 0).compare(name, Qt::CaseInsensitive) == 0)
            return KPSortKey{candidate, !isDescending};
    }
    return {};
}

QStringList KPSortKey::names()
{
    QStringList names;
    for (const auto &[field, name] : fieldNames)
        names.append(name);
    return names;
}

std::optional<QList<KPSortKey>> KPSortOrder::keysFromText(const QString &text)
{
    QList<KPSortKey> keys;
    for (const QString &each : text.split(u',')) {
        const auto key = KPSortKey::fromText(each.trimmed());
        const bool isKnown = key && std::any_of(keys.begin(), keys.end(), [&](const KPSortKey &k) {
                                 return k.field == key->field;
                             });
        if (!key || isKnown)
            return {};
        keys.append(*key);
    }
    return keys;
}

#include "KPFilenameFormatter.h"

std::optional<QString> KPFilenameFormatter::stringForObjectValue(const QVariant &value)
{
    return value.typeId() == QMetaType::QString ? std::optional(value.toString()) : std::nullopt;
}

QString KPFilenameFormatter::getObjectValueForString(const QString &typed) const
{
    return typed.isEmpty() || typed.startsWith(u'.') ? originalDisplayName : typed;
}

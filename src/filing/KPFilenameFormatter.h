#pragma once

#include <QString>
#include <QVariant>
#include <optional>

// What a person may type as a file's name where the name is edited in place: a file can be given
// neither an empty name nor a hidden one, so the old name comes back then. Threads: a value.
class KPFilenameFormatter
{
public:
    QString originalDisplayName;

    // The text of a value that is one.
    static std::optional<QString> stringForObjectValue(const QVariant &value);
    QString getObjectValueForString(const QString &typed) const;
};

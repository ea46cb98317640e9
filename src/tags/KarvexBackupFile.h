#pragma once

#include "PropertyValue.h"
#include "XPError.h"

#include <QHash>
#include <QStringList>

// One file's tags and rating, as a backup keeps them. Threads: a value.
struct KarvexBackupRecord
{
    QString path;
    QStringList tags;
    double rating = 0; // 0: none
    std::optional<PropertyValue::Date> tagDate;
    std::optional<PropertyValue::Date> ratingDate;

    bool isWorthKeeping() const { return !path.isEmpty() && (!tags.isEmpty() || rating > 0); }

    // Whether both say the same of a file, wherever it is: tags in their order, composed or not;
    // dates as isLater() sees them.
    static bool backupDictsTheSame(const KarvexBackupRecord &one, const KarvexBackupRecord &two);
    // A date in whole seconds, as an XML property list holds it, has lost its fraction: against
    // such a one the second counts.
    static bool isLater(PropertyValue::Date date, PropertyValue::Date than);
};

// The file of a backup: a property list, an array of dictionaries.
//
// Written binary, so that dates come back exact; XML is read too. A path that is no valid text is
// data. Threads: any; blocking file calls.
namespace KarvexBackupFile {

using Records = QHash<QString, KarvexBackupRecord>; // by path

// Malformed: not a backup. NotFound: there is none.
XPResult<Records> decode(const QByteArray &bytes, const QString &path);
XPResult<QByteArray> encode(const Records &records);
XPResult<QByteArray> readBytes(const QString &path);

// Of the user, in the program's support folder.
QString defaultPath();

} // namespace KarvexBackupFile

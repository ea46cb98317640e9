#pragma once

#include <QDateTime>
#include <QStringList>

// The managed folder as a place to search: where it is and the folders of dates in it, without
// ever making one.
// Threads: any.
namespace KPFiledFolders {

QString root();
QString day(const QDateTime &date);
QString month(const QDateTime &date);
// The folders of the date's day and of the 6 before that exist; the month's where the managed
// folder has no folders of days. Looks at the disk.
QStringList past7Days(const QDateTime &date);
// The setting of its path changed.
void rebuild();

} // namespace KPFiledFolders

#pragma once

#include <QDateTime>
#include <QStringList>

// The dated folders of the managed folder as places to search, which asking never makes. Where it
// is not in use they are what stands in for it.
// Threads: any; blocking file calls.
namespace KPFiledFolders {

QString day(const QDateTime &date);
QString month(const QDateTime &date);
// The folders of the date's day and of the 6 before that exist; the month's where the managed
// folder has no folders of days.
QStringList past7Days(const QDateTime &date);

} // namespace KPFiledFolders

#pragma once

#include "KPTagRename.h"
#include "XPError.h"

#include <QDateTime>
#include <QList>

// Changes of tags over the library that wait for files on volumes that are away: a file of JSON
// that people can read, "waiting_tag_changes.json" in the program's support folder. Our processes
// change it one at a time. Threads: any; blocking file calls. What cannot be understood is an
// error, and is set aside before anything is written.
namespace KPWaitingTagChanges {

struct Change
{
    KPTagRename rename;
    QDateTime time;
    QStringList paths;
};

QString path();
XPResult<QList<Change>> parse(const QByteArray &bytes); // of the file
QByteArray bytesOf(const QList<Change> &changes);
XPResult<QList<Change>> read();
// Behind those that wait; nothing without paths.
std::optional<XPError> add(const KPTagRename &rename, const QStringList &paths);
// Takes out those files that are there now, to be changed in this order, and answers them. What
// fails there is put back with add().
XPResult<QList<Change>> takeReady();
std::optional<XPError> drop();
// Takes out what waits for this change, and answers the files.
XPResult<QStringList> takeBack(const KPTagRename &rename);

} // namespace KPWaitingTagChanges

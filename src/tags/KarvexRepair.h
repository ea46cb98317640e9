#pragma once

#include "XPError.h"

#include <QByteArray>
#include <QList>
#include <QStringList>

// Attributes of the convention whose bytes nobody can understand: nothing is ever written over
// them, so that a file has no tags or rating to edit until the user has them taken off.
// Threads: any; blocking file calls.
namespace KarvexRepair {

// One attribute's bytes before and after; null: it is not there.
struct Bytes
{
    QString name; // in full
    QByteArray before;
    QByteArray after;
};

// What would have to go, as changes to "not there". An error: the file itself cannot be asked.
XPResult<QList<Bytes>> unreadable(const QString &path);

// Puts `after` where exactly `before` stands, under the file's lock; where it stands already, so be
// it. False: something else stands there by now, and stays.
XPResult<bool> exchange(const Bytes &bytes, const QString &path);

} // namespace KarvexRepair

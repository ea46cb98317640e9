#pragma once

#include "XPError.h"

#include <QByteArray>
#include <QString>

// The path in an alias record, the older form of a bookmark of a folder: a fixed head in the
// order of the old platform (most significant byte first), then tagged fields, of which number 18
// is the path on its volume and number 19 where the volume was mounted, both UTF-8.
// The input is of unknown origin. Threads: any.
namespace XPAliasRecord {

// Absolute. Fails with Malformed.
XPResult<QString> path(QByteArrayView record);

} // namespace XPAliasRecord

#pragma once

#include "PropertyValue.h"
#include "XPError.h"

#include <functional>

// A fact of a file that is kept with the time when it was set.
namespace KarvexTimeStamp {

// Writes `time` under the metadata key `timeKey`, then calls `write`. When that fails, the old
// time is put back, or removed if there was none: both are new, or neither is. A time that cannot
// be written stops nothing. Any thread, under the file's lock.
std::optional<XPError> writeWith(const QString &timeKey, PropertyValue::Date time,
                                 const QString &path,
                                 const std::function<std::optional<XPError>()> &write);

// What stood there before, as bytes, which may be no value that we could write; nothing: the
// attribute is removed. A failure is logged.
void putBack(const std::optional<QByteArray> &bytes, const QString &name, const QString &path);

} // namespace KarvexTimeStamp

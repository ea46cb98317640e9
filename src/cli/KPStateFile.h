#pragma once

#include "KPSearchState.h"
#include "XPError.h"

// Search states in files. Threads: any; read() is blocking.
//
// A state is a property list, binary or XML, or a JSON object; the first bytes tell which. In JSON
// a path's undecodable bytes stand as \udcXX.
namespace KPStateFile {

// A missing file is NotFound; one that is too long TooLarge, one that holds no state Malformed.
XPResult<KPSearchState::Ptr> read(const QString &path);

// The stored form as JSON, its keys in order. JSON knows no dates and no bytes, which only keys of
// other programs hold: a date becomes a text in ISO 8601, bytes the text that a path of these
// bytes has.
QByteArray json(const KPSearchState &state);
// The same of any value; without a line end.
QByteArray json(const PropertyValue &value);

} // namespace KPStateFile

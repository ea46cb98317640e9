#pragma once

#include "XPError.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <optional>

// A file's extended attributes: raw bytes by name, links never followed.
//
// Names are the convention's ("com.apple.metadata:kMDItemStarRating"); on disk Linux wants them
// in its `user.` namespace, which is added and removed here and nowhere else. "Absent" (ENODATA,
// and EINVAL for a path whose file cannot have any) is an answer, not an error. Linux keeps no
// user attributes on a symbolic link: reading one finds none, writing is an error.
// Any thread; blocking file calls.
namespace XPExtendedAttributes {

// `limit`: a value longer than that is Kind::TooLarge (ERANGE), never cut and never "absent".
// A zero-length value is an empty array, told apart from none.
XPResult<std::optional<QByteArray>> read(const QString &path, const QString &name,
                                         qsizetype limit = 65536);

// The old value stays whole when this fails.
std::optional<XPError> write(const QString &path, const QString &name, QByteArrayView value);

// Removing what is not there succeeds.
std::optional<XPError> remove(const QString &path, const QString &name);

// The names in the `user.` namespace, without it, sorted.
XPResult<QList<QString>> list(const QString &path);

// The name as it stands on disk: "user." + name, in UTF-8.
QByteArray nameOnDisk(const QString &name);

} // namespace XPExtendedAttributes

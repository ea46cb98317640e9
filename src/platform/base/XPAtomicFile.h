#pragma once

#include "XPError.h"

#include <QByteArray>

// Whole files, read and replaced: for settings and other small files of our own.
// Any thread; blocking file calls.
namespace XPAtomicFile {

// A missing file is Kind::NotFound; one longer than `limit` Kind::TooLarge.
XPResult<QByteArray> read(const QString &path, qint64 limit = 64 << 20);

// After this the file holds the old bytes or the new ones, whatever happens in between: written
// beside it, synced, renamed over it, its folder synced. Folders missing on the way are made
// (0700). A link at `path` is followed once to the file behind it, so that a settings file kept
// elsewhere stays where it is; an existing file's permission bits are kept, a new one gets 0600.
std::optional<XPError> write(const QString &path, QByteArrayView bytes);

// Renames a damaged file to "NAME.damaged", "NAME.damaged-2", … beside it, never over another,
// so that nothing is lost; returns the new path.
XPResult<QString> setAside(const QString &path);

} // namespace XPAtomicFile

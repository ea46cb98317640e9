#pragma once

#include "XPError.h"

#include <QByteArray>

// Whole files, read and replaced: for settings and other small files of our own.
// Any thread; blocking file calls.
namespace XPAtomicFile {

// A missing file is Kind::NotFound; one longer than `limit` Kind::TooLarge; a folder, pipe or
// device Kind::InvalidArgument.
XPResult<QByteArray> read(const QString &path, qint64 limit = 64 << 20);

// After this the file holds the old bytes or the new ones, whatever happens in between: written
// beside it, synced, renamed over it, its folder synced. Folders missing on the way are made
// (0700). Links at `path` are followed to the file behind them, so that a settings file kept
// elsewhere stays where it is. An existing file keeps its permission bits and, where the user
// may give files away, its owner; one that the user may not write is left alone
// (Kind::NotPermitted). A new file gets 0600.
std::optional<XPError> write(const QString &path, QByteArrayView bytes);

// Renames a damaged file to "NAME.damaged", "NAME.damaged-2", … beside it, never over another,
// so that nothing is lost; returns the new path. Links are followed as in write().
XPResult<QString> setAside(const QString &path);

// Where the links at `path` lead; the path itself when it is no link or does not exist.
XPResult<QString> behindLinks(const QString &path);

} // namespace XPAtomicFile

#pragma once

#include "XPError.h"
#include "XPFileDescriptor.h"

// A lock between processes (and between threads) that lasts as long as this object: flock(2) on
// a file of its own, which is made when missing and never removed, as removing it would let two
// hold "the" lock. The system releases it when a process dies. Move-only; any thread.
class XPFileLock
{
public:
    // Waits for whoever holds it. Folders missing on the way are made.
    static XPResult<XPFileLock> take(const QString &path);
    // Nothing where somebody holds it.
    static XPResult<std::optional<XPFileLock>> takeIfFree(const QString &path);

private:
    explicit XPFileLock(XPFileDescriptor file) : m_file(std::move(file)) {}

    XPFileDescriptor m_file;
};

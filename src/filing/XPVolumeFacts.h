#pragma once

#include <QString>
#include <optional>

// On which volume a path lies, and whether files can be put there.
// Threads: any; blocking file calls.

// The device of the file system that holds the path; nothing when it does not exist.
std::optional<quint64> UnixVolIDForPath(const QString &path);
// That of the nearest existing folder on the way to it.
std::optional<quint64> UnixVolIDForPathUsePartial(const QString &path);
// Whether a file can go from one path to the other by a rename: the same device, and the same
// mount point at the head of both paths. Neither path need exist.
bool PathsOnSameVol(const QString &one, const QString &other);

// In the mail store of the home folder.
bool PathShouldBeTreatedAsReadOnly(const QString &path);
// Neither that nor on a volume that takes no writes.
bool PathIsOnWritableDisk(const QString &path);
// The same by trying: makes the folder with those above it and writes a small file there, which
// is removed again. Never touches a file of another's.
bool PathIsOnWritableDiskTestWrite(const QString &folder);

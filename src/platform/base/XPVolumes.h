#pragma once

#include <QStringList>
#include <optional>

// Which volume a path lies on, from the mount table (/proc/self/mountinfo).
//
// Each mount is looked at once and remembered until the mount table changes, so that asking for
// a million paths costs no file call on the volumes themselves: a hanging network mount holds
// up nobody here. Any thread.
namespace XPVolumes {

struct Volume
{
    QString mountPoint;
    QString fileSystem; // "ext4", "nfs4", "fuse.sshfs"
    QString source;     // the device or the remote share
    bool slow = false;  // network or FUSE: do not read file contents unasked
    bool network = false;
};

// The volume of the longest mount point that holds the path; the path need not exist.
Volume volumeOf(const QString &path);

bool isOnSlowVolume(const QString &path);

// Where volumes are mounted now, a folder before what is in it.
QStringList mountPoints();

// The mount table is looked at again at once; otherwise a change is noticed within 100 ms.
void lookAgain();

} // namespace XPVolumes

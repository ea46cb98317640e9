#pragma once

#include "XPError.h"

#include <QString>
#include <functional>

// Brings a file, link or folder (with all that is in it) to another path, as one thing, and never
// over another file.
//
// On one file system that is a rename. Elsewhere it is a copy under a temporary name in the target
// folder, with every extended attribute, access list, time and permission bit, which is synced,
// compared with the source and then renamed; only then does the source go, and only if it is
// still the file that was copied. After a failure everything is as it was before. A process that
// dies in between leaves a note (XPMoveJournal), by which XPMoveRecovery puts things right.
// Threads: any; blocking file calls, as long as the bytes take.
namespace XPFileMover {

// What happens to tags and other attributes that the target cannot hold.
enum class Attributes {
    Keep,      // the call fails (Unsupported or NoSpace) and nothing is moved
    MayBeLost, // the user was told (XPAttributeRoom); tags and rating are backed up first
};

struct Options
{
    Attributes attributes = Attributes::Keep;
    // Called now and then with the bytes copied so far. False stops: Cancelled, nothing changed.
    std::function<bool(qint64)> progress = {};
};

// EEXIST where the new path is taken. InvalidArgument for a folder that would go into itself.
std::optional<XPError> move(const QString &from, const QString &to, const Options &options = {});
std::optional<XPError> copy(const QString &from, const QString &to, const Options &options = {});

struct Replaced
{
    // Where the old file is now: in the trash, under its own name, or, when no trash takes it,
    // beside the new one. Both empty when there was none.
    QString inTrash;
    QString keptAside;
};
// A file that is at `to` is set aside beside it as "NAME beingReplaced.EXT" first, and goes to
// the trash once the new one is in its place; back to its name if that fails.
XPResult<Replaced> moveReplacing(const QString &from, const QString &to,
                                 const Options &options = {});
XPResult<Replaced> copyReplacing(const QString &from, const QString &to,
                                 const Options &options = {});

} // namespace XPFileMover

#pragma once

#include <sys/stat.h>

// What a file carries besides its bytes: extended attributes, access lists, owner, permission bits
// and times, between open files or folders. Any thread; blocking file calls. Functions return 0
// or the errno.
namespace XPFileAttributes {

// The attributes that belong to the user (`user.`) and the access lists must arrive; others
// (labels of this machine's security modules, lists of network file systems) where that works.
// `mayBeLost`: where the target has no room for them or none at all, they are left out.
int copy(int from, int to, bool mayBeLost);

// EILSEQ when one of those that must arrive is missing or differs.
int compare(int from, int to);

// The owner where this user may give files away, the permission bits, the access lists once
// more, which those may have changed, and the times: to be called last.
int copyStatus(int from, int to, const struct stat &status, bool mayBeLost);

// Whether `to` could hold them: 0, or why not. Leaves `to` without them.
int tryOut(int from, int to);

} // namespace XPFileAttributes

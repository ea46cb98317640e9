#pragma once

#include "KarvexBackupFile.h"
#include "XPArchivedFile.h"

// What an archive says that stands on a file, brought to that file. Any thread; blocking file
// calls.
namespace XPImportedFacts {

// Tags and rating, as the rule of backups wants them; what cannot be understood is none.
KarvexBackupRecord record(const XPArchivedFile &file);

// All of it onto a new file or folder that is open: attributes, rights (never more than it has, and
// never those of a program) and time. 0 or the errno.
int apply(const XPArchivedFile &file, int open);

// Onto an older file: the attributes that it lacks, but for those that the record has. 0 or the
// errno.
int addMissing(const XPArchivedFile &file, int open);

} // namespace XPImportedFacts

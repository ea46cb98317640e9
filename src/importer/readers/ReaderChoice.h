#pragma once

#include "DocumentReader.h"

// The reader for what a document really is, where its name is wrong: mail-merge programs call
// RTF and HTML ".doc" and ".xls", and an office file with a password is a compound file. Null: as
// it is called, or nothing that is known; never `asker`.
const DocumentReader *readerByContent(const DocumentSource &source, const DocumentReader &asker);

#pragma once

#include "XPError.h"

// Writes a PDF beside a PostScript file, under its name with ".pdf" or the next free one, and
// answers its path.
//
// PostScript is a programming language, so the converter ("gs", another program) runs without
// network, with little memory, files it may write alone and a minute of time.
// Unsupported where it is not installed. Any thread but the main one: it waits for the converter.
XPResult<QString> PSToPDF(const QString &path);

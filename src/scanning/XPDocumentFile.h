#pragma once

#include "XPError.h"

#include <functional>

class QPDF;

// Documents of the user's that get a new content and stay what they are.
// Any thread; blocking file calls.

// Writes a new file, or replaces the bytes of the one at the path: its tags, rating, marks, access
// lists, owner and birth as a document stay with it. At every moment either the old bytes or the
// new ones stand there. `write` is given the path of a file beside it.
std::optional<XPError>
xpReplaceContents(const QString &path,
                  const std::function<std::optional<XPError>(const QString &temporary)> &write);

// The same with a PDF; throws what qpdf throws.
std::optional<XPError> xpWritePDF(QPDF &pdf, const QString &path);

// Never replaces a file: one that is there already is an error (EEXIST).
std::optional<XPError> xpWriteNewPDF(QPDF &pdf, const QString &path);

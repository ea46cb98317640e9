#pragma once

#include <QByteArrayView>

struct DocumentAnswer;

// Files that stand for an address. Takes any bytes; false when none of the formats is in them.
// Threads: any.
namespace LinkText {

// A property list with "URL", and "Name" in a bookmark.
bool readList(QByteArrayView bytes, DocumentAnswer &answer);
// Groups of "KEY=VALUE" lines: internet shortcuts and desktop entries.
bool readKeys(QByteArrayView bytes, DocumentAnswer &answer);

} // namespace LinkText

#pragma once

#include "KPDoc.h"

class QMimeData;

// The pasteboard types of the program's own drags, as private MIME types.
//
// Documents of the library travel as the bytes of their paths, a NUL after each, beside the forms
// that other programs take (XPFileUrls). Only a drag of ours carries documentsType, so that a file
// from elsewhere is told from a document of the library.
// Threads: any; QMimeData belongs to the main one.
namespace KPDocPasteboard {

extern const QString documentsType; // "com.brindlesoft.KPDocPboardType"
extern const QString folderType;    // "kpFO": a folder of saved searches
extern const QString searchType;    // "kpSC": a saved search
extern const QString locationType;  // "kpLD": a location

bool hasDocuments(const QMimeData &data);
bool isOurs(const QMimeData &data); // any of these types
QStringList paths(const QMimeData &data);
void setPaths(QMimeData &data, const QStringList &paths);

} // namespace KPDocPasteboard

#pragma once

#include "KPContentTypes.h"

#include <QByteArray>
#include <QString>
#include <vector>

// What the machine's MIME database (shared-mime-info) adds to the table of content types:
// ancestry and a localised description for extensions that the table does not know, and a type
// for the first bytes of a file. Opened on first need, never at start. It never makes
// identifiers: those must be the same on every machine.
// Threads: any; the database has a lock of its own.
namespace KPMimeTypes {

// The declared types that files of an undeclared extension conform to, nearest first and without
// repeats; none when the database does not know the extension either.
std::vector<KPContentTypes::Number> typesForExtension(const QString &extension);

// The database's name for files of that extension, or for the MIME type, in the user's language;
// empty: none.
QString descriptionForExtension(const QString &extension);
QString descriptionForMimeType(const QString &mimeType);

// The declared type that the first bytes of a file show; `none` when they show nothing.
KPContentTypes::Number typeForData(const QByteArray &firstBytes);

} // namespace KPMimeTypes

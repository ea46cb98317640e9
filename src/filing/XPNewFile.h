#pragma once

#include "XPError.h"

#include <QByteArrayView>
#include <QString>

// Files that did not exist before. Any thread; blocking file calls.
namespace XPNewFile {

// Writes a file "STEM.EXTENSION" in the folder, under the first free of the names that
// XPFileUtils::findUnusedPath() tries, and answers its path. The stem is cut where the name would
// be too long. The file appears under its name whole and synced, or not at all; nothing is ever
// replaced. It gets the rights that the user gives new files.
XPResult<QString> write(const QString &folder, const QString &stem, const QString &extension,
                        QByteArrayView bytes);

} // namespace XPNewFile

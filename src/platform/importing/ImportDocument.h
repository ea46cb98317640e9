#pragma once

#include "ImportMessages.h"
#include "XPFileDescriptor.h"

// A file opened for the importer: nobody but the caged process looks into it.
// Threads: any; blocking file calls.
struct ImportDocument
{
    XPFileDescriptor descriptor; // read only
    qint64 device = 0;
    qint64 inode = 0;
    qint64 size = 0;
    qint64 modified = 0; // nanoseconds since 1970
    QByteArray path;
    QString type;

    // Links are not followed; what is no regular file is an error, and a pipe holds up nobody. The
    // file's access time stays, where it is the user's.
    static XPResult<ImportDocument> open(const QByteArray &path, const QString &type);
    ImportJob job() const; // for its text; page and pixels ask for a picture instead
};

#pragma once

#include "ImportMessages.h"
#include "XPFileDescriptor.h"

#include <chrono>
#include <stop_token>

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
    // file's access time stays, where it is the user's. A disk that does not answer (one that is
    // gone, a network) is given up after `patience` or when told to stop; while it still hangs, the
    // other documents of its volume fail at once.
    static XPResult<ImportDocument> open(const QByteArray &path, const QString &type,
                                         const std::stop_token &stop = {},
                                         std::chrono::milliseconds patience = longestOpen);
    static constexpr std::chrono::seconds longestOpen{10};
    ImportJob job() const; // for its text; page and pixels ask for a picture instead
};

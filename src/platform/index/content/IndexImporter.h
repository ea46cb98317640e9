#pragma once

#include "PropertyValue.h"
#include "XPError.h"

#include <QByteArray>
#include <stop_token>

// Finds the text and the metadata inside files of some types. The index has none of its own:
// nothing is parsed in its process.
//
// Threads: called on one thread only, mostly at idle priority. Takes no lock that others need for
// long. Never throws.
class IndexImporter
{
public:
    struct Content
    {
        QByteArray text; // UTF-8, cut to the index's limit; empty: none to be had
        PropertyValue::Dictionary attributes; // "kMDItemTitle", "kMDItemNumberOfPages", …
        // The state of the file that was read, as it was before reading.
        qint64 modified = 0;
        qint64 size = 0;
        quint64 inode = 0;
    };

    virtual ~IndexImporter() = default;
    // Asked once for each type.
    virtual bool accepts(const QString &type) const = 0;
    // An error means that the file cannot be read now; it is tried again when it changes and at
    // the next start; where none is found (NotFound), also when a folder moved. `stop`: give up
    // soon, with any error.
    virtual XPResult<Content> import(const QByteArray &path, const QString &type,
                                     const std::stop_token &stop) = 0;
};

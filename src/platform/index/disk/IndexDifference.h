#pragma once

#include <QByteArray>

// Where the index is not what is on disk.
// Threads: a value.
struct IndexDifference
{
    enum class Kind {
        NotIndexed,
        NotOnDisk,
        OtherFacts,
        OtherAttributes,
        OtherType,
        OldContent, // imported before the file was changed last
        NoFolder,   // a row whose folder is no row
        Unreadable,
    };
    Kind kind = Kind::NotIndexed;
    QByteArray path;
};

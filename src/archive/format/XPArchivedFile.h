#pragma once

#include "PropertyValue.h"
#include "XPError.h"
#include "XPFileInfo.h"

// What an archive of documents says of one file besides its contents. Threads: a value; read() is
// blocking.
struct XPArchivedFile
{
    enum class Kind { File, Package, Folder };

    // Relative, "/" between names: to the archive's folder, of what is in a package to that.
    QString path;
    Kind kind = Kind::File;
    qint64 size = 0;     // of a file's contents
    qint64 modified = 0; // nanoseconds since 1970
    quint32 rights = 0;  // permission bits
    // By name as XPExtendedAttributes has it. Data are the bytes that stand on the file; every
    // other value is one whose binary property list they are.
    PropertyValue::Dictionary attributes;

    // The file as it is. Links are no documents (InvalidArgument), and neither are pipes and
    // devices. Where the file system keeps no attributes there are none.
    static XPResult<XPArchivedFile> read(const QString &absolute, const QString &path, Kind kind);

    // The bytes of such an attribute.
    static QByteArray bytesOf(const PropertyValue &attribute);

    // Whether a path out of a file that anybody may have written leads to a place below the folder:
    // no "..", nothing absolute, no name that the system cannot have. A document may not begin with
    // a hidden name, which is a place for programs.
    static bool isSafe(const QString &path, bool isDocument);

    PropertyValue::Dictionary toRecord(bool isPart) const;
    // Nothing where the record is none of a file, or not safe.
    static std::optional<XPArchivedFile> fromRecord(const PropertyValue::Dictionary &record,
                                                    bool isPart);
};

#pragma once

#include "XPArchiveWriter.h"
#include "XPUnnamedFile.h"

#include <memory>

// The list of what stood on files that were brought to a folder which cannot hold it: an archive of
// documents without their contents, which lie beside it. XPDocumentImport reads it.
// Threads: one; blocking file calls.
class XPTagSidecar
{
public:
    static XPResult<XPTagSidecar> begin(const QString &folder);

    // `file` as it was, its path the name that it has in the folder now. One with nothing on it is
    // not listed.
    std::optional<XPError> add(const XPArchivedFile &file);
    // Where the list is, under a free name; empty when there was nothing to list.
    XPResult<QString> finish();

private:
    XPTagSidecar(QString folder, XPUnnamedFile file);

    QString m_folder;
    XPUnnamedFile m_file;
    std::unique_ptr<XPArchiveWriter> m_writer;
};

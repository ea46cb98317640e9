#pragma once

#include "XPArchivedFile.h"
#include "XPGzip.h"

// Writes an archive of documents: property lists of records, each list a gzip member
// (docs/formats.md). What comes is written on as soon as it fills one, so that memory does not
// depend on how much there is.
//
// The order of calls: begin(); for a file any number of addContents(), then end(). For a package
// parts like that, begun by beginPart(), then endPackage(). At last finish(). A call that failed
// leaves a file that is no archive.
// Threads: one at a time; blocking file calls. Ownership: the descriptor is the caller's.
class XPArchiveWriter
{
public:
    // `beside`: contents are left out, as the documents lie beside the archive.
    XPArchiveWriter(int file, bool beside);

    std::optional<XPError> begin(const XPArchivedFile &document);
    std::optional<XPError> beginPart(const XPArchivedFile &part);
    std::optional<XPError> addContents(const QByteArray &bytes); // at most pieceSize
    // `dropped`: the document could not be read to its end; whoever reads the archive leaves it
    // out.
    std::optional<XPError> end(bool dropped = false);
    std::optional<XPError> endPackage(bool dropped = false);
    std::optional<XPError> finish();

    qint64 documentCount() const { return m_documents; }

private:
    std::optional<XPError> begin(const XPArchivedFile &file, bool isPart);
    std::optional<XPError> push(PropertyValue::Dictionary record, qsizetype size);
    std::optional<XPError> flush();

    XPGzipWriter m_gzip;
    const bool m_isBeside;
    PropertyValue::Array m_records;
    qsizetype m_size = 0; // about, of the records
    // Of the file that was begun: what is not pushed yet.
    PropertyValue::Dictionary m_record;
    quint32 m_checksum = 0;
    bool m_isPart = false;
    qint64 m_documents = 0;
};

#pragma once

#include "XPArchivedFile.h"
#include "XPFileDescriptor.h"
#include "XPGzip.h"

#include <deque>

// Reads an archive of documents step by step, and trusts nothing in it: sizes, checksums, paths and
// the order of records are checked, and the memory taken does not depend on what it holds.
//
// Errors: Malformed where it is cut, altered or none at all; Unsupported when a newer version of
// the program wrote it; TooLarge for one that grows beyond all bounds while it is read. After an
// error nothing more can be read. Threads: one at a time; blocking file calls.
class XPArchiveReader
{
public:
    enum class What {
        Begin,      // of a document or, in a package, a part: `file` says what
        Contents,   // `bytes` of the file that was begun
        End,        // of that file
        EndPackage, // of the package that was begun
        EndArchive,
    };
    struct Event
    {
        What what = What::EndArchive;
        XPArchivedFile file = {};
        QByteArray bytes = {};
        bool isDropped = false; // of an end: what was told of it is to be forgotten
    };

    // The archive stays open: it is the same file that is read again by another reader of this
    // descriptor. `folder`: where the documents of an archive lie that holds no contents.
    static XPResult<XPArchiveReader> open(int file, const QString &folder);

    XPResult<Event> next();
    // The documents lie beside the archive. Their size and time are those of the files there; one
    // that is gone begins and ends as dropped.
    bool isBeside() const { return m_isBeside; }

private:
    enum class State { Documents, Contents, Parts, PartContents, Ended };

    XPArchiveReader(int file, const QString &folder);
    std::optional<XPError> readHeader();
    XPResult<PropertyValue::Dictionary> nextRecord();
    std::optional<XPError> take(const PropertyValue::Dictionary &record);
    std::optional<XPError> begin(const PropertyValue::Dictionary &record, bool isPart);
    std::optional<XPError> contents(const PropertyValue::Dictionary &record);
    std::optional<XPError> end(const PropertyValue::Dictionary &record);
    std::optional<XPError> endArchive(const PropertyValue::Dictionary &record);
    void beginBeside(Event &event);
    XPResult<Event> nextBeside();
    XPError malformed(const QString &message) const;

    QString m_folder;
    std::unique_ptr<XPGzipReader> m_gzip;
    PropertyValue::Array m_records;
    qsizetype m_next = 0;
    std::deque<Event> m_events;
    State m_state = State::Documents;
    bool m_isBeside = false;
    XPFileDescriptor m_besideFile;
    qint64 m_left = 0; // bytes of the file that are still to come
    quint32 m_checksum = 0;
    qint64 m_documents = 0;
};

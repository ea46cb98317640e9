#pragma once

#include "XPDocumentImport.h"
#include "XPFileInfo.h"
#include "XPImportFolder.h"
#include "XPUnnamedFile.h"

#include <vector>

// The second reading of an archive by XPDocumentImport: what it does with one document after the
// other. New files wait without names until some are together, so that the disk is waited for once
// for all of them. Threads: one; blocking file calls.
class XPImportRun
{
public:
    using Action = XPDocumentImport::Action;
    using Step = XPDocumentImport::Step;
    using Event = XPArchiveReader::Event;

    XPImportRun(const QString &folder, const XPDocumentImport::Options &options,
                XPDocumentImport::Summary &summary);

    std::optional<XPError> open();
    void take(const Event &event);
    void finish();                                   // what waits
    qint64 documentCount() const { return m_count; } // that were read

private:
    struct Document
    {
        XPArchivedFile file;
        QString path; // absolute
        XPFileDescriptor folder = {};
        std::optional<XPFileInfo> there = {};
        XPFileDescriptor thereFile = {}; // open while contents are compared
        bool isSame = false;             // so far
        bool isNewer = false;            // than the one that is there
        XPUnnamedFile made = {};
        QByteArray package = {}; // the hidden name of a package that is being made
        std::optional<XPError> problem = {};
        qint64 at = 0;

        QByteArray name() const;
    };

    void begin(const XPArchivedFile &file);
    int beginFile(Document &document) const;
    int beginPackage(Document &document);
    void beginPart(const XPArchivedFile &part);
    void contents(const QByteArray &bytes);
    void end(bool isDropped);
    void endPackage(bool isDropped);
    Step merge(const Document &document) const;
    void wait(Document document);
    void flush();
    Step give(Document &document) const;
    Step replace(Document &document) const;
    void tell(const Step &step);

    const QString m_folder;
    const XPDocumentImport::Options &m_options;
    XPDocumentImport::Summary &m_summary;
    XPImportFolder m_place;
    std::optional<Document> m_document;
    XPImportFolder m_parts; // of the package
    std::optional<XPArchivedFile> m_part;
    XPFileDescriptor m_partFile;
    std::vector<Document> m_waiting;
    qint64 m_waitingBytes = 0;
    qint64 m_count = 0;
};

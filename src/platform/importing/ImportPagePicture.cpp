#include "ImportPagePicture.h"

#include "ImportDocument.h"
#include "ImportPageDrawing.h"
#include "KPFileType.h"
#include "XPFileInfo.h"
#include "XPLog.h"
#include "XPPath.h"
#include "XPPrograms.h"

static QString wordsOf(DocumentFailure failure)
{
    switch (failure) {
    case DocumentFailure::Encrypted:
        return qtTrId("KPDocumentEncrypted");
    case DocumentFailure::Damaged:
        return qtTrId("KPDocumentDamaged");
    case DocumentFailure::TooLarge:
        return qtTrId("KPDocumentTooLarge");
    case DocumentFailure::TimedOut:
        return qtTrId("KPDocumentTimedOut");
    case DocumentFailure::Crashed:
        return qtTrId("KPDocumentEndsReader");
    case DocumentFailure::Unsupported:
        return qtTrId("KPDocumentUnsupported");
    case DocumentFailure::Unreadable:
        break;
    }
    return qtTrId("KPDocumentUnreadable");
}

static XPError::Kind kindOf(DocumentFailure failure)
{
    switch (failure) {
    case DocumentFailure::Encrypted:
        return XPError::Kind::NotPermitted;
    case DocumentFailure::TooLarge:
    case DocumentFailure::TimedOut:
        return XPError::Kind::TooLarge;
    case DocumentFailure::Unsupported:
        return XPError::Kind::Unsupported;
    case DocumentFailure::Unreadable:
        return XPError::Kind::Io;
    case DocumentFailure::Damaged:
    case DocumentFailure::Crashed:
        break;
    }
    return XPError::Kind::Malformed;
}

// `reason` is for who looks into it: the signal that ended the importer.
static XPError failureOf(DocumentFailure failure, const QString &reason, const QString &path)
{
    if (!reason.isEmpty())
        qCWarning(xpLog).noquote()
            << XPPath::printable(path) << documentFailureName(failure) << reason;
    return XPError::make(kindOf(failure), wordsOf(failure), path);
}

ImportedDocument::ImportedDocument(const QString &path)
    : m_path(path), m_worker({.program = XPPrograms::helper("murn-importer"), .idle = false})
{
    if (const auto info = XPFileInfo::read(path))
        m_type = KPFileType::utiForPath(path, XPPath::extension(path), info->mode);
}

// Opened each time: it may have changed, and nothing is kept open between two pages.
static XPResult<ImportDocument> opened(const QString &path, const QString &type)
{
    if (const auto info = XPFileInfo::read(path); !info)
        return info.error();
    return ImportDocument::open(XPPath::encode(path), type);
}

XPResult<DocumentAnswer> ImportedDocument::read()
{
    const auto document = opened(m_path, m_type);
    if (!document)
        return document.error();
    auto outcome = m_worker.run(document->job(), document->descriptor.get());
    if (const auto *error = std::get_if<XPError>(&outcome))
        return *error;
    if (const auto *end = std::get_if<ImportWorker::Break>(&outcome))
        return failureOf(end->failure, end->reason, m_path);
    return documentAnswerFrom(std::get<ImportFrame>(outcome));
}

XPResult<QImage> ImportedDocument::picture(int page, int pixels)
{
    const auto document = opened(m_path, m_type);
    if (!document)
        return document.error();
    auto drawn = importPage(m_worker, *document, page, pixels);
    if (!drawn)
        return drawn.error();
    const auto reply = *std::move(drawn);
    if (!reply.failure)
        return reply.image;
    if (*reply.failure == DocumentFailure::Unsupported && page > 1)
        return XPError::make(XPError::Kind::NotFound, qtTrId("KPDocumentWithoutPage").arg(page),
                             m_path);
    return failureOf(*reply.failure, reply.reason, m_path);
}

XPResult<QImage> importPagePicture(const QString &path, int page, int pixels)
{
    return ImportedDocument(path).picture(page, pixels);
}

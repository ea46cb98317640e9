#include "PdfDocument.h"

std::optional<DocumentFailure> PdfDocument::open(const DocumentSource &source,
                                                 PdfDocument &document)
{
    // The library's complaints would be one line for each broken object of a hostile file.
    Poppler::setDebugErrorFunction([](const QString &, const QVariant &) {}, {});
    document.m_device = source.device();
    document.m_document = Poppler::Document::load(document.m_device.get());
    if (!document.m_document)
        return DocumentFailure::Damaged;
    if (document.m_document->isLocked())
        return DocumentFailure::Encrypted;
    return document.m_document->numPages() > 0 ? std::nullopt
                                               : std::optional(DocumentFailure::Damaged);
}

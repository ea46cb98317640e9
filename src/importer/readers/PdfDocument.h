#pragma once

#include "DocumentSource.h"

#include <QIODevice>
#include <memory>
#include <poppler-qt6.h>

// A PDF document opened from its descriptor, for its text and for the pictures of its pages.
// Reads what it needs, when it needs it: a document of gigabytes is not loaded.
// Threads: any; one object, one thread.
class PdfDocument
{
public:
    // Encrypted: a password is needed. Damaged: not even the library's repair finds pages.
    static std::optional<DocumentFailure> open(const DocumentSource &source, PdfDocument &document);

    Poppler::Document &poppler() const { return *m_document; }

private:
    std::unique_ptr<QIODevice> m_device; // read from as long as the document lives
    std::unique_ptr<Poppler::Document> m_document;
};

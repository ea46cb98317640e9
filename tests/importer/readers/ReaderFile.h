#pragma once

#include "DocumentReaders.h"
#include "KPContentTypes.h"
#include "XPFileDescriptor.h"

#include <QImage>
#include <sys/mman.h>
#include <unistd.h>

// A document in memory, read by the reader that its type has, outside the cage.
class ReaderFile
{
public:
    ReaderFile(const QString &type, const QByteArray &bytes, const QString &extension = {})
        : m_file(::memfd_create("document", MFD_CLOEXEC))
    {
        if (::write(m_file.get(), bytes.constData(), static_cast<size_t>(bytes.size())) !=
            bytes.size())
            qFatal("cannot write a test document");
        m_facts = {bytes.size(), type, KPContentTypes::typeTree(type),
                   KPContentTypes::preferredMimeType(KPContentTypes::numberOf(type)), extension};
    }

    DocumentAnswer read() const
    {
        DocumentAnswer answer;
        const DocumentReader *reader = documentReaderFor(m_facts.tree);
        answer.failure = reader ? reader->read(source(), answer) : DocumentFailure::Unsupported;
        return answer;
    }
    QString text() const { return QString::fromUtf8(read().text.utf8()); }
    QImage picture(int page, int pixels) const
    {
        QImage image;
        const DocumentReader *reader = documentReaderFor(m_facts.tree);
        if (!reader || reader->picture(source(), page, pixels, image))
            return {};
        return image;
    }
    DocumentSource source(std::function<bool()> stop = {}) const
    {
        return DocumentSource(m_file.get(), m_facts, std::move(stop));
    }

private:
    XPFileDescriptor m_file;
    DocumentSource::Facts m_facts;
};

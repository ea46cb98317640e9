#pragma once

#include "DocumentSource.h"

#include <fileref.h>
#include <tiostream.h>

// Audio and video opened from the descriptor, for its tags and for its cover.
// Threads: any; one object, one thread. The source must outlive it.
class MediaDocument
{
public:
    explicit MediaDocument(const DocumentSource &source);

    // Check isNull(): no format that the library knows.
    const TagLib::FileRef &file() const { return m_file; }

private:
    class Stream : public TagLib::IOStream
    {
    public:
        explicit Stream(const DocumentSource &source) : m_source(source) {}
        TagLib::FileName name() const override { return ""; }
        TagLib::ByteVector readBlock(unsigned long length) override;
        void writeBlock(const TagLib::ByteVector &) override {}
        void insert(const TagLib::ByteVector &, unsigned long, unsigned long) override {}
        void removeBlock(unsigned long, unsigned long) override {}
        bool readOnly() const override { return true; }
        bool isOpen() const override { return true; }
        void seek(long offset, Position from) override;
        long tell() const override { return m_at; }
        long length() override { return m_source.size(); }
        void truncate(long) override {}

    private:
        const DocumentSource &m_source;
        qint64 m_at = 0;
    };

    Stream m_stream;
    TagLib::FileRef m_file;
};

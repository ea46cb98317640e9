#include "XPGzip.h"

#include <QCoreApplication>
#include <algorithm>
#include <cerrno>
#include <new>
#include <unistd.h>
#include <zlib.h>

static constexpr qsizetype bufferSize = 128 << 10;
static constexpr int gzipWindow = 15 + 16; // the largest window; with gzip's header and checksum
static constexpr int memoryLevel = 8;      // zlib's own default

static Bytef *bytesOf(const QByteArray &bytes)
{
    // zlib reads through pointers that it does not call const.
    return reinterpret_cast<Bytef *>(const_cast<char *>(bytes.constData()));
}

// --- Writing

XPGzipWriter::XPGzipWriter(int file)
    : m_file(file), m_stream(std::make_unique<z_stream>()), m_buffer(bufferSize, Qt::Uninitialized)
{
    if (::deflateInit2(m_stream.get(), Z_DEFAULT_COMPRESSION, Z_DEFLATED, gzipWindow, memoryLevel,
                       Z_DEFAULT_STRATEGY) != Z_OK)
        throw std::bad_alloc(); // all else about the call is constant
}

XPGzipWriter::~XPGzipWriter()
{
    ::deflateEnd(m_stream.get());
}

static int writeAll(int file, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const ssize_t count = ::write(file, bytes.data(), static_cast<size_t>(bytes.size()));
        if (count < 0 && errno != EINTR)
            return errno;
        if (count > 0)
            bytes = bytes.sliced(count);
    }
    return 0;
}

std::optional<XPError> XPGzipWriter::add(QByteArrayView member)
{
    ::deflateReset(m_stream.get());
    m_stream->next_in = reinterpret_cast<Bytef *>(const_cast<char *>(member.data()));
    m_stream->avail_in = static_cast<uInt>(member.size());
    int state = Z_OK;
    while (state != Z_STREAM_END) {
        m_stream->next_out = bytesOf(m_buffer);
        m_stream->avail_out = static_cast<uInt>(m_buffer.size());
        state = ::deflate(m_stream.get(), Z_FINISH);
        const auto made = m_buffer.size() - static_cast<qsizetype>(m_stream->avail_out);
        if (const int error = writeAll(m_file, QByteArrayView(m_buffer).first(made)))
            return XPError::fromErrno(error);
    }
    return {};
}

// --- Reading

XPGzipReader::XPGzipReader(int file, qsizetype most)
    : m_file(file), m_most(most), m_stream(std::make_unique<z_stream>()),
      m_buffer(bufferSize, Qt::Uninitialized)
{
    if (::inflateInit2(m_stream.get(), gzipWindow) != Z_OK)
        throw std::bad_alloc();
}

XPGzipReader::~XPGzipReader()
{
    ::inflateEnd(m_stream.get());
}

qint64 XPGzipReader::offset() const
{
    return m_read - m_stream->avail_in;
}

int XPGzipReader::fill()
{
    if (m_stream->avail_in > 0)
        return 0;
    ssize_t got = 0;
    do
        got = ::pread(m_file, m_buffer.data(), static_cast<size_t>(m_buffer.size()), m_read);
    while (got < 0 && errno == EINTR);
    if (got < 0)
        return errno;
    m_read += got;
    m_stream->next_in = bytesOf(m_buffer);
    m_stream->avail_in = static_cast<uInt>(got);
    return 0;
}

XPError XPGzipReader::malformed(const QString &message) const
{
    return XPError::malformed(message, offset());
}

XPResult<std::optional<QByteArray>> XPGzipReader::next()
{
    if (const int error = fill())
        return XPError::fromErrno(error);
    if (m_stream->avail_in == 0)
        return std::optional<QByteArray>();
    ::inflateReset(m_stream.get());
    QByteArray member;
    qsizetype size = 0;
    for (int state = Z_OK; state != Z_STREAM_END;) {
        if (const int error = fill())
            return XPError::fromErrno(error);
        if (m_stream->avail_in == 0)
            return malformed(qtTrId("XPArchiveCutShort"));
        if (size == member.size())
            member.resize(std::min(m_most + 1, std::max(bufferSize, size * 2)));
        m_stream->next_out = bytesOf(member) + size;
        m_stream->avail_out = static_cast<uInt>(member.size() - size);
        state = ::inflate(m_stream.get(), Z_NO_FLUSH);
        size = member.size() - static_cast<qsizetype>(m_stream->avail_out);
        if (state != Z_OK && state != Z_STREAM_END && state != Z_BUF_ERROR)
            return malformed(qtTrId("XPArchiveDamaged"));
        if (size > m_most)
            return XPError::make(XPError::Kind::TooLarge, qtTrId("XPArchiveTooLarge"));
    }
    member.resize(size);
    return std::optional(member);
}

#pragma once

#include "XPError.h"

#include <QByteArray>
#include <memory>

struct z_stream_s;

// Files of several gzip members one after the other (RFC 1952), each of which is compressed by
// itself and carries its own checksum. A member is in memory as a whole, the file never.
// Threads: one at a time; blocking file calls. Ownership: the descriptors are the caller's.

class XPGzipWriter
{
public:
    // Appends where the file stands.
    explicit XPGzipWriter(int file);
    ~XPGzipWriter();
    XPGzipWriter(const XPGzipWriter &) = delete;
    XPGzipWriter &operator=(const XPGzipWriter &) = delete;

    std::optional<XPError> add(QByteArrayView member);

private:
    const int m_file;
    std::unique_ptr<z_stream_s> m_stream;
    QByteArray m_buffer;
};

class XPGzipReader
{
public:
    // From the beginning of the file, wherever it stands. A member that is longer than `most`
    // bytes is TooLarge, however few it takes in the file.
    XPGzipReader(int file, qsizetype most);
    ~XPGzipReader();
    XPGzipReader(const XPGzipReader &) = delete;
    XPGzipReader &operator=(const XPGzipReader &) = delete;

    // The next member; nothing at the end. Malformed, with the offset in the file, where it is cut,
    // altered or not compressed like this at all.
    XPResult<std::optional<QByteArray>> next();
    qint64 offset() const; // of what was not used yet

private:
    int fill(); // 0 or the errno
    XPError malformed(const QString &message) const;

    const int m_file;
    const qsizetype m_most;
    std::unique_ptr<z_stream_s> m_stream;
    QByteArray m_buffer;
    qint64 m_read = 0; // bytes of the file
};

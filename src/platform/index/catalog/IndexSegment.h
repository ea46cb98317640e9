#pragma once

#include "XPError.h"

#include <QByteArray>
#include <vector>

// A part of the saved index in a file of its own: columns as they lie in memory, one behind the
// other, so that opening is a few large reads.
//
// A segment is written whole under a new name and never changed; the store's database says which
// ones belong together, with their checksums. Whatever was torn by a power loss does not check.
namespace IndexSegment {

// A checksum against torn and foreign bytes, not against an adversary.
quint64 checksum(QByteArrayView bytes);

// Collects parts and writes them to a file in one go. The bytes must outlive write().
class Writer
{
public:
    void add(const void *data, size_t size);
    template <typename T>
    void add(const std::vector<T> &column)
    {
        add(column.data(), column.size() * sizeof(T));
    }
    void add(const QByteArray &bytes) { add(bytes.constData(), static_cast<size_t>(bytes.size())); }

    quint64 sum() const { return m_sum; }
    qint64 size() const { return m_size; }
    std::optional<XPError> write(const QByteArray &path) const;
    QByteArray joined() const;

private:
    std::vector<QByteArrayView> m_parts;
    qint64 m_size = 0;
    quint64 m_sum = 0;
};

// Reads what a Writer wrote, part by part in the same order and sizes; sum() is then the same.
// From a file or from memory. After a failure every read fails.
class Reader
{
public:
    explicit Reader(QByteArrayView bytes) : m_bytes(bytes), m_left(bytes.size()) {}
    explicit Reader(const QByteArray &path); // fails by itself when it cannot be opened
    ~Reader();
    Reader(const Reader &) = delete;
    Reader &operator=(const Reader &) = delete;

    bool read(void *data, size_t size);
    template <typename T>
    bool read(std::vector<T> *column, quint64 count)
    {
        if (count > static_cast<quint64>(m_left) / sizeof(T))
            return false;
        column->resize(count);
        return read(column->data(), count * sizeof(T));
    }
    bool read(QByteArray *bytes, quint64 size);
    bool atEnd() const { return m_left == 0; }
    quint64 sum() const { return m_sum; }
    int error() const { return m_error; } // errno of opening or reading; 0: none

private:
    int m_file = -1;
    int m_error = 0;
    QByteArrayView m_bytes;
    qint64 m_left = 0;
    quint64 m_sum = 0;
};

} // namespace IndexSegment

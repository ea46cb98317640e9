#pragma once

#include "IndexCatalog.h"

#include <array>

// The barest loops that do what the index is measured by. None of them is used by the index.
namespace IndexBaselines {

// All folded names of a catalog one after the other, each with a zero behind.
class NameBlob
{
public:
    explicit NameBlob(const IndexCatalog &catalog);
    // How often the bytes stand in it: first and last byte compared at 32 places at a time, the
    // rest where both fit.
    size_t count(QByteArrayView needle) const;
    size_t size() const { return m_bytes.size(); }

private:
    std::vector<char> m_bytes;
};

// Four facts of each file, packed: type, rating, managed mark, day of the last change.
class PackedColumns
{
public:
    explicit PackedColumns(const IndexCatalog &catalog);
    // Files of that type with at least that rating, that mark, changed after that day: all four
    // compared for 32 files at a time.
    size_t count(quint16 type, quint8 rating, bool managed, quint16 day) const;
    quint16 typeNumber(const QString &type) const; // that no file has, for one unknown
    static quint16 dayOf(qint64 nanoseconds);      // since 1970

private:
    std::vector<QString> m_types;
    std::vector<quint16> m_type;
    std::vector<quint16> m_day;
    std::vector<quint8> m_rating;
    std::vector<quint8> m_managed;
};

// Everything below a folder read by two threads that share the folders. Returns the files seen.
enum class Calls { Facts, FactsAndAttributes };
size_t walk(const QByteArray &root, Calls calls);

// The whole file read into new memory. Returns its size.
size_t readWhole(const QByteArray &path);

} // namespace IndexBaselines

#pragma once

#include "IndexFoldedList.h"
#include "IndexRecord.h"
#include "IndexSegment.h"

#include <memory>
#include <optional>

// 65,536 rows, column by column: the unit of growth, of scanning and of saving.
//
// The folded names stand in one piece. How the name on disk differs is kept beside that: mostly
// by which letters are capitals.
// Threads: as the catalog that owns it.
class IndexChunk
{
public:
    static constexpr quint32 capacity = 1U << 16;

    // What is known of a row beside its facts.
    enum Flag : quint8 {
        Dead = 1,     // its item is gone or has another row
        Imported = 2, // the content was imported as of the row's time and size
        System = 4,   // lies in (or is) a hidden folder, or below a system prefix
    };

    IndexChunk();
    IndexChunk(IndexChunk &&) = default;
    IndexChunk &operator=(IndexChunk &&) = default;

    quint32 size() const { return m_names.size(); }
    bool isFull() const { return size() == capacity; }

    // Appends a row; `type` and `device` are numbers of the catalog's tables.
    void append(const IndexRecord &record, quint32 type, quint16 device);
    // All but names and item.
    void setFacts(quint32 row, const XPFileInfo &info, quint32 type, quint16 device);
    void setFlag(quint32 row, Flag flag, bool on);
    bool hasFlag(quint32 row, Flag flag) const { return flags[row] & flag; }

    QByteArray name(quint32 row) const; // bytes on disk
    bool hasName(quint32 row, QByteArrayView name) const;
    bool isAsciiName(quint32 row) const;
    // The name, but that some of its ASCII letters may be in lower case.
    QByteArrayView caselessName(quint32 row) const;
    QByteArrayView foldedName(quint32 row) const { return m_names.at(row); }
    const IndexFoldedList &foldedNames() const { return m_names; }
    qint64 birth(quint32 row) const { return qint64{births[row]} * 1'000'000'000; }

    // Saved form. read() refuses whatever would make a later read leave its column.
    void write(IndexSegment::Writer &out) const;
    static std::optional<IndexChunk> read(IndexSegment::Reader &in);

    qsizetype memoryUsed() const;

    // The columns, in one block of memory.
    quint64 *inodes = nullptr;
    qint64 *sizes = nullptr;
    qint64 *modified = nullptr; // nanoseconds since 1970
    qint64 *changed = nullptr;
    IndexItem *items = nullptr;
    IndexItem *parents = nullptr;
    quint32 *types = nullptr;
    quint32 *births = nullptr; // whole seconds since 1970; 0: the file system does not keep it
    quint16 *modes = nullptr;
    quint16 *devices = nullptr;
    quint8 *flags = nullptr;
    bool dirty = true; // differs from what was saved last

private:
    // Set in m_originals: the other bits say which of the first 31 letters are capitals. Not set:
    // where the whole name stands in m_originalBytes.
    static constexpr quint32 capitals = 1U << 31;
    static std::optional<quint32> capitalsOf(QByteArrayView name, QByteArrayView folded);
    static constexpr size_t bytesARow = 4 * 8 + 4 * 4 + 2 * 2 + 1;

    template <typename Visit>
    void forEachColumn(Visit visit) const;
    void finish();

    struct Header
    {
        quint32 magic;
        quint32 rows;
        quint32 foldedBytes;
        quint32 originalBytes;
    };
    mutable Header m_header{}; // as write() hands it out
    std::unique_ptr<char[]> m_block;
    IndexFoldedList m_names;
    std::vector<quint32> m_originals;
    QByteArray m_originalBytes; // names that differ in more than case, each with a zero behind
};

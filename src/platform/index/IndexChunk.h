#pragma once

#include "IndexRecord.h"

#include <array>
#include <vector>

// The number of a row in memory. A renamed item gets a new slot, so that the names of a chunk
// stay in one piece in the order of its rows; the item's number stays the same.
using IndexSlot = quint32;

// 65,536 rows, column by column: the unit of growth, of scanning and of saving.
//
// A row's name stands twice: as bytes on disk, and folded (foldText, then XPPath::encode), all
// folded names one after the other with a zero behind each, so that one pass over contiguous
// memory finds a word in all of them. A name that is its own folded form is kept once.
// Threads: as the catalog that owns it.
class IndexChunk
{
public:
    static constexpr quint32 capacity = 1U << 16;

    quint32 size() const { return static_cast<quint32>(items.size()); }
    bool isFull() const { return size() == capacity; }

    // Appends a row; `type` and `device` are numbers of the catalog's tables.
    void append(const IndexRecord &record, quint32 type, quint16 device);
    // All but names and item.
    void setFacts(quint32 row, const XPFileInfo &info, quint32 type, quint16 device);

    QByteArrayView name(quint32 row) const;
    QByteArrayView foldedName(quint32 row) const;
    const QByteArray &foldedNames() const { return m_folded; }
    // The row whose folded name holds that offset of foldedNames().
    quint32 rowAtFoldedOffset(quint32 offset) const;
    const std::vector<quint32> &foldedStarts() const { return m_foldedStart; }

    // Saved form; deserialise() refuses whatever would make a later read leave its column.
    QByteArray serialise() const;
    static XPResult<IndexChunk> deserialise(QByteArrayView bytes);

    qsizetype memoryUsed() const;

    std::vector<IndexItem> items;
    std::vector<IndexItem> parents;
    std::vector<quint32> modes;
    std::vector<quint32> types;
    std::vector<quint16> devices;
    std::vector<qint64> sizes;
    std::vector<qint64> modified; // nanoseconds since 1970, as all times here
    std::vector<qint64> changed;
    std::vector<qint64> births;
    std::vector<quint64> inodes;
    bool dirty = true; // differs from what was saved last

private:
    static constexpr quint32 sameAsFolded = ~0U;

    QByteArray m_folded;
    QByteArray m_names; // only those that differ from their folded form, each with a zero behind
    std::vector<quint32> m_foldedStart; // size() + 1 of them
    std::vector<quint32> m_nameStart;   // or sameAsFolded
};

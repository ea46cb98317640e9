#include "IndexChunk.h"

#include <algorithm>
#include <limits>

static constexpr quint32 chunkMagic = 0x324B4349; // "ICK2", little-endian machines only

IndexChunk::IndexChunk() : m_block(new char[capacity * bytesARow])
{
    // Widest columns first, so that each is aligned.
    char *at = m_block.get();
    const auto place = [&]<typename T>(T *&column) {
        column = reinterpret_cast<T *>(at);
        at += capacity * sizeof(T);
    };
    place(inodes);
    place(sizes);
    place(modified);
    place(changed);
    place(items);
    place(parents);
    place(types);
    place(births);
    place(modes);
    place(devices);
    place(flags);
}

template <typename Visit>
void IndexChunk::forEachColumn(Visit visit) const
{
    visit(inodes, sizeof *inodes);
    visit(sizes, sizeof *sizes);
    visit(modified, sizeof *modified);
    visit(changed, sizeof *changed);
    visit(items, sizeof *items);
    visit(parents, sizeof *parents);
    visit(types, sizeof *types);
    visit(births, sizeof *births);
    visit(modes, sizeof *modes);
    visit(devices, sizeof *devices);
    visit(flags, sizeof *flags);
}

void IndexChunk::append(const IndexRecord &record, quint32 type, quint16 device)
{
    const quint32 row = size();
    const QByteArray folded = IndexFoldedList::foldedName(record.name);
    if (folded == record.name) {
        m_originalStarts.push_back(sameAsFolded);
    } else {
        m_originalStarts.push_back(static_cast<quint32>(m_originals.size()));
        m_originals.append(record.name);
        m_originals.append('\0');
    }
    m_names.append(folded);
    items[row] = record.item;
    parents[row] = record.parent;
    flags[row] = 0;
    setFacts(row, record.info, type, device);
    if (isFull())
        finish();
}

void IndexChunk::finish()
{
    m_names.squeeze();
    m_originals.squeeze();
    m_originalStarts.shrink_to_fit();
}

void IndexChunk::setFacts(quint32 row, const XPFileInfo &info, quint32 type, quint16 device)
{
    modes[row] = static_cast<quint16>(info.mode); // type and permission bits fill 16
    types[row] = type;
    devices[row] = device;
    sizes[row] = info.size;
    modified[row] = info.modified;
    changed[row] = info.changed;
    births[row] = static_cast<quint32>(
        std::clamp<qint64>(info.birth / 1'000'000'000, 0, std::numeric_limits<quint32>::max()));
    inodes[row] = info.inode;
    dirty = true;
}

void IndexChunk::setFlag(quint32 row, Flag flag, bool on)
{
    const auto now = static_cast<quint8>(on ? flags[row] | flag : flags[row] & ~flag);
    dirty = dirty || now != flags[row];
    flags[row] = now;
}

QByteArrayView IndexChunk::name(quint32 row) const
{
    const quint32 start = m_originalStarts[row];
    if (start == sameAsFolded)
        return foldedName(row);
    return QByteArrayView(m_originals.constData() + start); // up to its zero
}

qsizetype IndexChunk::memoryUsed() const
{
    return size() * static_cast<qsizetype>(bytesARow + 8) + m_names.bytes().capacity() +
           m_originals.capacity();
}

// --- Saved form: a header, then each column as it is in memory

void IndexChunk::write(IndexSegment::Writer &out) const
{
    m_header = {chunkMagic, size(), static_cast<quint32>(m_names.bytes().size()),
                static_cast<quint32>(m_originals.size())};
    out.add(&m_header, sizeof m_header);
    forEachColumn([&](const auto *column, size_t width) { out.add(column, size() * width); });
    out.add(m_names.starts());
    out.add(m_originalStarts);
    out.add(m_names.bytes());
    out.add(m_originals);
}

std::optional<IndexChunk> IndexChunk::read(IndexSegment::Reader &in)
{
    Header header = {};
    if (!in.read(&header, sizeof header) || header.magic != chunkMagic || header.rows > capacity)
        return {};
    IndexChunk chunk;
    bool good = true;
    chunk.forEachColumn(
        [&](auto *column, size_t width) { good = good && in.read(column, header.rows * width); });
    std::vector<quint32> starts;
    QByteArray folded;
    good = good && in.read(&starts, header.rows + 1) &&
           in.read(&chunk.m_originalStarts, header.rows) && in.read(&folded, header.foldedBytes) &&
           in.read(&chunk.m_originals, header.originalBytes) && in.atEnd() &&
           chunk.m_names.restore(std::move(folded), std::move(starts));
    const quint32 originals = header.originalBytes;
    if (!good || (originals && chunk.m_originals.back() != '\0'))
        return {};
    const auto fits = [&](quint32 start) { return start == sameAsFolded || start < originals; };
    if (!std::all_of(chunk.m_originalStarts.begin(), chunk.m_originalStarts.end(), fits))
        return {};
    chunk.dirty = false;
    return chunk;
}

#include "IndexChunk.h"

#include <algorithm>
#include <limits>

static constexpr quint32 chunkMagic = 0x334B4349; // "ICK3", little-endian machines only

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
    if (const auto mask = capitalsOf(record.name, folded)) {
        m_originals.push_back(capitals | *mask);
    } else {
        m_originals.push_back(static_cast<quint32>(m_originalBytes.size()));
        m_originalBytes.append(record.name);
        m_originalBytes.append('\0');
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
    m_originalBytes.squeeze();
    m_originals.shrink_to_fit();
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

// --- Names

static bool isAscii(QByteArrayView bytes)
{
    quint8 all = 0;
    for (const char byte : bytes)
        all |= static_cast<quint8>(byte);
    return all < 0x80;
}

std::optional<quint32> IndexChunk::capitalsOf(QByteArrayView name, QByteArrayView folded)
{
    if (name.size() != folded.size())
        return {};
    quint32 mask = 0;
    for (qsizetype i = 0; i < name.size(); ++i) {
        if (name[i] == folded[i])
            continue;
        if (i >= 31 || name[i] < 'A' || name[i] > 'Z' || name[i] + ('a' - 'A') != folded[i])
            return {};
        mask |= 1U << i;
    }
    return mask;
}

QByteArrayView IndexChunk::caselessName(quint32 row) const
{
    if (m_originals[row] & capitals)
        return foldedName(row);
    return QByteArrayView(m_originalBytes.constData() + m_originals[row]); // up to its zero
}

QByteArray IndexChunk::name(quint32 row) const
{
    QByteArray name = caselessName(row).toByteArray();
    if (!(m_originals[row] & capitals))
        return name;
    for (quint32 mask = m_originals[row] & ~capitals; mask; mask &= mask - 1) {
        char &letter = name.data()[__builtin_ctz(mask)];
        letter = static_cast<char>(letter - ('a' - 'A'));
    }
    return name;
}

bool IndexChunk::hasName(quint32 row, QByteArrayView name) const
{
    const QByteArrayView known = caselessName(row);
    if (!(m_originals[row] & capitals))
        return known == name;
    return known.size() == name.size() &&
           capitalsOf(name, known) == std::optional(m_originals[row] & ~capitals);
}

bool IndexChunk::isAsciiName(quint32 row) const
{
    return isAscii(caselessName(row));
}

qsizetype IndexChunk::memoryUsed() const
{
    return size() * static_cast<qsizetype>(bytesARow + 8) + m_names.bytes().capacity() +
           m_originalBytes.capacity();
}

// --- Saved form: a header, then each column as it is in memory

void IndexChunk::write(IndexSegment::Writer &out) const
{
    m_header = {chunkMagic, size(), static_cast<quint32>(m_names.bytes().size()),
                static_cast<quint32>(m_originalBytes.size())};
    out.add(&m_header, sizeof m_header);
    forEachColumn([&](const auto *column, size_t width) { out.add(column, size() * width); });
    out.add(m_names.starts());
    out.add(m_originals);
    out.add(m_names.bytes());
    out.add(m_originalBytes);
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
    good = good && in.read(&starts, header.rows + 1) && in.read(&chunk.m_originals, header.rows) &&
           in.read(&folded, header.foldedBytes) &&
           in.read(&chunk.m_originalBytes, header.originalBytes) && in.atEnd() &&
           chunk.m_names.restore(std::move(folded), std::move(starts));
    const quint32 bytes = header.originalBytes;
    if (!good || (bytes && chunk.m_originalBytes.back() != '\0'))
        return {};
    // A capital stands where the folded name has a small letter.
    const auto fits = [&](quint32 row) {
        const quint32 original = chunk.m_originals[row];
        if (!(original & capitals))
            return original < bytes;
        const QByteArrayView name = chunk.foldedName(row);
        for (quint32 mask = original & ~capitals; mask; mask &= mask - 1) {
            const qsizetype at = __builtin_ctz(mask);
            if (at >= name.size() || name[at] < 'a' || name[at] > 'z')
                return false;
        }
        return true;
    };
    for (quint32 row = 0; row < header.rows; ++row) {
        if (!fits(row))
            return {};
    }
    chunk.dirty = false;
    return chunk;
}

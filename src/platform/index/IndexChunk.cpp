#include "IndexChunk.h"

#include "XPPath.h"
#include "XPText.h"

#include <algorithm>
#include <cstring>

static QByteArray folded(const QByteArray &name)
{
    return XPPath::encode(foldText(XPPath::decode(name)));
}

void IndexChunk::append(const IndexRecord &record, quint32 type, quint16 device)
{
    const QByteArray fold = folded(record.name);
    if (m_foldedStart.empty())
        m_foldedStart.push_back(0);
    m_folded.append(fold);
    m_folded.append('\0');
    m_foldedStart.push_back(static_cast<quint32>(m_folded.size()));
    if (fold == record.name) {
        m_nameStart.push_back(sameAsFolded);
    } else {
        m_nameStart.push_back(static_cast<quint32>(m_names.size()));
        m_names.append(record.name);
        m_names.append('\0');
    }
    items.push_back(record.item);
    parents.push_back(record.parent);
    modes.push_back(0);
    types.push_back(0);
    devices.push_back(0);
    sizes.push_back(0);
    modified.push_back(0);
    changed.push_back(0);
    births.push_back(0);
    inodes.push_back(0);
    setFacts(size() - 1, record.info, type, device);
}

void IndexChunk::setFacts(quint32 row, const XPFileInfo &info, quint32 type, quint16 device)
{
    modes[row] = info.mode;
    types[row] = type;
    devices[row] = device;
    sizes[row] = info.size;
    modified[row] = info.modified;
    changed[row] = info.changed;
    births[row] = info.birth;
    inodes[row] = info.inode;
    dirty = true;
}

QByteArrayView IndexChunk::foldedName(quint32 row) const
{
    return QByteArrayView(m_folded.constData() + m_foldedStart[row],
                          m_foldedStart[row + 1] - m_foldedStart[row] - 1);
}

QByteArrayView IndexChunk::name(quint32 row) const
{
    const quint32 start = m_nameStart[row];
    if (start == sameAsFolded)
        return foldedName(row);
    return QByteArrayView(m_names.constData() + start); // up to its zero
}

quint32 IndexChunk::rowAtFoldedOffset(quint32 offset) const
{
    const auto next = std::upper_bound(m_foldedStart.begin(), m_foldedStart.end(), offset);
    return static_cast<quint32>(next - m_foldedStart.begin()) - 1;
}

qsizetype IndexChunk::memoryUsed() const
{
    const qsizetype perRow = 4 * 4 + 2 + 4 * 8 + 8 + 2 * 4;
    return static_cast<qsizetype>(items.capacity()) * perRow + m_folded.capacity() +
           m_names.capacity();
}

// --- Saved form: a magic number, the row count, then each column as it is in memory.

static constexpr quint32 chunkMagic = 0x314B4349; // "ICK1", little-endian machines only

template <typename T>
static void put(QByteArray &out, const std::vector<T> &column)
{
    out.append(reinterpret_cast<const char *>(column.data()),
               static_cast<qsizetype>(column.size() * sizeof(T)));
}

static void put(QByteArray &out, const QByteArray &bytes)
{
    const auto size = static_cast<quint32>(bytes.size());
    out.append(reinterpret_cast<const char *>(&size), sizeof size);
    out.append(bytes);
}

namespace {

class Reader
{
public:
    explicit Reader(QByteArrayView bytes) : m_rest(bytes) {}

    template <typename T>
    bool get(std::vector<T> &column, size_t count)
    {
        const size_t bytes = count * sizeof(T);
        if (static_cast<size_t>(m_rest.size()) < bytes)
            return false;
        column.resize(count);
        if (bytes)
            std::memcpy(column.data(), m_rest.data(), bytes);
        m_rest = m_rest.sliced(static_cast<qsizetype>(bytes));
        return true;
    }
    bool get(quint32 &value)
    {
        if (m_rest.size() < qsizetype(sizeof value))
            return false;
        std::memcpy(&value, m_rest.data(), sizeof value);
        m_rest = m_rest.sliced(sizeof value);
        return true;
    }
    bool get(QByteArray &bytes)
    {
        quint32 size = 0;
        if (!get(size) || m_rest.size() < qsizetype(size))
            return false;
        bytes = m_rest.first(size).toByteArray();
        m_rest = m_rest.sliced(size);
        return true;
    }
    bool atEnd() const { return m_rest.isEmpty(); }

private:
    QByteArrayView m_rest;
};

} // namespace

QByteArray IndexChunk::serialise() const
{
    QByteArray out;
    out.reserve(memoryUsed() + 64);
    const quint32 head[2] = {chunkMagic, size()};
    out.append(reinterpret_cast<const char *>(head), sizeof head);
    put(out, items);
    put(out, parents);
    put(out, modes);
    put(out, types);
    put(out, devices);
    put(out, sizes);
    put(out, modified);
    put(out, changed);
    put(out, births);
    put(out, inodes);
    put(out, m_foldedStart);
    put(out, m_nameStart);
    put(out, m_folded);
    put(out, m_names);
    return out;
}

XPResult<IndexChunk> IndexChunk::deserialise(QByteArrayView bytes)
{
    const auto damaged = XPError::malformed(QStringLiteral("damaged columns in the index"));
    Reader in(bytes);
    IndexChunk chunk;
    quint32 magic = 0;
    quint32 count = 0;
    if (!in.get(magic) || magic != chunkMagic || !in.get(count) || count > capacity)
        return damaged;
    const bool complete =
        in.get(chunk.items, count) && in.get(chunk.parents, count) && in.get(chunk.modes, count) &&
        in.get(chunk.types, count) && in.get(chunk.devices, count) && in.get(chunk.sizes, count) &&
        in.get(chunk.modified, count) && in.get(chunk.changed, count) &&
        in.get(chunk.births, count) && in.get(chunk.inodes, count) &&
        in.get(chunk.m_foldedStart, count ? count + 1 : 0) && in.get(chunk.m_nameStart, count) &&
        in.get(chunk.m_folded) && in.get(chunk.m_names) && in.atEnd();
    if (!complete)
        return damaged;
    const auto foldedSize = static_cast<quint32>(chunk.m_folded.size());
    const auto namesSize = static_cast<quint32>(chunk.m_names.size());
    if (count && (chunk.m_foldedStart.front() != 0 || chunk.m_foldedStart.back() != foldedSize))
        return damaged;
    if (namesSize && chunk.m_names.back() != '\0')
        return damaged;
    for (quint32 row = 0; row < count; ++row) {
        const quint32 end = chunk.m_foldedStart[row + 1];
        if (end <= chunk.m_foldedStart[row] || end > foldedSize || chunk.m_folded[end - 1] != '\0')
            return damaged;
        const quint32 name = chunk.m_nameStart[row];
        if (name != sameAsFolded && name >= namesSize)
            return damaged;
    }
    chunk.dirty = false;
    return chunk;
}

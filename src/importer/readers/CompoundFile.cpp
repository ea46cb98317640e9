#include "CompoundFile.h"

#include "ByteFields.h"
#include "DocumentSource.h"

#include <algorithm>

using namespace ByteFields;

static constexpr quint32 lastSector = 0xFFFFFFFA; // what is above it is a mark, no sector
static constexpr qint64 smallSectorSize = 64;
static constexpr qint64 entrySize = 128;
static constexpr qint64 longestDirectory = 4 << 20;
static constexpr qint64 longestSmallSectors = 64 << 20;
static constexpr size_t mostTableSectors = 1 << 16;

quint32 CompoundFile::next(quint32 sector) const
{
    return sector < m_table.size() ? m_table[sector] : ~quint32{0};
}

QByteArray CompoundFile::chain(quint32 start, qint64 limit) const
{
    QByteArray bytes;
    size_t steps = 0;
    for (quint32 at = start; at < lastSector && bytes.size() < limit && steps++ <= m_table.size();
         at = next(at)) {
        const auto sector = m_source->read((qint64{at} + 1) * m_sectorSize,
                                           std::min(m_sectorSize, limit - bytes.size()));
        if (!sector || sector->isEmpty())
            break;
        bytes += *sector;
    }
    return bytes;
}

QByteArray CompoundFile::smallChain(quint32 start, qint64 limit) const
{
    QByteArray bytes;
    size_t steps = 0;
    quint32 at = start;
    while (at < m_smallTable.size() && bytes.size() < limit && steps++ <= m_smallTable.size()) {
        bytes += part(m_smallSectors, qint64{at} * smallSectorSize,
                      std::min(smallSectorSize, limit - bytes.size()));
        at = m_smallTable[at];
    }
    return bytes;
}

static std::vector<quint32> numbersIn(QByteArrayView bytes)
{
    std::vector<quint32> numbers(static_cast<size_t>(bytes.size() / 4));
    qint64 at = 0;
    for (quint32 &number : numbers)
        number = little<quint32>(bytes, std::exchange(at, at + 4));
    return numbers;
}

// The table's own sectors are listed in the header and, beyond 109, in a chain of its own.
bool CompoundFile::readTable(const QByteArray &header)
{
    std::vector<quint32> sectors;
    for (qint64 at = 76; at < 512; at += 4)
        sectors.push_back(little<quint32>(header, at));
    const size_t stated = little<quint32>(header, 44);
    const auto perSector = static_cast<size_t>(m_sectorSize / 4);
    quint32 more = little<quint32>(header, 68);
    while (more < lastSector && sectors.size() < std::min(stated, mostTableSectors)) {
        const auto list = m_source->read((qint64{more} + 1) * m_sectorSize, m_sectorSize);
        if (!list || list->size() < m_sectorSize)
            break;
        const auto numbers = numbersIn(*list);
        sectors.insert(sectors.end(), numbers.begin(), numbers.end() - 1);
        more = numbers.back();
    }
    sectors.resize(std::min(sectors.size(), stated));
    for (const quint32 sector : sectors) {
        if (sector >= lastSector)
            break;
        const auto bytes = m_source->read((qint64{sector} + 1) * m_sectorSize, m_sectorSize);
        if (!bytes || bytes->isEmpty())
            break;
        const auto numbers = numbersIn(*bytes);
        m_table.insert(m_table.end(), numbers.begin(), numbers.end());
        if (numbers.size() < perSector)
            break;
    }
    return !m_table.empty();
}

// The children of the root: a binary tree by the entries' numbers, walked without recursion.
void CompoundFile::addEntries(const QByteArray &directory)
{
    const qint64 count = directory.size() / entrySize;
    std::vector<bool> isSeen(static_cast<size_t>(count), false);
    std::vector<quint32> open = {little<quint32>(directory, 76)}; // the root's first child
    while (!open.empty()) {
        const quint32 number = open.back();
        open.pop_back();
        if (number >= isSeen.size() || isSeen[number])
            continue;
        isSeen[number] = true;
        const QByteArrayView entry = part(directory, qint64{number} * entrySize, entrySize);
        open.push_back(little<quint32>(entry, 68));
        open.push_back(little<quint32>(entry, 72));
        const qint64 nameBytes = std::clamp<qint64>(little<quint16>(entry, 64) - 2, 0, 62);
        QString name;
        for (qint64 at = 0; at < nameBytes; at += 2)
            name += QChar(little<quint16>(entry, at));
        Stream stream{little<quint32>(entry, 116), little<quint64>(entry, 120)};
        if (m_sectorSize == 512) // the upper half is not defined in version 3
            stream.size &= 0xFFFFFFFF;
        if (entry[66] == 2) // a stream; 1 is a storage
            m_streams.insert(name, stream);
        m_names.append(name);
    }
}

void CompoundFile::readDirectory(quint32 start)
{
    const QByteArray directory = chain(start, longestDirectory);
    const qint64 smallSize = little<qint64>(directory, 120) & 0xFFFFFFFF;
    m_smallSectors =
        chain(little<quint32>(directory, 116), std::min(smallSize, longestSmallSectors));
    addEntries(directory);
}

XPResult<CompoundFile> CompoundFile::open(const DocumentSource &source)
{
    const auto header = source.read(0, 512);
    if (!header)
        return header.error();
    if (header->size() < 512 || !header->startsWith("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"))
        return XPError::malformed(QStringLiteral("no compound file"));
    CompoundFile file(source);
    const int shift = little<quint16>(*header, 30);
    if (shift != 9 && shift != 12)
        return XPError::malformed(QStringLiteral("sectors of an odd size"));
    file.m_sectorSize = qint64{1} << shift;
    file.m_smallBelow = little<quint32>(*header, 56);
    if (!file.readTable(*header))
        return XPError::malformed(QStringLiteral("a compound file without sectors"));
    file.m_smallTable =
        numbersIn(file.chain(little<quint32>(*header, 60), longestSmallSectors / 16));
    file.readDirectory(little<quint32>(*header, 48));
    if (file.m_names.isEmpty())
        return XPError::malformed(QStringLiteral("a compound file without entries"));
    return file;
}

QByteArray CompoundFile::stream(const QString &name, qint64 limit) const
{
    const auto found = m_streams.find(name);
    if (found == m_streams.end())
        return {};
    const qint64 size = static_cast<qint64>(
        std::min<quint64>(found->size, static_cast<quint64>(std::max<qint64>(limit, 0))));
    return found->size < m_smallBelow ? smallChain(found->start, size) : chain(found->start, size);
}

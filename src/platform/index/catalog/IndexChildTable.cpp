#include "IndexChildTable.h"

#include <algorithm>
#include <array>

quint32 IndexChildTable::hashOf(IndexItem parent, QByteArrayView name)
{
    std::array<char, 256> lower; // NOLINT(cppcoreguidelines-pro-type-member-init): filled below
    size_t size = 0;
    size_t hash = parent;
    const auto add = [&] {
        hash = qHashBits(lower.data(), size, hash);
        size = 0;
    };
    for (const char byte : name) {
        lower[size++] = byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + ('a' - 'A')) : byte;
        if (size == lower.size())
            add();
    }
    add();
    return static_cast<quint32>(hash ^ (hash >> 32));
}

void IndexChildTable::makeRoom(size_t rows)
{
    m_rows.assign(std::max<size_t>(1024, rows * 5 / 3), none);
    m_used = 0;
}

void IndexChildTable::insert(IndexSlot row, quint32 hash)
{
    size_t i = start(hash);
    while (m_rows[i] != none)
        i = after(i);
    m_rows[i] = row;
    ++m_used;
}

void IndexChildTable::erase(IndexSlot row, quint32 hash)
{
    for (size_t i = start(hash); m_rows[i] != none; i = after(i)) {
        if (m_rows[i] == row) {
            m_rows[i] = erased;
            return;
        }
    }
}

void IndexChildTable::countDown(IndexItem parent)
{
    const auto count = m_counts.find(parent);
    if (count != m_counts.end() && --*count == 0)
        m_counts.erase(count);
}

qsizetype IndexChildTable::memoryUsed() const
{
    return static_cast<qsizetype>(m_rows.capacity() * sizeof(IndexSlot)) + m_counts.capacity() * 10;
}

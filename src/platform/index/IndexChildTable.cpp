#include "IndexChildTable.h"

quint32 IndexChildTable::hashOf(IndexItem parent, QByteArrayView name)
{
    const size_t hash = qHashBits(name.data(), static_cast<size_t>(name.size()), parent);
    return static_cast<quint32>(hash ^ (hash >> 32));
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

void IndexChildTable::reserve(size_t rows)
{
    m_rows.assign(std::max<size_t>(1024, rows * 3 / 2), none);
    m_used = 0;
    m_counts.clear();
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

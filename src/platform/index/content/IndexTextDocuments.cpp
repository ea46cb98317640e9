#include "IndexTextDocuments.h"

#include <algorithm>
#include <cstring>
#include <type_traits>

using Entry = IndexTextDocuments::Entry;
static_assert(std::is_trivially_copyable_v<Entry> && sizeof(Entry) == 12);

// No item has a number near this: memory for a damaged one is not asked for.
static constexpr IndexItem highestItem = 1U << 28;

quint32 IndexTextDocuments::stampOf(qint64 modified, qint64 size)
{
    quint64 mixed = static_cast<quint64>(modified) * 0x9E3779B97F4A7C15ULL ^
                    static_cast<quint64>(size) * 0xC2B2AE3D27D4EB4FULL;
    mixed ^= mixed >> 29;
    return static_cast<quint32>((mixed * 0xFF51AFD7ED558CCDULL) >> 32);
}

void IndexTextDocuments::clear(quint32 first)
{
    m_first = first;
    m_entries.clear();
    m_documents.clear();
    m_all = 0;
    m_current = 0;
}

void IndexTextDocuments::append(const Entry &entry)
{
    if (entry.item >= m_documents.size())
        m_documents.resize(size_t{entry.item} + 1);
    if (const Entry *before = entryOf(entry.item))
        m_current -= before->bytes;
    m_documents[entry.item] = next();
    m_entries.push_back(entry);
    m_all += entry.bytes;
    m_current += entry.bytes;
}

void IndexTextDocuments::squeeze()
{
    // With room for a few more, so that not every new document costs a copy of all.
    const auto fit = [](auto &column) {
        if (column.capacity() - column.size() <= column.size() / 4)
            return;
        std::remove_reference_t<decltype(column)> fitting;
        fitting.reserve(column.size() + column.size() / 16);
        fitting.assign(column.begin(), column.end());
        column.swap(fitting);
    };
    fit(m_entries);
    fit(m_documents);
}

void IndexTextDocuments::dropBefore(quint32 first)
{
    if (first <= m_first)
        return;
    const auto count = std::min<size_t>(first - m_first, m_entries.size());
    for (size_t i = 0; i < count; ++i) {
        quint32 &document = m_documents[m_entries[i].item];
        m_all -= m_entries[i].bytes;
        if (document == m_first + i) {
            m_current -= m_entries[i].bytes;
            document = 0;
        }
    }
    m_entries.erase(m_entries.begin(), m_entries.begin() + static_cast<std::ptrdiff_t>(count));
    m_first = first;
}

IndexItem IndexTextDocuments::itemOf(quint32 document) const
{
    const IndexItem item = ownerOf(document);
    return item != 0 && m_documents[item] == document ? item : 0;
}

const Entry *IndexTextDocuments::entryOf(IndexItem item) const
{
    const quint32 document = documentOf(item);
    return document == 0 ? nullptr : &m_entries[document - m_first];
}

std::vector<IndexItem> IndexTextDocuments::items(quint32 end) const
{
    std::vector<IndexItem> found;
    for (quint32 document = m_first; document < std::min(end, next()); ++document) {
        const IndexItem item = itemOf(document);
        if (item != 0 && m_entries[document - m_first].bytes > 0)
            found.push_back(item);
    }
    return found;
}

QByteArray IndexTextDocuments::encode(const std::vector<Entry> &entries)
{
    return {reinterpret_cast<const char *>(entries.data()),
            static_cast<qsizetype>(entries.size() * sizeof(Entry))};
}

bool IndexTextDocuments::appendEncoded(QByteArrayView bytes)
{
    if (bytes.size() % static_cast<qsizetype>(sizeof(Entry)) != 0)
        return false;
    for (qsizetype at = 0; at < bytes.size(); at += static_cast<qsizetype>(sizeof(Entry))) {
        Entry entry;
        std::memcpy(static_cast<void *>(&entry), bytes.data() + at, sizeof entry);
        if (entry.item == 0 || entry.item >= highestItem)
            return false;
        append(entry);
    }
    return true;
}

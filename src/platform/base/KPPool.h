#pragma once

#include <QHashFunctions>
#include <QString>
#include <atomic>

// One string of the pool: a pointer. Equality and hash are by identity, which the pool makes
// the same as equality of code units. Default-constructed: the pool's empty string.
// Never freed; copies cost nothing; any thread, also in static initialisation and at exit.
class KPPooledString
{
public:
    constexpr KPPooledString() : m_entry(&emptyEntry) {}

    // The text without a copy: it refers to the pool's memory, which stays for the process.
    QString toString() const { return QString::fromRawData(data(), size()); }
    QStringView view() const { return m_entry->view(); }
    const QChar *data() const { return view().data(); } // ends in a 0
    qsizetype size() const { return m_entry->size; }
    bool isEmpty() const { return m_entry->size == 0; }
    // Of the text (XPTextTable::hash), not of the address.
    quint32 textHash() const { return m_entry->hash; }
    // Room for one pointer, null at first, that goes with the string: found without a table. It
    // belongs to the document cache, which keeps the record of a path there.
    std::atomic<void *> &attachment() const { return m_entry->attached; }

    friend bool operator==(KPPooledString a, KPPooledString b) { return a.m_entry == b.m_entry; }
    friend bool operator!=(KPPooledString a, KPPooledString b) { return a.m_entry != b.m_entry; }
    // By address: an order for containers, meaningless to people.
    friend bool operator<(KPPooledString a, KPPooledString b) { return a.m_entry < b.m_entry; }
    friend size_t qHash(KPPooledString s, size_t seed = 0) noexcept
    {
        return QT_PREPEND_NAMESPACE(qHash)(reinterpret_cast<quintptr>(s.m_entry), seed);
    }

private:
    friend class KPPool;
    struct Entry
    {
        quint32 hash;
        qint32 size;
        mutable std::atomic<void *> attached;
        char16_t text[1]; // `size` units and a terminating 0

        quint32 textHash() const { return hash; }
        QStringView view() const { return {static_cast<const char16_t *>(text), size}; }
    };
    static const Entry emptyEntry;

    explicit KPPooledString(const Entry *entry) : m_entry(entry) {}

    const Entry *m_entry;
};

// The process-wide pool of strings: equal strings are one object.
//
// For paths, tag keys and whatever else is compared millions of times. What enters stays, so
// never pool text without bound (a user's typing, file contents). Any thread; known strings are
// found without a lock, new ones wait only for others of the same part of the table.
class KPPool
{
public:
    static KPPooledString pooledString(QStringView text);

    // The pooled string of that text if there is one already; adds nothing. An empty text is
    // always known; `found` tells.
    static KPPooledString existingString(QStringView text, bool *found);

    // Number of distinct strings and the bytes the pool holds for them, table included.
    static qsizetype count();
    static qsizetype memoryUsed();

private:
    struct Shard;
    static Shard shards[];
};

#pragma once

#include <QHashFunctions>
#include <QString>

// One string of the pool: a pointer. Equality and hash are by identity, which the pool makes
// the same as equality of code units. Default-constructed: the pool's empty string.
// Never freed; copies cost nothing; any thread.
class KPPooledString
{
public:
    KPPooledString();

    // The text without a copy: it refers to the pool's memory, which stays for the process.
    QString toString() const { return QString::fromRawData(data(), size()); }
    QStringView view() const { return {data(), size()}; }
    const QChar *data() const { return reinterpret_cast<const QChar *>(m_entry->text); }
    qsizetype size() const { return m_entry->size; }
    bool isEmpty() const { return m_entry->size == 0; }

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
        char16_t text[1]; // `size` units and a terminating 0
    };
    explicit KPPooledString(const Entry *entry) : m_entry(entry) {}

    const Entry *m_entry;
};

// The process-wide pool of strings: equal strings are one object.
//
// For paths, tag keys and whatever else is compared millions of times. What enters stays, so
// never pool text without bound (a user's typing, file contents). Any thread; readers of known
// strings do not wait for each other (the table is split by hash).
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
};

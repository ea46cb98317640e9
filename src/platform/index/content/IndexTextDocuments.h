#pragma once

#include "IndexRecord.h"

#include <QByteArrayView>
#include <vector>

// Which stored text belongs to which item: every text put into the word index is a document with
// the next number, and an item's newest document is the only one that counts.
//
// A function of the entries appended in order, so that it is saved by appending, and a process
// that reads the index follows by appending what is new. 12 bytes for a document and 4 for an item.
// Threads: none of its own; the owner guards it.
class IndexTextDocuments
{
public:
    struct Entry
    {
        IndexItem item = 0;
        quint32 bytes = 0; // of text; 0: the item has none now
        quint32 stamp = 0; // of the file's state, see stampOf()
    };
    // Tells states of a file apart, as far as 32 bits do.
    static quint32 stampOf(qint64 modified, qint64 size);

    void clear(quint32 first = 1);
    void append(const Entry &entry); // the document next()
    quint32 first() const { return m_first; }
    quint32 next() const { return m_first + static_cast<quint32>(m_entries.size()); }
    void squeeze(); // gives back the memory held for more
    // Forgets the documents before `first`.
    void dropBefore(quint32 first);

    // 0: replaced since, or no such document.
    IndexItem itemOf(quint32 document) const;
    // The item whose text it is or was; 0: no such document.
    IndexItem ownerOf(quint32 document) const
    {
        return document < m_first || document >= next() ? 0 : m_entries[document - m_first].item;
    }
    // The newest; 0: none.
    quint32 documentOf(IndexItem item) const
    {
        return item < m_documents.size() ? m_documents[item] : 0;
    }
    // Null: the item has no document.
    const Entry *entryOf(IndexItem item) const;

    // Items with a text, of documents before `end` only.
    std::vector<IndexItem> items(quint32 end) const;
    // Bytes of all text, and what of it still counts.
    qint64 allBytes() const { return m_all; }
    qint64 currentBytes() const { return m_current; }

    static QByteArray encode(const std::vector<Entry> &entries);
    // False: not what encode() made.
    bool appendEncoded(QByteArrayView bytes);

private:
    quint32 m_first = 1; // the number of m_entries[0]
    std::vector<Entry> m_entries;
    std::vector<quint32> m_documents; // by item
    qint64 m_all = 0;
    qint64 m_current = 0;
};

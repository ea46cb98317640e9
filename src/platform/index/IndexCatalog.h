#pragma once

#include "IndexChunk.h"
#include "IndexPostings.h"

#include <QHash>
#include <memory>
#include <mutex>
#include <shared_mutex>
#include <vector>

// The index in memory: every item's row, and for each value of an attribute the rows that have it.
//
// A deterministic function of the batches applied to it: the keeping process applies what it
// finds on disk, other processes what they read from the journal, and both hold the same.
// Threads: apply() and load functions from one thread at a time, under the exclusive lock, which
// they take; all readers hold a Reading for as long as they use what it gives. A batch of a few
// thousand changes holds readers up for milliseconds at most; nobody does file work meanwhile.
class IndexCatalog
{
public:
    // Shared access for a scope.
    class Reading
    {
    public:
        explicit Reading(const IndexCatalog &catalog) : m_lock(catalog.m_mutex) {}

    private:
        std::shared_lock<std::shared_mutex> m_lock;
    };

    IndexCatalog();
    ~IndexCatalog();

    // Returns the items that are new, changed or gone, and those whose path changed because a
    // folder above them moved; without repeats, ascending.
    std::vector<IndexItem> apply(const IndexBatch &batch);

    // Everything below needs a Reading (or the thread that applies).

    quint64 generation() const { return m_generation; } // grows with each batch
    IndexItem lastItem() const { return static_cast<IndexItem>(m_slotOfItem.size() - 1); }
    qsizetype count() const { return static_cast<qsizetype>(m_alive.rows().cardinality()); }
    quint32 slotCount() const { return m_slotCount; }
    const IndexPosting &alive() const { return m_alive; }

    static constexpr IndexSlot noSlot = ~0U;
    IndexSlot slotOf(IndexItem item) const; // noSlot: gone, or never given
    IndexItem itemAt(IndexSlot slot) const { return chunkOf(slot).items[rowOf(slot)]; }

    const IndexChunk &chunkOf(IndexSlot slot) const { return *m_chunks[slot >> 16]; }
    static quint32 rowOf(IndexSlot slot) { return slot & 0xFFFF; }
    size_t chunkCount() const { return m_chunks.size(); }
    const IndexChunk &chunk(size_t number) const { return *m_chunks[number]; }

    QByteArray path(IndexSlot slot) const; // bytes
    // The item of a path, by its bytes; 0: not indexed.
    IndexItem itemAtPath(QByteArrayView path) const;
    IndexItem child(IndexItem parent, QByteArrayView name) const;
    quint32 childCount(IndexItem parent) const { return m_childCounts.value(parent); }
    std::vector<IndexItem> children(IndexItem parent) const; // one pass over the parent column
    const std::vector<IndexItem> &roots() const { return m_roots; }
    // Whether a row's facts are these, so that its attributes are too (setting one changes ctime).
    bool hasFacts(IndexSlot slot, const XPFileInfo &info) const;
    // Whether the content was imported as of that modification time and size.
    bool isImported(IndexSlot slot, qint64 modified, qint64 size) const;
    // (folder << 32 | item) for every item below a folder, ascending.
    std::vector<quint64> folderMembers() const;
    // `folder` itself and everything below it.
    RowSet below(IndexSlot folder) const;

    // A row back as the record it was made from, attributes included.
    IndexRecord record(IndexSlot slot) const;
    // One value: attributes on the file over imported ones. Null: absent.
    PropertyValue attribute(IndexSlot slot, const QString &name) const;

    QString type(IndexSlot slot) const { return m_types[chunkOf(slot).types[rowOf(slot)]]; }
    const std::vector<QString> &types() const { return m_types; }
    const IndexPosting &rowsOfType(quint32 type) const { return m_typeRows[type]; }
    const QHash<QString, IndexAttributePostings> &attributes() const { return m_attributes; }

    // Rows that are, or lie in, a folder whose name begins with a dot, or below a system prefix.
    RowSet systemRows() const;

    qsizetype memoryUsed() const;

    // Saving and loading (IndexStore): chunks, and what does not fit columns.
    std::vector<size_t> dirtyChunks() const;
    void markSaved();
    QByteArray serialiseTables() const;
    void clear(); // to nothing, as after construction
    // Replaces everything. After a failure only clear() is of use.
    std::optional<XPError> load(std::vector<IndexChunk> chunks, QByteArrayView tables);

private:
    struct RowValues
    {
        IndexRecord::Attributes file;
        IndexRecord::Attributes imported;
        IndexRecord::Attributes extra; // neither: told by the keeper
        qint64 importedModified = 0;
        qint64 importedSize = -1;

        PropertyValue value(const QString &name) const;
        QStringList names() const;
        bool isEmpty() const
        {
            return file.isEmpty() && imported.isEmpty() && extra.isEmpty() && importedSize < 0;
        }
    };

    void reset();
    void put(const IndexRecord &record);
    void move(const IndexRecord &record);
    void remove(IndexItem item);
    void setValues(IndexSlot slot, RowValues values);
    IndexSlot append(const IndexRecord &record);
    void setFacts(IndexSlot slot, const IndexRecord &record);
    void renameTo(IndexSlot old, const IndexRecord &record);
    quint32 typeNumber(const QString &type);
    quint16 deviceNumber(quint64 device);

    IndexChunk &changeable(IndexSlot slot) { return *m_chunks[slot >> 16]; }
    bool isSystemFolder(IndexSlot slot) const;

    // (folder, name) -> slot, open addressing over the columns themselves.
    size_t childHash(IndexItem parent, QByteArrayView name) const;
    void insertChild(IndexSlot slot);
    void eraseChild(IndexSlot slot);
    void growChildren();
    void attach(IndexSlot slot); // to its folder, or to the roots
    void detach(IndexSlot slot);

    mutable std::shared_mutex m_mutex;
    quint64 m_generation = 0;
    quint32 m_slotCount = 0;
    bool m_foldersMoved = false; // some folder stands behind its children
    std::vector<std::unique_ptr<IndexChunk>> m_chunks;
    std::vector<IndexSlot> m_slotOfItem; // by item number
    IndexPosting m_alive;
    std::vector<IndexSlot> m_children;
    size_t m_childrenUsed = 0; // entries and tombstones
    std::vector<IndexItem> m_roots;
    QHash<IndexItem, quint32> m_childCounts; // folders that hold something
    std::vector<QString> m_types;
    QHash<QString, quint32> m_typeNumbers;
    std::vector<IndexPosting> m_typeRows;
    std::vector<quint64> m_deviceTable;
    QHash<IndexSlot, RowValues> m_values; // rows that have any
    QHash<QString, IndexAttributePostings> m_attributes;
    std::vector<IndexItem> m_touched; // of the batch at hand

    mutable std::mutex m_derivedMutex; // the cached set below, made on demand by readers
    mutable quint64 m_systemGeneration = ~0ULL;
    mutable RowSet m_systemRows;
};

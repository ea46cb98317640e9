#pragma once

#include "IndexChildTable.h"
#include "IndexChunk.h"
#include "IndexPostings.h"
#include "IndexRecentRows.h"

#include <QHash>
#include <memory>
#include <mutex>
#include <shared_mutex>
#include <vector>

// The index in memory: every item's row, and for each value of an attribute the rows that have it.
//
// A deterministic function of the batches applied to it: the keeping process applies what it
// finds on disk, other processes what they read from the journal, and both hold the same items.
// Threads: apply(), clear(), load() and what stands beside them from one thread at a time; they
// take the exclusive lock for as short as they can. All readers hold a Reading for as long as they
// use what it gives; a shared set of rows may be kept, but its slots mean nothing after the
// Reading ends. Nobody does file work under it.
class IndexCatalog
{
    struct Data;

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
    IndexCatalog(const IndexCatalog &) = delete;
    IndexCatalog &operator=(const IndexCatalog &) = delete;

    // --- For the one thread that changes it

    // Returns the items that are new, changed or gone, and those whose path changed because a
    // folder above them moved; without repeats, ascending.
    std::vector<IndexItem> apply(const IndexBatch &batch);
    void clear(); // to nothing, as after construction
    // Makes finding a child by its name quick, which it is not after load(), as only those need it
    // who look for paths much. Until then childCount() knows nothing.
    void prepareForWriting();
    // Gives the names that are new since the last time their place in the order of names. apply()
    // does so when there are many; call it when there is nothing else to do.
    void orderNames();
    // Drops rows that have no item any more when they are many.
    void compact();

    // Saving and loading, for IndexStore. The bytes handed to a Writer are good until the next
    // change.
    size_t chunkCount() const { return d->chunks.size(); }
    const IndexChunk &chunk(size_t number) const { return *d->chunks[number]; }
    void markSaved();
    void markUnsaved(); // all of it
    QByteArray serialiseTables() const;
    const std::vector<quint32> &nameOrder() const { return d->nameRanks; }
    quint64 nameOrderVersion() const { return m_orderVersion; } // differs once it changed
    // What was saved, on its way into the catalog. The tables may be read while another thread
    // reads the chunks.
    class Loading
    {
    public:
        Loading();
        ~Loading();
        bool readTables(QByteArrayView bytes); // false: damaged

        std::vector<std::unique_ptr<IndexChunk>> chunks;
        std::vector<quint32> nameRanks; // may be missing or short

    private:
        friend class IndexCatalog;
        std::unique_ptr<Data> m_data;
        IndexItem m_lastItem = 0;
        std::vector<IndexSlot> m_rows; // that have values
    };
    // Replaces everything; on failure leaves it as it was.
    std::optional<XPError> load(Loading &&loading);

    // --- For readers: everything below needs a Reading (or the thread that changes)

    quint64 generation() const { return m_generation; } // grows with each batch
    IndexItem lastItem() const { return static_cast<IndexItem>(d->slotOfItem.size() - 1); }
    qsizetype count() const { return static_cast<qsizetype>(d->alive.rows().cardinality()); }
    quint32 slotCount() const { return d->slotCount; }
    const IndexPosting &alive() const { return d->alive; }

    static constexpr IndexSlot noSlot = IndexChildTable::none;
    IndexSlot slotOf(IndexItem item) const // noSlot: gone, or never given
    {
        return item < d->slotOfItem.size() ? d->slotOfItem[item] : noSlot;
    }
    IndexItem itemAt(IndexSlot slot) const { return chunkOf(slot).items[rowOf(slot)]; }

    const IndexChunk &chunkOf(IndexSlot slot) const { return *d->chunks[slot >> 16]; }
    static quint32 rowOf(IndexSlot slot) { return slot & 0xFFFF; }

    QByteArray path(IndexSlot slot) const; // bytes
    // The item of a path, by its bytes; 0: not indexed.
    IndexItem itemAtPath(QByteArrayView path) const;
    IndexItem child(IndexItem parent, QByteArrayView name) const;
    // The same, quickly when the child's row is `hint`: children read in the order in which they
    // were found stand one behind the other.
    IndexItem childNear(IndexItem parent, QByteArrayView name, IndexSlot hint) const;
    quint32 childCount(IndexItem parent) const { return d->children.countOf(parent); }
    std::vector<IndexItem> children(IndexItem parent) const; // one pass over the parent column
    const std::vector<IndexItem> &roots() const { return d->roots; }
    // Whether a row's facts are these, so that its attributes are too (setting one changes ctime).
    bool hasFacts(IndexSlot slot, const XPFileInfo &info) const;
    // Whether the content was imported as of that modification time and size.
    bool isImported(IndexSlot slot, qint64 modified, qint64 size) const;
    const Roaring &importedRows() const { return d->imported.rows(); }
    // (folder << 32 | item) for every item below a folder, ascending.
    std::vector<quint64> folderMembers() const;
    // `folder` itself and everything below it.
    RowSet below(IndexSlot folder) const;

    // A row back as the record it was made from, attributes included.
    IndexRecord record(IndexSlot slot) const;
    XPFileInfo info(IndexSlot slot) const; // the facts of it alone
    // One value: attributes on the file over told and imported ones. Null: absent.
    PropertyValue attribute(IndexSlot slot, const QString &name) const;
    // The entries of a row's values that count; good as long as the Reading.
    std::vector<IndexValues::Entry> values(IndexSlot slot) const;

    QString type(IndexSlot slot) const { return d->types[chunkOf(slot).types[rowOf(slot)]]; }
    const std::vector<QString> &types() const { return d->types; }
    const IndexPosting &rowsOfType(quint32 type) const { return d->typeRows[type]; }
    const IndexTexts &texts() const { return d->texts; }
    const std::vector<IndexAttributePostings> &attributes() const { return d->postings; }
    // Null: no row has it.
    const IndexAttributePostings *attributeNamed(const QString &name) const;
    std::optional<quint32> attributeNumber(const QString &name) const
    {
        return d->names.find(name);
    }

    // Rows that are, or lie in, a folder whose name begins with a dot, or below a system prefix.
    RowSet systemRows() const { return d->system.snapshot(); }

    // The place of a row in the order of folded names; `unordered` for a name that is too new.
    static constexpr quint32 unordered = ~0U;
    quint32 nameRank(IndexSlot slot) const
    {
        return slot < d->nameRanks.size() ? d->nameRanks[slot] : unordered;
    }

    // What the last queries found: names that contain a word (as of a generation), rows of several
    // types, and of several values (as of these versions).
    IndexRecentRows &recentNames() const { return m_recentNames; }
    IndexRecentRows &recentTypes() const { return m_recentTypes; }
    IndexRecentRows &recentValues() const { return m_recentValues; }
    quint64 typesVersion() const { return m_typesVersion; }
    quint64 valuesVersion() const { return m_valuesVersion; }

    qsizetype memoryUsed() const;

private:
    struct Data
    {
        Data();

        quint32 slotCount = 0;
        bool foldersMoved = false; // some folder stands behind its children
        std::vector<std::unique_ptr<IndexChunk>> chunks;
        std::vector<IndexSlot> slotOfItem; // by item number
        IndexPosting alive;
        IndexPosting imported;
        IndexPosting system;
        IndexChildTable children;
        std::vector<IndexItem> roots;
        std::vector<QString> types;
        QHash<QString, quint32> typeNumbers;
        std::vector<IndexPosting> typeRows;
        std::vector<quint64> devices;
        IndexValues::Names names;
        IndexTexts texts;
        QHash<IndexSlot, QByteArray> values;          // rows that have any
        std::vector<IndexAttributePostings> postings; // by number of the attribute's name
        std::vector<quint32> nameRanks;               // by slot
    };

    void applyChange(const IndexChange &change);
    bool isPlaceable(const IndexRecord &record) const;
    void put(const IndexRecord &record);
    void move(const IndexRecord &record);
    void remove(IndexItem item);
    void import(IndexSlot slot, const IndexRecord &record);
    void setOrigin(IndexSlot slot, IndexValues::Origin origin,
                   const IndexRecord::Attributes &attributes);
    IndexRecord::Attributes attributesOf(IndexSlot slot, IndexValues::Origin origin) const;
    void setValues(IndexSlot slot, QByteArray values);
    IndexAttributePostings &postingsOf(quint32 name);
    IndexSlot append(const IndexRecord &record);
    bool isOtherFile(IndexSlot slot, const XPFileInfo &info) const;
    void setFacts(IndexSlot slot, const IndexRecord &record);
    void renameTo(IndexSlot old, const IndexRecord &record);
    void attach(IndexSlot slot);
    void bury(IndexSlot slot);
    quint32 childHash(IndexSlot slot) const;
    std::vector<IndexSlot> orderBefore() const;
    void fillChildren(IndexChildTable &table) const;
    void setImported(IndexSlot slot, bool imported);
    void setSystem(IndexSlot slot, bool system);
    void updateSystem(IndexSlot folder, const RowSet &below);
    quint32 typeNumber(const QString &type);
    quint16 deviceNumber(quint64 device);

    IndexChunk &changeable(IndexSlot slot) { return *d->chunks[slot >> 16]; }
    bool isSystem(const IndexRecord &record) const;
    bool isChild(IndexSlot slot, IndexItem parent, QByteArrayView name) const;

    static bool readTables(QByteArrayView bytes, Data &data, IndexItem *last,
                           std::vector<IndexSlot> *rows);
    static bool placeRows(Data &data, IndexItem last);
    static void postValues(Data &data, const std::vector<IndexSlot> &rows);

    mutable std::shared_mutex m_mutex;
    quint64 m_generation = 0;
    quint64 m_orderVersion = 0;
    quint64 m_typesVersion = 0;
    quint64 m_valuesVersion = 0;
    std::unique_ptr<Data> d;
    std::vector<IndexItem> m_touched; // of the batch at hand
    mutable IndexRecentRows m_recentNames;
    mutable IndexRecentRows m_recentTypes;
    mutable IndexRecentRows m_recentValues;
};

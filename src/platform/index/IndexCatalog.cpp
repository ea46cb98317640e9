#include "IndexCatalog.h"

#include "XPPropertyList.h"

#include <QDataStream>
#include <QIODevice>
#include <algorithm>
#include <cstring>

static constexpr IndexSlot erasedChild = IndexCatalog::noSlot - 1;

IndexCatalog::IndexCatalog()
{
    clear();
}

IndexCatalog::~IndexCatalog() = default;

void IndexCatalog::clear()
{
    const std::unique_lock lock(m_mutex);
    reset();
}

void IndexCatalog::reset()
{
    m_slotCount = 0;
    m_foldersMoved = false;
    m_chunks.clear();
    m_slotOfItem.assign(1, noSlot); // item 0 is nobody
    m_alive = {};
    m_children.assign(1024, noSlot);
    m_childrenUsed = 0;
    m_roots.clear();
    m_childCounts.clear();
    m_types.assign(1, QString()); // type 0: not known
    m_typeNumbers.clear();
    m_typeRows.assign(1, IndexPosting());
    m_deviceTable.clear();
    m_values.clear();
    m_attributes.clear();
    ++m_generation;
}

// --- Applying

std::vector<IndexItem> IndexCatalog::apply(const IndexBatch &batch)
{
    const std::unique_lock lock(m_mutex);
    m_touched.clear();
    for (const IndexChange &change : batch) {
        const IndexRecord &record = change.record;
        if (record.item == 0)
            continue;
        const IndexSlot slot = slotOf(record.item);
        switch (change.kind) {
        case IndexChange::Kind::Put:
            put(record);
            break;
        case IndexChange::Kind::Move:
            if (slot != noSlot)
                move(record);
            break;
        case IndexChange::Kind::Remove:
            if (slot != noSlot)
                remove(record.item);
            break;
        case IndexChange::Kind::Import:
            if (slot != noSlot) {
                RowValues values = m_values.value(slot);
                values.imported = record.imported;
                values.importedModified = record.importedModified;
                values.importedSize = record.importedSize;
                setValues(slot, std::move(values));
            }
            break;
        case IndexChange::Kind::Attribute:
            if (slot != noSlot) {
                RowValues values = m_values.value(slot);
                for (auto entry = record.attributes.begin(); entry != record.attributes.end();
                     ++entry) {
                    if (entry->isNull())
                        values.extra.remove(entry.key());
                    else
                        values.extra.insert(entry.key(), *entry);
                }
                setValues(slot, std::move(values));
            }
            break;
        }
        m_touched.push_back(record.item);
    }
    ++m_generation;
    std::sort(m_touched.begin(), m_touched.end());
    m_touched.erase(std::unique(m_touched.begin(), m_touched.end()), m_touched.end());
    return std::move(m_touched);
}

void IndexCatalog::put(const IndexRecord &record)
{
    IndexSlot slot = slotOf(record.item);
    if (slot == noSlot) {
        slot = append(record);
    } else {
        const IndexChunk &chunk = chunkOf(slot);
        const quint32 row = rowOf(slot);
        if (chunk.parents[row] != record.parent || chunk.name(row) != QByteArrayView(record.name)) {
            move(record);
            slot = slotOf(record.item);
        } else {
            setFacts(slot, record);
        }
    }
    const auto known = m_values.constFind(slot);
    if (known == m_values.cend() && record.attributes.isEmpty())
        return;
    RowValues values = known == m_values.cend() ? RowValues() : *known;
    if (values.file == record.attributes)
        return;
    values.file = record.attributes;
    setValues(slot, std::move(values));
}

IndexSlot IndexCatalog::append(const IndexRecord &record)
{
    if (m_chunks.empty() || m_chunks.back()->isFull())
        m_chunks.push_back(std::make_unique<IndexChunk>());
    const IndexSlot slot = m_slotCount++;
    const quint32 type = typeNumber(record.type);
    m_chunks.back()->append(record, type, deviceNumber(record.info.device));
    if (m_slotOfItem.size() <= record.item)
        m_slotOfItem.resize(record.item + 1, noSlot);
    m_slotOfItem[record.item] = slot;
    m_alive.add(slot);
    m_typeRows[type].add(slot);
    attach(slot);
    return slot;
}

void IndexCatalog::setFacts(IndexSlot slot, const IndexRecord &record)
{
    const quint32 type = typeNumber(record.type);
    IndexChunk &chunk = changeable(slot);
    const quint32 before = chunk.types[rowOf(slot)];
    if (before != type) {
        m_typeRows[before].remove(slot);
        m_typeRows[type].add(slot);
    }
    chunk.setFacts(rowOf(slot), record.info, type, deviceNumber(record.info.device));
}

void IndexCatalog::move(const IndexRecord &record)
{
    const IndexSlot old = slotOf(record.item);
    const bool folder = S_ISDIR(chunkOf(old).modes[rowOf(old)]);
    renameTo(old, record);
    if (folder) {
        m_foldersMoved = true;
        // The items below have new paths, though their rows did not change.
        const RowSet rows = below(slotOf(record.item));
        for (const quint32 slot : *rows)
            m_touched.push_back(itemAt(slot));
    }
}

void IndexCatalog::renameTo(IndexSlot old, const IndexRecord &record)
{
    RowValues values = m_values.value(old);
    setValues(old, {});
    detach(old);
    m_alive.remove(old);
    m_typeRows[chunkOf(old).types[rowOf(old)]].remove(old);
    const IndexSlot slot = append(record);
    setValues(slot, std::move(values));
}

void IndexCatalog::remove(IndexItem item)
{
    const IndexSlot slot = slotOf(item);
    setValues(slot, {});
    detach(slot);
    m_alive.remove(slot);
    m_typeRows[chunkOf(slot).types[rowOf(slot)]].remove(slot);
    m_slotOfItem[item] = noSlot;
}

PropertyValue IndexCatalog::RowValues::value(const QString &name) const
{
    if (const auto entry = file.constFind(name); entry != file.cend())
        return *entry;
    if (const auto entry = extra.constFind(name); entry != extra.cend())
        return *entry;
    return imported.value(name);
}

QStringList IndexCatalog::RowValues::names() const
{
    QStringList names = file.keys() + extra.keys() + imported.keys();
    names.removeDuplicates();
    return names;
}

void IndexCatalog::setValues(IndexSlot slot, RowValues values)
{
    const RowValues before = m_values.take(slot);
    for (const QString &name : before.names()) {
        const PropertyValue value = before.value(name);
        if (value != values.value(name))
            m_attributes[name].remove(slot, value);
    }
    for (const QString &name : values.names()) {
        const PropertyValue value = values.value(name);
        if (value != before.value(name))
            m_attributes[name].add(slot, value);
    }
    if (!values.isEmpty())
        m_values.insert(slot, values);
}

quint32 IndexCatalog::typeNumber(const QString &type)
{
    if (type.isEmpty())
        return 0;
    const auto known = m_typeNumbers.constFind(type);
    if (known != m_typeNumbers.cend())
        return *known;
    const auto number = static_cast<quint32>(m_types.size());
    m_types.push_back(type);
    m_typeRows.emplace_back();
    m_typeNumbers.insert(type, number);
    return number;
}

quint16 IndexCatalog::deviceNumber(quint64 device)
{
    const auto known = std::find(m_deviceTable.begin(), m_deviceTable.end(), device);
    const auto number = static_cast<quint16>(known - m_deviceTable.begin());
    if (known == m_deviceTable.end() && m_deviceTable.size() < 0xFFFF)
        m_deviceTable.push_back(device);
    return number;
}

// --- Reading

IndexSlot IndexCatalog::slotOf(IndexItem item) const
{
    return item < m_slotOfItem.size() ? m_slotOfItem[item] : noSlot;
}

QByteArray IndexCatalog::path(IndexSlot slot) const
{
    std::vector<QByteArrayView> parts;
    qsizetype size = 0;
    // A folder that is its own ancestor cannot be made by apply(); a damaged store could.
    for (int depth = 0; slot != noSlot && depth < 4096; ++depth) {
        const IndexChunk &chunk = chunkOf(slot);
        parts.push_back(chunk.name(rowOf(slot)));
        size += parts.back().size() + 1;
        slot = slotOf(chunk.parents[rowOf(slot)]);
    }
    QByteArray path;
    path.reserve(size);
    for (auto part = parts.rbegin(); part != parts.rend(); ++part) {
        if (!path.isEmpty() && !path.endsWith('/'))
            path.append('/');
        path.append(*part);
    }
    return path;
}

IndexItem IndexCatalog::child(IndexItem parent, QByteArrayView name) const
{
    const size_t mask = m_children.size() - 1;
    for (size_t i = childHash(parent, name) & mask; m_children[i] != noSlot; i = (i + 1) & mask) {
        const IndexSlot slot = m_children[i];
        if (slot == erasedChild)
            continue;
        const IndexChunk &chunk = chunkOf(slot);
        if (chunk.parents[rowOf(slot)] == parent && chunk.name(rowOf(slot)) == name)
            return chunk.items[rowOf(slot)];
    }
    return 0;
}

IndexItem IndexCatalog::itemAtPath(QByteArrayView path) const
{
    // The root whose path is the longest prefix; then down, name by name.
    IndexItem item = 0;
    qsizetype start = 0;
    for (const IndexItem root : roots()) {
        const IndexSlot slot = slotOf(root);
        const QByteArrayView name = chunkOf(slot).name(rowOf(slot));
        const bool inside = path.startsWith(name) &&
                            (path.size() == name.size() || name == "/" || path[name.size()] == '/');
        if (inside && name.size() >= start) {
            item = root;
            start = name.size();
        }
    }
    while (item && start < path.size()) {
        if (path[start] == '/') {
            ++start;
            continue;
        }
        qsizetype end = start;
        while (end < path.size() && path[end] != '/')
            ++end;
        item = child(item, path.sliced(start, end - start));
        start = end;
    }
    return item;
}

std::vector<IndexItem> IndexCatalog::children(IndexItem parent) const
{
    std::vector<IndexItem> found;
    if (childCount(parent) == 0)
        return found;
    IndexSlot slot = 0;
    for (const auto &chunk : m_chunks) {
        for (const IndexItem candidate : chunk->parents) {
            if (candidate == parent && m_alive.contains(slot))
                found.push_back(itemAt(slot));
            ++slot;
        }
    }
    return found;
}

bool IndexCatalog::hasFacts(IndexSlot slot, const XPFileInfo &info) const
{
    const IndexChunk &chunk = chunkOf(slot);
    const quint32 row = rowOf(slot);
    return chunk.changed[row] == info.changed && chunk.inodes[row] == info.inode &&
           chunk.modified[row] == info.modified && chunk.sizes[row] == info.size &&
           chunk.modes[row] == info.mode;
}

bool IndexCatalog::isImported(IndexSlot slot, qint64 modified, qint64 size) const
{
    const auto values = m_values.constFind(slot);
    return values != m_values.cend() && values->importedSize == size &&
           values->importedModified == modified;
}

std::vector<quint64> IndexCatalog::folderMembers() const
{
    std::vector<quint64> members;
    members.reserve(static_cast<size_t>(count()));
    for (const IndexSlot slot : m_alive.rows()) {
        const IndexChunk &chunk = chunkOf(slot);
        if (const IndexItem parent = chunk.parents[rowOf(slot)])
            members.push_back(quint64{parent} << 32 | chunk.items[rowOf(slot)]);
    }
    std::sort(members.begin(), members.end());
    return members;
}

RowSet IndexCatalog::below(IndexSlot folder) const
{
    auto rows = std::make_shared<Roaring>();
    if (folder == noSlot)
        return rows;
    std::vector<bool> inside(m_slotOfItem.size(), false);
    inside[itemAt(folder)] = true;
    rows->add(folder);
    if (childCount(itemAt(folder)) == 0)
        return rows;
    // Folders stand before what they hold, so one pass finds all, unless a folder was moved and
    // so stands behind its children: then until a pass finds no further folder.
    for (bool again = true; again;) {
        again = false;
        IndexSlot slot = 0;
        for (const auto &chunk : m_chunks) {
            for (quint32 row = 0; row < chunk->size(); ++row, ++slot) {
                const IndexItem item = chunk->items[row];
                if (!inside[chunk->parents[row]] || inside[item] || m_slotOfItem[item] != slot)
                    continue;
                inside[item] = true;
                rows->add(slot);
                again = again || (m_foldersMoved && S_ISDIR(chunk->modes[row]));
            }
        }
    }
    return rows;
}

IndexRecord IndexCatalog::record(IndexSlot slot) const
{
    const IndexChunk &chunk = chunkOf(slot);
    const quint32 row = rowOf(slot);
    IndexRecord record;
    record.item = chunk.items[row];
    record.parent = chunk.parents[row];
    record.name = chunk.name(row).toByteArray();
    record.info.mode = chunk.modes[row];
    record.info.size = chunk.sizes[row];
    record.info.modified = chunk.modified[row];
    record.info.changed = chunk.changed[row];
    record.info.birth = chunk.births[row];
    record.info.inode = chunk.inodes[row];
    const quint16 device = chunk.devices[row];
    record.info.device = device < m_deviceTable.size() ? m_deviceTable[device] : 0;
    record.type = m_types[chunk.types[row]];
    if (const auto values = m_values.constFind(slot); values != m_values.cend()) {
        record.attributes = values->file;
        record.imported = values->imported;
        record.importedModified = values->importedModified;
        record.importedSize = values->importedSize;
    }
    return record;
}

PropertyValue IndexCatalog::attribute(IndexSlot slot, const QString &name) const
{
    const auto values = m_values.constFind(slot);
    return values == m_values.cend() ? PropertyValue() : values->value(name);
}

bool IndexCatalog::isSystemFolder(IndexSlot slot) const
{
    const IndexChunk &chunk = chunkOf(slot);
    const QByteArrayView name = chunk.name(rowOf(slot));
    if (chunk.parents[rowOf(slot)] != 0)
        return name.startsWith('.') && S_ISDIR(chunk.modes[rowOf(slot)]);
    static constexpr const char *prefixes[] = {"/bin",   "/boot", "/dev",  "/etc",  "/lib",
                                               "/lib64", "/opt",  "/proc", "/sbin", "/sys",
                                               "/usr",   "/var",  "/run"};
    return std::any_of(std::begin(prefixes), std::end(prefixes), [&](const char *prefix) {
        const QByteArrayView folder(prefix);
        return name.startsWith(folder) &&
               (name.size() == folder.size() || name[folder.size()] == '/');
    });
}

RowSet IndexCatalog::systemRows() const
{
    const std::lock_guard lock(m_derivedMutex);
    if (m_systemGeneration == m_generation)
        return m_systemRows;
    auto rows = std::make_shared<Roaring>();
    enum State : quint8 { Unknown, Ordinary, System };
    std::vector<quint8> states(m_slotOfItem.size(), Unknown);
    std::vector<IndexItem> chain;
    // Each folder's state is found once, from the nearest known one above it.
    const auto folderState = [&](IndexItem folder) {
        chain.clear();
        quint8 state = Ordinary;
        for (IndexItem item = folder; item;) {
            if (states[item] != Unknown) {
                state = states[item];
                break;
            }
            const IndexSlot slot = slotOf(item);
            if (slot == noSlot)
                break;
            states[item] = Ordinary; // ends a damaged circle
            chain.push_back(item);
            item = chunkOf(slot).parents[rowOf(slot)];
        }
        for (auto item = chain.rbegin(); item != chain.rend(); ++item) {
            if (isSystemFolder(slotOf(*item)))
                state = System;
            states[*item] = state;
        }
        return state;
    };
    IndexSlot slot = 0;
    for (const auto &chunk : m_chunks) {
        for (quint32 row = 0; row < chunk->size(); ++row, ++slot) {
            if (m_slotOfItem[chunk->items[row]] != slot)
                continue;
            const bool folder = S_ISDIR(chunk->modes[row]);
            if (folderState(folder ? chunk->items[row] : chunk->parents[row]) == System)
                rows->add(slot);
        }
    }
    m_systemRows = rows;
    m_systemGeneration = m_generation;
    return m_systemRows;
}

// --- Children

size_t IndexCatalog::childHash(IndexItem parent, QByteArrayView name) const
{
    return qHashBits(name.data(), static_cast<size_t>(name.size()), parent);
}

void IndexCatalog::insertChild(IndexSlot slot)
{
    if ((m_childrenUsed + 1) * 4 > m_children.size() * 3)
        growChildren();
    const IndexChunk &chunk = chunkOf(slot);
    const size_t mask = m_children.size() - 1;
    size_t i = childHash(chunk.parents[rowOf(slot)], chunk.name(rowOf(slot))) & mask;
    while (m_children[i] != noSlot)
        i = (i + 1) & mask;
    m_children[i] = slot;
    ++m_childrenUsed;
}

void IndexCatalog::eraseChild(IndexSlot slot)
{
    const IndexChunk &chunk = chunkOf(slot);
    const size_t mask = m_children.size() - 1;
    size_t i = childHash(chunk.parents[rowOf(slot)], chunk.name(rowOf(slot))) & mask;
    while (m_children[i] != noSlot) {
        if (m_children[i] == slot) {
            m_children[i] = erasedChild;
            return;
        }
        i = (i + 1) & mask;
    }
}

void IndexCatalog::attach(IndexSlot slot)
{
    insertChild(slot);
    const IndexItem parent = chunkOf(slot).parents[rowOf(slot)];
    if (parent)
        ++m_childCounts[parent];
    else
        m_roots.push_back(itemAt(slot));
}

void IndexCatalog::detach(IndexSlot slot)
{
    eraseChild(slot);
    const IndexItem parent = chunkOf(slot).parents[rowOf(slot)];
    if (!parent) {
        std::erase(m_roots, itemAt(slot));
        return;
    }
    const auto count = m_childCounts.find(parent);
    if (count != m_childCounts.end() && --*count == 0)
        m_childCounts.erase(count);
}

void IndexCatalog::growChildren()
{
    const std::vector<IndexSlot> before = std::move(m_children);
    size_t live = 0;
    for (const IndexSlot slot : before)
        live += slot < erasedChild ? 1 : 0;
    size_t size = 1024;
    while (size < live * 2)
        size *= 2;
    m_children.assign(size, noSlot);
    m_childrenUsed = 0;
    for (const IndexSlot slot : before) {
        if (slot < erasedChild)
            insertChild(slot);
    }
}

// --- Saving and loading

static void write(QDataStream &out, const IndexRecord::Attributes &attributes)
{
    QByteArray bytes;
    if (!attributes.isEmpty()) {
        if (const auto written = XPPropertyList::writeBinary(PropertyValue(attributes)))
            bytes = *written;
    }
    out << bytes;
}

static bool read(QDataStream &in, IndexRecord::Attributes &attributes)
{
    QByteArray bytes;
    in >> bytes;
    if (in.status() != QDataStream::Ok)
        return false;
    if (bytes.isEmpty())
        return true;
    const auto value = XPPropertyList::readBinary(bytes);
    if (!value)
        return false;
    attributes = value->dictionary();
    return true;
}

QByteArray IndexCatalog::serialiseTables() const
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_6_0);
    out << lastItem() << m_slotCount << m_foldersMoved;
    out << static_cast<quint32>(m_types.size());
    for (const QString &type : m_types)
        out << type;
    out << static_cast<quint32>(m_deviceTable.size());
    for (const quint64 device : m_deviceTable)
        out << device;
    out << static_cast<quint32>(m_values.size());
    for (auto row = m_values.begin(); row != m_values.end(); ++row) {
        out << row.key() << row->importedModified << row->importedSize;
        write(out, row->file);
        write(out, row->imported);
        write(out, row->extra);
    }
    // Slots that lost their item, so that the chunks need no column for it.
    std::vector<IndexSlot> dead;
    for (IndexSlot slot = 0; slot < m_slotCount; ++slot) {
        if (!m_alive.contains(slot))
            dead.push_back(slot);
    }
    out << static_cast<quint32>(dead.size());
    for (const IndexSlot slot : dead)
        out << slot;
    return bytes;
}

std::vector<size_t> IndexCatalog::dirtyChunks() const
{
    std::vector<size_t> dirty;
    for (size_t i = 0; i < m_chunks.size(); ++i) {
        if (m_chunks[i]->dirty)
            dirty.push_back(i);
    }
    return dirty;
}

void IndexCatalog::markSaved()
{
    for (const auto &chunk : m_chunks)
        chunk->dirty = false;
}

qsizetype IndexCatalog::memoryUsed() const
{
    qsizetype bytes = static_cast<qsizetype>((m_slotOfItem.capacity() + m_children.capacity()) *
                                             sizeof(IndexSlot));
    for (const auto &chunk : m_chunks)
        bytes += chunk->memoryUsed();
    return bytes;
}

std::optional<XPError> IndexCatalog::load(std::vector<IndexChunk> chunks, QByteArrayView tables)
{
    const std::unique_lock lock(m_mutex);
    reset();
    const auto damaged = XPError::malformed(QStringLiteral("damaged tables in the index"));
    const QByteArray raw = QByteArray::fromRawData(tables.data(), tables.size());
    QDataStream in(raw);
    in.setVersion(QDataStream::Qt_6_0);
    IndexItem last = 0;
    quint32 slots = 0;
    quint32 count = 0;
    in >> last >> slots >> m_foldersMoved >> count;
    quint32 rows = 0;
    for (size_t i = 0; i < chunks.size(); ++i) {
        if (i + 1 < chunks.size() && !chunks[i].isFull())
            return damaged;
        rows += chunks[i].size();
    }
    // Numbers are not used again, so there may be more items than rows; not wildly more, though.
    if (in.status() != QDataStream::Ok || rows != slots || last > slots + 500'000'000ULL)
        return damaged;
    m_types.clear();
    for (quint32 i = 0; i < count && in.status() == QDataStream::Ok; ++i) {
        QString type;
        in >> type;
        m_typeNumbers.insert(type, i);
        m_types.push_back(type);
    }
    m_typeRows.resize(m_types.size());
    in >> count;
    for (quint32 i = 0; i < count && in.status() == QDataStream::Ok; ++i) {
        quint64 device = 0;
        in >> device;
        m_deviceTable.push_back(device);
    }
    QHash<IndexSlot, RowValues> values;
    in >> count;
    for (quint32 i = 0; i < count && in.status() == QDataStream::Ok; ++i) {
        IndexSlot slot = 0;
        RowValues row;
        in >> slot >> row.importedModified >> row.importedSize;
        if (slot >= slots || !read(in, row.file) || !read(in, row.imported) || !read(in, row.extra))
            return damaged;
        values.insert(slot, row);
    }
    std::vector<bool> dead(slots, false);
    in >> count;
    for (quint32 i = 0; i < count && in.status() == QDataStream::Ok; ++i) {
        IndexSlot slot = 0;
        in >> slot;
        if (slot >= slots)
            return damaged;
        dead[slot] = true;
    }
    if (in.status() != QDataStream::Ok || m_types.empty())
        return damaged;
    for (IndexChunk &chunk : chunks)
        m_chunks.push_back(std::make_unique<IndexChunk>(std::move(chunk)));
    m_slotCount = slots;
    m_slotOfItem.assign(last + size_t{1}, noSlot);
    for (IndexSlot slot = 0; slot < slots; ++slot) {
        const IndexChunk &chunk = chunkOf(slot);
        const quint32 row = rowOf(slot);
        if (chunk.items[row] > last || chunk.items[row] == 0 ||
            chunk.types[row] >= m_types.size() || chunk.parents[row] > last)
            return damaged;
        if (dead[slot])
            continue;
        if (m_slotOfItem[chunk.items[row]] != noSlot)
            return damaged;
        m_slotOfItem[chunk.items[row]] = slot;
        m_alive.add(slot);
        m_typeRows[chunk.types[row]].add(slot);
        attach(slot);
    }
    for (auto row = values.begin(); row != values.end(); ++row)
        setValues(row.key(), std::move(*row));
    ++m_generation;
    return {};
}

#include "IndexCatalog.h"

#include <algorithm>

using IndexValues::Origin;

// Numbers are given one after the other, but for those reserved by processes that were killed.
static constexpr size_t mostSkipped = size_t{1} << 24;

IndexCatalog::Data::Data()
{
    slotOfItem.assign(1, noSlot); // item 0 is nobody
    types.assign(1, QString());   // type 0: not known
    typeRows.assign(1, IndexPosting());
}

IndexCatalog::IndexCatalog() : d(std::make_unique<Data>())
{
}

IndexCatalog::~IndexCatalog() = default;

void IndexCatalog::clear()
{
    auto fresh = std::make_unique<Data>();
    const std::unique_lock lock(m_mutex);
    d.swap(fresh);
    ++m_typesVersion;
    ++m_valuesVersion;
    ++m_generation;
}

std::vector<IndexItem> IndexCatalog::apply(const IndexBatch &batch)
{
    {
        const std::unique_lock lock(m_mutex);
        m_touched.clear();
        for (const IndexChange &change : batch) {
            if (change.record.item == 0)
                continue;
            applyChange(change);
            m_touched.push_back(change.record.item);
        }
        ++m_generation;
    }
    // While very many are new, seldom enough that the whole costs no more than two passes.
    const size_t ordered = d->nameRanks.size();
    if (d->slotCount - ordered > std::max<size_t>(8192, ordered))
        orderNames();
    std::sort(m_touched.begin(), m_touched.end());
    m_touched.erase(std::unique(m_touched.begin(), m_touched.end()), m_touched.end());
    return std::move(m_touched);
}

void IndexCatalog::applyChange(const IndexChange &change)
{
    const IndexRecord &record = change.record;
    const IndexSlot slot = slotOf(record.item);
    const bool placed =
        change.kind == IndexChange::Kind::Put || change.kind == IndexChange::Kind::Move;
    if (placed && !isPlaceable(record))
        return;
    if (change.kind == IndexChange::Kind::Put) {
        put(record);
        return;
    }
    if (slot == noSlot)
        return;
    switch (change.kind) {
    case IndexChange::Kind::Put:
        break;
    case IndexChange::Kind::Move:
        move(record);
        break;
    case IndexChange::Kind::Remove:
        remove(record.item);
        break;
    case IndexChange::Kind::Import:
        import(slot, record);
        break;
    case IndexChange::Kind::Attribute: {
        IndexRecord::Attributes told = attributesOf(slot, Origin::Told);
        for (auto entry = record.attributes.begin(); entry != record.attributes.end(); ++entry) {
            if (entry->isNull())
                told.remove(entry.key());
            else
                told.insert(entry.key(), *entry);
        }
        setOrigin(slot, Origin::Told, told);
        break;
    }
    }
}

// --- Rows

// A journal may hold anything: an item in a folder that is not there, or below itself, or with a
// number far beyond the last, which would cost as much memory, is passed over.
bool IndexCatalog::isPlaceable(const IndexRecord &record) const
{
    if (record.item == 0 || record.item > d->slotOfItem.size() + mostSkipped)
        return false;
    if (record.parent == 0)
        return true;
    IndexSlot above = slotOf(record.parent);
    if (above == noSlot)
        return false;
    if (slotOf(record.item) == noSlot)
        return true; // new, so nothing is below it
    for (; above != noSlot; above = slotOf(chunkOf(above).parents[rowOf(above)])) {
        if (itemAt(above) == record.item)
            return false;
    }
    return true;
}

void IndexCatalog::put(const IndexRecord &record)
{
    IndexSlot slot = slotOf(record.item);
    if (slot == noSlot) {
        slot = append(record);
    } else {
        const IndexChunk &chunk = chunkOf(slot);
        const quint32 row = rowOf(slot);
        if (chunk.parents[row] != record.parent || !chunk.hasName(row, record.name)) {
            move(record);
            slot = slotOf(record.item);
        } else {
            setFacts(slot, record);
        }
    }
    setOrigin(slot, Origin::File, record.attributes);
}

IndexSlot IndexCatalog::append(const IndexRecord &record)
{
    if (d->chunks.empty() || d->chunks.back()->isFull())
        d->chunks.push_back(std::make_unique<IndexChunk>());
    const IndexSlot slot = d->slotCount++;
    const quint32 type = typeNumber(record.type);
    d->chunks.back()->append(record, type, deviceNumber(record.info.device));
    if (d->slotOfItem.size() <= record.item)
        d->slotOfItem.resize(record.item + size_t{1}, noSlot);
    d->slotOfItem[record.item] = slot;
    d->alive.add(slot);
    d->typeRows[type].add(slot);
    ++m_typesVersion;
    setSystem(slot, isSystem(record));
    attach(slot);
    return slot;
}

quint32 IndexCatalog::childHash(IndexSlot slot) const
{
    const IndexChunk &chunk = chunkOf(slot);
    return IndexChildTable::hashOf(chunk.parents[rowOf(slot)], chunk.caselessName(rowOf(slot)));
}

// Puts a row among its folder's children, or the roots.
void IndexCatalog::attach(IndexSlot slot)
{
    const IndexItem parent = chunkOf(slot).parents[rowOf(slot)];
    if (parent == 0)
        d->roots.push_back(itemAt(slot));
    if (!d->children.isReady())
        return; // prepareForWriting() will find it
    if (d->children.hasRoom())
        d->children.insert(slot, childHash(slot));
    else
        fillChildren(d->children);
    if (parent)
        d->children.countUp(parent);
}

void IndexCatalog::fillChildren(IndexChildTable &table) const
{
    table.makeRoom(static_cast<size_t>(count()));
    for (const IndexSlot slot : d->alive.rows())
        table.insert(slot, childHash(slot));
}

// Takes a row out of everything but its chunk.
void IndexCatalog::bury(IndexSlot slot)
{
    IndexChunk &chunk = changeable(slot);
    const quint32 row = rowOf(slot);
    setValues(slot, {});
    if (chunk.parents[row] == 0)
        std::erase(d->roots, chunk.items[row]);
    if (d->children.isReady()) {
        d->children.erase(slot, childHash(slot));
        if (chunk.parents[row])
            d->children.countDown(chunk.parents[row]);
    }
    d->alive.remove(slot);
    d->typeRows[chunk.types[row]].remove(slot);
    ++m_typesVersion;
    setImported(slot, false);
    setSystem(slot, false);
    chunk.setFlag(row, IndexChunk::Dead, true);
}

// Files that were unpacked together may share time and size. An inode's number alone says nothing
// where each mount gives new ones.
bool IndexCatalog::isOtherFile(IndexSlot slot, const XPFileInfo &info) const
{
    const IndexChunk &chunk = chunkOf(slot);
    const quint32 row = rowOf(slot);
    return chunk.inodes[row] != info.inode && chunk.changed[row] != info.changed;
}

void IndexCatalog::setFacts(IndexSlot slot, const IndexRecord &record)
{
    IndexChunk &chunk = changeable(slot);
    const quint32 row = rowOf(slot);
    const quint32 type = typeNumber(record.type);
    if (chunk.types[row] != type) {
        d->typeRows[chunk.types[row]].remove(slot);
        d->typeRows[type].add(slot);
        ++m_typesVersion;
        setImported(slot, false); // another importer's business now
    }
    if (chunk.modified[row] != record.info.modified || chunk.sizes[row] != record.info.size ||
        isOtherFile(slot, record.info))
        setImported(slot, false);
    chunk.setFacts(row, record.info, type, deviceNumber(record.info.device));
}

void IndexCatalog::move(const IndexRecord &record)
{
    const IndexSlot old = slotOf(record.item);
    const bool folder = S_ISDIR(chunkOf(old).modes[rowOf(old)]);
    renameTo(old, record);
    if (!folder || (d->children.isReady() && childCount(record.item) == 0))
        return;
    d->foldersMoved = true;
    // The items below have new paths, though their rows did not change.
    const RowSet rows = below(slotOf(record.item));
    for (const IndexSlot slot : *rows)
        m_touched.push_back(itemAt(slot));
    updateSystem(slotOf(record.item), rows);
}

void IndexCatalog::renameTo(IndexSlot old, const IndexRecord &record)
{
    const QByteArray values = d->values.value(old);
    const IndexChunk &chunk = chunkOf(old);
    const bool imported = chunk.hasFlag(rowOf(old), IndexChunk::Imported) &&
                          isImported(old, record.info.modified, record.info.size) &&
                          !isOtherFile(old, record.info) &&
                          d->types[chunk.types[rowOf(old)]] == record.type;
    bury(old);
    const IndexSlot slot = append(record);
    setValues(slot, values);
    setImported(slot, imported);
}

void IndexCatalog::remove(IndexItem item)
{
    bury(slotOf(item));
    d->slotOfItem[item] = noSlot;
}

void IndexCatalog::import(IndexSlot slot, const IndexRecord &record)
{
    const IndexChunk &chunk = chunkOf(slot);
    setOrigin(slot, Origin::Imported, record.imported);
    setImported(slot, chunk.modified[rowOf(slot)] == record.importedModified &&
                          chunk.sizes[rowOf(slot)] == record.importedSize);
}

void IndexCatalog::setImported(IndexSlot slot, bool imported)
{
    if (chunkOf(slot).hasFlag(rowOf(slot), IndexChunk::Imported) == imported)
        return;
    changeable(slot).setFlag(rowOf(slot), IndexChunk::Imported, imported);
    imported ? d->imported.add(slot) : d->imported.remove(slot);
}

// --- What belongs to the system

static bool isSystemPath(QByteArrayView path)
{
    static constexpr const char *prefixes[] = {"/bin",   "/boot", "/dev",  "/etc",  "/lib",
                                               "/lib64", "/opt",  "/proc", "/sbin", "/sys",
                                               "/usr",   "/var",  "/run"};
    return std::any_of(std::begin(prefixes), std::end(prefixes), [&](const char *prefix) {
        const QByteArrayView folder(prefix);
        return path.startsWith(folder) &&
               (path.size() == folder.size() || path[folder.size()] == '/');
    });
}

bool IndexCatalog::isSystem(const IndexRecord &record) const
{
    if (record.parent == 0)
        return isSystemPath(record.name);
    const IndexSlot parent = slotOf(record.parent);
    if (parent != noSlot && chunkOf(parent).hasFlag(rowOf(parent), IndexChunk::System))
        return true;
    return S_ISDIR(record.info.mode) && record.name.startsWith('.');
}

void IndexCatalog::setSystem(IndexSlot slot, bool system)
{
    if (chunkOf(slot).hasFlag(rowOf(slot), IndexChunk::System) == system)
        return;
    changeable(slot).setFlag(rowOf(slot), IndexChunk::System, system);
    system ? d->system.add(slot) : d->system.remove(slot);
}

// A folder moved: what lies in it may have become hidden, or come to light.
void IndexCatalog::updateSystem(IndexSlot folder, const RowSet &below)
{
    std::vector<IndexItem> waiting{itemAt(folder)};
    QHash<IndexItem, std::vector<IndexSlot>> members;
    for (const IndexSlot slot : *below) {
        if (slot != folder)
            members[chunkOf(slot).parents[rowOf(slot)]].push_back(slot);
    }
    while (!waiting.empty()) {
        const IndexItem parent = waiting.back();
        waiting.pop_back();
        const IndexSlot above = slotOf(parent);
        const bool hidden = chunkOf(above).hasFlag(rowOf(above), IndexChunk::System);
        for (const IndexSlot slot : members.take(parent)) {
            const IndexChunk &chunk = chunkOf(slot);
            const bool isFolder = S_ISDIR(chunk.modes[rowOf(slot)]);
            setSystem(slot, hidden || (isFolder && chunk.name(rowOf(slot)).startsWith('.')));
            if (isFolder)
                waiting.push_back(itemAt(slot));
        }
    }
}

// --- Values

IndexRecord::Attributes IndexCatalog::attributesOf(IndexSlot slot, Origin origin) const
{
    IndexRecord::Attributes attributes;
    const auto row = d->values.constFind(slot);
    if (row == d->values.cend())
        return attributes;
    IndexValues::Reader reader(*row);
    for (IndexValues::Entry entry; reader.next(&entry);) {
        if (entry.origin == origin)
            attributes.insert(d->names.name(entry.name), entry.decoded(d->texts));
    }
    return attributes;
}

void IndexCatalog::setOrigin(IndexSlot slot, Origin origin,
                             const IndexRecord::Attributes &attributes)
{
    const auto known = d->values.constFind(slot);
    if (known == d->values.cend() && attributes.isEmpty())
        return;
    const QByteArray before = known == d->values.cend() ? QByteArray() : *known;
    // The parts before and behind this origin's stay as they are.
    qsizetype begin = before.size();
    qsizetype end = before.size();
    IndexValues::Reader reader(before);
    for (qsizetype at = 0; at < before.size();) {
        IndexValues::Entry entry;
        if (!reader.next(&entry))
            break;
        if (entry.origin >= origin)
            begin = std::min(begin, at);
        if (entry.origin > origin)
            end = std::min(end, at);
        at = entry.value.end() - QByteArrayView(before).begin();
    }
    QByteArray after = before.first(begin);
    for (auto entry = attributes.begin(); entry != attributes.end(); ++entry)
        IndexValues::append(after, origin, d->names.numberOf(entry.key()), *entry, d->texts);
    after.append(QByteArrayView(before).sliced(end));
    if (after != before)
        setValues(slot, std::move(after));
}

IndexAttributePostings &IndexCatalog::postingsOf(quint32 name)
{
    if (d->postings.size() <= name)
        d->postings.resize(name + size_t{1});
    return d->postings[name];
}

void IndexCatalog::setValues(IndexSlot slot, QByteArray values)
{
    const QByteArray before = d->values.take(slot);
    const std::vector<IndexValues::Entry> gone = IndexValues::effective(before);
    const std::vector<IndexValues::Entry> come = IndexValues::effective(values);
    const auto has = [](const std::vector<IndexValues::Entry> &list, const auto &entry) {
        const auto at =
            std::lower_bound(list.begin(), list.end(), entry,
                             [](const auto &a, const auto &b) { return a.name < b.name; });
        return at != list.end() && at->name == entry.name && at->value == entry.value;
    };
    if (!gone.empty() || !come.empty())
        ++m_valuesVersion;
    for (const IndexValues::Entry &entry : gone) {
        if (!has(come, entry))
            postingsOf(entry.name).remove(slot, entry);
    }
    for (const IndexValues::Entry &entry : come) {
        if (!has(gone, entry))
            postingsOf(entry.name).add(slot, entry);
    }
    if (!values.isEmpty()) {
        values.squeeze();
        d->values.insert(slot, values);
    }
}

// --- Tables

quint32 IndexCatalog::typeNumber(const QString &type)
{
    if (type.isEmpty())
        return 0;
    const auto known = d->typeNumbers.constFind(type);
    if (known != d->typeNumbers.cend())
        return *known;
    const auto number = static_cast<quint32>(d->types.size());
    d->types.push_back(type);
    d->typeRows.emplace_back();
    d->typeNumbers.insert(type, number);
    return number;
}

quint16 IndexCatalog::deviceNumber(quint64 device)
{
    const auto known = std::find(d->devices.begin(), d->devices.end(), device);
    const auto number = static_cast<quint16>(known - d->devices.begin());
    if (known == d->devices.end() && d->devices.size() < 0xFFFF)
        d->devices.push_back(device);
    return number;
}

void IndexCatalog::markSaved()
{
    for (const auto &chunk : d->chunks)
        chunk->dirty = false;
}

void IndexCatalog::markUnsaved()
{
    for (const auto &chunk : d->chunks)
        chunk->dirty = true;
}

void IndexCatalog::prepareForWriting()
{
    if (d->children.isReady())
        return;
    IndexChildTable table;
    fillChildren(table);
    for (const auto &chunk : d->chunks) {
        for (quint32 row = 0; row < chunk->size(); ++row) {
            if (chunk->parents[row] && !chunk->hasFlag(row, IndexChunk::Dead))
                table.countUp(chunk->parents[row]);
        }
    }
    const std::unique_lock lock(m_mutex);
    d->children = std::move(table);
}

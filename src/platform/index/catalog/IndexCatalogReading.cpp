#include "IndexCatalog.h"

#include <algorithm>

// The functions for readers.

QByteArray IndexCatalog::path(IndexSlot slot) const
{
    std::vector<QByteArray> parts;
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

bool IndexCatalog::isChild(IndexSlot slot, IndexItem parent, QByteArrayView name) const
{
    const IndexChunk &chunk = chunkOf(slot);
    const quint32 row = rowOf(slot);
    return chunk.parents[row] == parent && chunk.hasName(row, name) &&
           !chunk.hasFlag(row, IndexChunk::Dead);
}

IndexItem IndexCatalog::child(IndexItem parent, QByteArrayView name) const
{
    if (!d->children.isReady()) {
        IndexSlot slot = 0;
        for (const auto &chunk : d->chunks) {
            for (quint32 row = 0; row < chunk->size(); ++row, ++slot) {
                if (chunk->parents[row] == parent && isChild(slot, parent, name))
                    return chunk->items[row];
            }
        }
        return 0;
    }
    const IndexSlot slot =
        d->children.find(IndexChildTable::hashOf(parent, name),
                         [&](IndexSlot row) { return isChild(row, parent, name); });
    return slot == noSlot ? 0 : itemAt(slot);
}

IndexItem IndexCatalog::childNear(IndexItem parent, QByteArrayView name, IndexSlot hint) const
{
    if (hint < d->slotCount && isChild(hint, parent, name))
        return itemAt(hint);
    return child(parent, name);
}

IndexItem IndexCatalog::itemAtPath(QByteArrayView path) const
{
    // The root whose path is the longest prefix; then down, name by name.
    IndexItem item = 0;
    qsizetype start = 0;
    for (const IndexItem root : roots()) {
        const IndexSlot slot = slotOf(root);
        const QByteArray name = chunkOf(slot).name(rowOf(slot));
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
    if (d->children.isReady() && childCount(parent) == 0)
        return found;
    for (const auto &chunk : d->chunks) {
        for (quint32 row = 0; row < chunk->size(); ++row) {
            if (chunk->parents[row] == parent && !chunk->hasFlag(row, IndexChunk::Dead))
                found.push_back(chunk->items[row]);
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
           chunk.modes[row] == static_cast<quint16>(info.mode);
}

bool IndexCatalog::isImported(IndexSlot slot, qint64 modified, qint64 size) const
{
    const IndexChunk &chunk = chunkOf(slot);
    const quint32 row = rowOf(slot);
    return chunk.hasFlag(row, IndexChunk::Imported) && chunk.modified[row] == modified &&
           chunk.sizes[row] == size;
}

std::vector<quint64> IndexCatalog::folderMembers() const
{
    std::vector<quint64> members;
    members.reserve(static_cast<size_t>(count()));
    for (const auto &chunk : d->chunks) {
        for (quint32 row = 0; row < chunk->size(); ++row) {
            if (chunk->parents[row] && !chunk->hasFlag(row, IndexChunk::Dead))
                members.push_back(quint64{chunk->parents[row]} << 32 | chunk->items[row]);
        }
    }
    std::sort(members.begin(), members.end());
    return members;
}

RowSet IndexCatalog::below(IndexSlot folder) const
{
    auto rows = std::make_shared<Roaring>();
    if (folder == noSlot)
        return rows;
    std::vector<quint8> inside(d->slotOfItem.size(), 0);
    inside[itemAt(folder)] = 1;
    rows->add(folder);
    if (d->children.isReady() && childCount(itemAt(folder)) == 0)
        return rows;
    // Folders stand before what they hold, so one pass finds all, unless a folder was moved and
    // so stands behind its children: then until a pass finds no further folder.
    std::vector<IndexSlot> found;
    for (bool again = true; again;) {
        again = false;
        IndexSlot base = 0;
        for (const auto &chunk : d->chunks) {
            found.clear();
            for (quint32 row = 0; row < chunk->size(); ++row) {
                if (!inside[chunk->parents[row]] || chunk->hasFlag(row, IndexChunk::Dead) ||
                    inside[chunk->items[row]])
                    continue;
                inside[chunk->items[row]] = 1;
                found.push_back(base + row);
                again = again || (d->foldersMoved && S_ISDIR(chunk->modes[row]));
            }
            rows->addMany(found.size(), found.data());
            base += IndexChunk::capacity;
        }
    }
    return rows;
}

XPFileInfo IndexCatalog::info(IndexSlot slot) const
{
    const IndexChunk &chunk = chunkOf(slot);
    const quint32 row = rowOf(slot);
    XPFileInfo info;
    info.mode = chunk.modes[row];
    info.size = chunk.sizes[row];
    info.modified = chunk.modified[row];
    info.changed = chunk.changed[row];
    info.birth = chunk.birth(row);
    info.inode = chunk.inodes[row];
    const quint16 device = chunk.devices[row];
    info.device = device < d->devices.size() ? d->devices[device] : 0;
    return info;
}

IndexRecord IndexCatalog::record(IndexSlot slot) const
{
    const IndexChunk &chunk = chunkOf(slot);
    const quint32 row = rowOf(slot);
    IndexRecord record;
    record.item = chunk.items[row];
    record.parent = chunk.parents[row];
    record.name = chunk.name(row);
    record.info = info(slot);
    record.type = d->types[chunk.types[row]];
    record.attributes = attributesOf(slot, IndexValues::Origin::File);
    record.imported = attributesOf(slot, IndexValues::Origin::Imported);
    if (chunk.hasFlag(row, IndexChunk::Imported)) {
        record.importedModified = chunk.modified[row];
        record.importedSize = chunk.sizes[row];
    }
    return record;
}

std::vector<IndexValues::Entry> IndexCatalog::values(IndexSlot slot) const
{
    const auto row = d->values.constFind(slot);
    if (row == d->values.cend())
        return {};
    return IndexValues::effective(QByteArrayView(*row));
}

PropertyValue IndexCatalog::attribute(IndexSlot slot, const QString &name) const
{
    const auto number = d->names.find(name);
    if (!number)
        return {};
    for (const IndexValues::Entry &entry : values(slot)) {
        if (entry.name == *number)
            return entry.decoded(d->texts);
    }
    return {};
}

const IndexAttributePostings *IndexCatalog::attributeNamed(const QString &name) const
{
    const auto number = d->names.find(name);
    return number && *number < d->postings.size() ? &d->postings[*number] : nullptr;
}

qsizetype IndexCatalog::memoryUsed() const
{
    auto bytes = static_cast<qsizetype>((d->slotOfItem.capacity() + d->nameRanks.capacity()) *
                                        sizeof(IndexSlot)) +
                 d->children.memoryUsed();
    for (const auto &chunk : d->chunks)
        bytes += chunk->memoryUsed();
    for (const QByteArray &values : std::as_const(d->values))
        bytes += values.size() + 80;
    return bytes;
}

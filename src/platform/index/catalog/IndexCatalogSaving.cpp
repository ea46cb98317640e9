#include "IndexCatalog.h"

#include <QDataStream>
#include <QIODevice>
#include <algorithm>

// The saved form of what stands beside the chunks: types, devices, names and texts, then each
// row's values. Sets of rows are not saved: they follow from these and the columns.

static void setUp(QDataStream &stream)
{
    stream.setVersion(QDataStream::Qt_6_0);
    stream.setByteOrder(QDataStream::LittleEndian);
}

QByteArray IndexCatalog::serialiseTables() const
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    setUp(out);
    out << lastItem() << d->foldersMoved;
    out << static_cast<quint32>(d->types.size());
    for (const QString &type : d->types)
        out << type;
    out << static_cast<quint32>(d->devices.size());
    for (const quint64 device : d->devices)
        out << device;
    out << d->names.size();
    for (quint32 name = 0; name < d->names.size(); ++name)
        out << d->names.name(name);
    // A text that nobody has any more is not kept: its number is saved as an empty text.
    std::vector<bool> used(d->texts.size(), false);
    std::vector<IndexTexts::Number> texts;
    for (const QByteArray &row : std::as_const(d->values)) {
        IndexValues::Reader reader(row);
        texts.clear();
        for (IndexValues::Entry entry; reader.next(&entry);)
            entry.collect(&texts, nullptr);
        for (const IndexTexts::Number text : texts)
            used[text] = true;
    }
    out << d->texts.size();
    for (IndexTexts::Number text = 0; text < d->texts.size(); ++text)
        out << (used[text] ? d->texts.text(text) : QString());
    // In order, so that loading adds to the end of each set.
    QList<IndexSlot> rows = d->values.keys();
    std::sort(rows.begin(), rows.end());
    out << static_cast<quint32>(rows.size());
    for (const IndexSlot row : rows)
        out << row << d->values.value(row);
    return bytes;
}

bool IndexCatalog::readTables(QByteArrayView bytes, Data &data, IndexItem *last,
                              std::vector<IndexSlot> *rows)
{
    const QByteArray raw = QByteArray::fromRawData(bytes.data(), bytes.size());
    QDataStream in(raw);
    setUp(in);
    quint32 count = 0;
    in >> *last >> data.foldersMoved >> count;
    data.types.clear();
    QString text;
    for (quint32 i = 0; i < count && in.status() == QDataStream::Ok; ++i) {
        in >> text;
        data.typeNumbers.insert(text, i);
        data.types.push_back(text);
    }
    data.typeRows.resize(data.types.size());
    in >> count;
    for (quint32 i = 0; i < count && in.status() == QDataStream::Ok; ++i) {
        quint64 device = 0;
        in >> device;
        data.devices.push_back(device);
    }
    in >> count;
    for (quint32 i = 0; i < count && in.status() == QDataStream::Ok; ++i) {
        in >> text;
        if (data.names.numberOf(text) != i)
            return false;
    }
    in >> count;
    for (quint32 i = 0; i < count && in.status() == QDataStream::Ok; ++i) {
        in >> text;
        data.texts.restore(text);
    }
    in >> count;
    for (quint32 i = 0; i < count && in.status() == QDataStream::Ok; ++i) {
        IndexSlot slot = 0;
        QByteArray values;
        in >> slot >> values;
        if (!IndexValues::isSound(values, data.names.size(), data.texts.size()))
            return false;
        data.values.insert(slot, values);
        rows->push_back(slot);
    }
    return in.status() == QDataStream::Ok && in.atEnd() && !data.types.empty();
}

// Rebuilds from the columns what finds rows by item, type and flag.
bool IndexCatalog::placeRows(Data &data, IndexItem last)
{
    data.slotOfItem.assign(last + size_t{1}, noSlot);
    std::vector<std::vector<IndexSlot>> ofType(data.types.size());
    std::vector<IndexSlot> alive;
    std::vector<IndexSlot> imported;
    std::vector<IndexSlot> system;
    IndexSlot slot = 0;
    for (const auto &chunk : data.chunks) {
        for (quint32 row = 0; row < chunk->size(); ++row, ++slot) {
            const IndexItem item = chunk->items[row];
            if (item > last || item == 0 || chunk->types[row] >= data.types.size() ||
                chunk->parents[row] > last)
                return false;
            const quint8 flags = chunk->flags[row];
            if (flags & IndexChunk::Dead)
                continue;
            if (data.slotOfItem[item] != noSlot)
                return false;
            data.slotOfItem[item] = slot;
            alive.push_back(slot);
            ofType[chunk->types[row]].push_back(slot);
            if (flags & IndexChunk::Imported)
                imported.push_back(slot);
            if (flags & IndexChunk::System)
                system.push_back(slot);
            if (chunk->parents[row] == 0)
                data.roots.push_back(item);
        }
        if (alive.size() == chunk->size())
            data.alive.addRange(slot - chunk->size(), slot);
        else
            data.alive.addAll(alive);
        data.imported.addAll(imported);
        data.system.addAll(system);
        for (size_t type = 0; type < ofType.size(); ++type) {
            data.typeRows[type].addAll(ofType[type]);
            ofType[type].clear();
        }
        alive.clear();
        imported.clear();
        system.clear();
    }
    return true;
}

// Rebuilds the sets of rows of each value; `rows` are those that have any.
void IndexCatalog::postValues(Data &data, const std::vector<IndexSlot> &rows)
{
    for (const IndexSlot row : rows) {
        for (const IndexValues::Entry &entry :
             IndexValues::effective(*data.values.constFind(row))) {
            if (data.postings.size() <= entry.name)
                data.postings.resize(entry.name + size_t{1});
            data.postings[entry.name].add(row, entry);
        }
    }
}

IndexCatalog::Loading::Loading() : m_data(std::make_unique<Data>())
{
}

IndexCatalog::Loading::~Loading() = default;

bool IndexCatalog::Loading::readTables(QByteArrayView bytes)
{
    if (!IndexCatalog::readTables(bytes, *m_data, &m_lastItem, &m_rows))
        return false;
    postValues(*m_data, m_rows);
    return true;
}

std::optional<XPError> IndexCatalog::load(Loading &&loading)
{
    const auto damaged = XPError::malformed(QStringLiteral("damaged tables in the index"));
    auto data = std::move(loading.m_data);
    for (const auto &chunk : loading.chunks) {
        if (&chunk != &loading.chunks.back() && !chunk->isFull())
            return damaged;
        data->slotCount += chunk->size();
    }
    data->chunks = std::move(loading.chunks);
    const bool rowsHold =
        std::all_of(loading.m_rows.begin(), loading.m_rows.end(), [&](IndexSlot row) {
            return row < data->slotCount &&
                   !data->chunks[row >> 16]->hasFlag(rowOf(row), IndexChunk::Dead);
        });
    // Numbers are not used again, so there may be more items than rows; not wildly more, though.
    const IndexItem last = loading.m_lastItem;
    if (!rowsHold || last > data->slotCount + 500'000'000ULL || !placeRows(*data, last))
        return damaged;
    if (loading.nameRanks.size() <= data->slotCount)
        data->nameRanks = std::move(loading.nameRanks);
    data->children.setReady(data->chunks.empty());
    const std::unique_lock lock(m_mutex);
    d.swap(data);
    ++m_typesVersion;
    ++m_valuesVersion;
    ++m_generation;
    return {};
}

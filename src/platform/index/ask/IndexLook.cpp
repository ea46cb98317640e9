#include "IndexLook.h"

#include "IndexRowAttributes.h"

struct IndexLook::Held
{
    explicit Held(const IndexCatalog &shown) : catalog(shown), reading(shown) {}

    const IndexCatalog &catalog;
    const IndexCatalog::Reading reading;
};

IndexLook::IndexLook(const IndexSource &source) : m_held(new Held(source.catalog()))
{
}

IndexLook::~IndexLook() = default;

std::optional<IndexLook::Row> IndexLook::at(IndexItem item) const
{
    const IndexSlot slot = m_held->catalog.slotOf(item);
    if (slot == IndexCatalog::noSlot)
        return {};
    return Row(m_held->catalog, slot);
}

std::optional<IndexLook::Row> IndexLook::atPath(QByteArrayView path) const
{
    return at(m_held->catalog.itemAtPath(path));
}

std::vector<IndexLook::Row> IndexLook::in(QByteArrayView folder, size_t most) const
{
    std::vector<Row> rows;
    for (const IndexItem item : m_held->catalog.children(m_held->catalog.itemAtPath(folder))) {
        if (rows.size() == most)
            break;
        if (const auto row = at(item))
            rows.push_back(*row);
    }
    return rows;
}

const std::vector<IndexItem> &IndexLook::roots() const
{
    return m_held->catalog.roots();
}

IndexItem IndexLook::Row::item() const
{
    return m_catalog->itemAt(m_slot);
}

QByteArray IndexLook::Row::path() const
{
    return m_catalog->path(m_slot);
}

XPFileInfo IndexLook::Row::info() const
{
    return m_catalog->info(m_slot);
}

QString IndexLook::Row::type() const
{
    return m_catalog->type(m_slot);
}

PropertyValue IndexLook::Row::attribute(const QString &name) const
{
    return IndexRowAttributes::value(*m_catalog, m_slot, name);
}

std::vector<PropertyValue> IndexLook::Row::stored(std::span<const QString> names) const
{
    std::vector<PropertyValue> values(names.size());
    const auto entries = m_catalog->values(m_slot);
    if (entries.empty())
        return values;
    for (size_t i = 0; i < values.size(); ++i) {
        const auto number = m_catalog->attributeNumber(names[i]);
        if (!number)
            continue;
        for (const IndexValues::Entry &entry : entries) {
            if (entry.name == *number) {
                values[i] = entry.decoded(m_catalog->texts());
                break;
            }
        }
    }
    return values;
}

#include "MDItem.h"

#include "KPContentTypes.h"
#include "KPFileType.h"
#include "XPPath.h"

#include <QHash>

// Items handed out and still held by somebody, by source and number.
struct ItemTable
{
    XPMutex mutex;
    QHash<QPair<const IndexSource *, IndexItem>, std::weak_ptr<MDItem>> items XP_GUARDED_BY(mutex);
    qsizetype sweepAt XP_GUARDED_BY(mutex) = 1024;
};

static ItemTable &table()
{
    static ItemTable items;
    return items;
}

std::shared_ptr<MDItem> MDItem::withNumber(const IndexSource &source, IndexItem number)
{
    if (number == 0)
        return nullptr;
    ItemTable &known = table();
    const XPLocker lock(known.mutex);
    std::weak_ptr<MDItem> &entry = known.items[{&source, number}];
    if (std::shared_ptr<MDItem> item = entry.lock())
        return item;
    const std::shared_ptr<MDItem> item(new MDItem(source, number));
    entry = item;
    if (known.items.size() > known.sweepAt) {
        known.items.removeIf([](const auto &held) { return held.value().expired(); });
        known.sweepAt = std::max<qsizetype>(1024, known.items.size() * 2);
    }
    return item;
}

std::shared_ptr<MDItem> MDItem::create(const IndexSource &source, const QString &path)
{
    IndexItem number = 0;
    {
        const IndexCatalog::Reading reading(source.catalog());
        number = source.catalog().itemAtPath(XPPath::encode(path));
    }
    return withNumber(source, number);
}

QString MDItem::path() const
{
    const IndexCatalog &catalog = m_source.catalog();
    const IndexCatalog::Reading reading(catalog);
    const IndexSlot slot = catalog.slotOf(m_number);
    return slot == IndexCatalog::noSlot ? QString() : XPPath::decode(catalog.path(slot));
}

PropertyValue MDItem::copyAttribute(const QString &name) const
{
    const IndexCatalog &catalog = m_source.catalog();
    const IndexCatalog::Reading reading(catalog);
    const IndexSlot slot = catalog.slotOf(m_number);
    return slot == IndexCatalog::noSlot ? PropertyValue() : attribute(catalog, slot, name);
}

static PropertyValue dateOf(qint64 nanoseconds)
{
    return PropertyValue::Date::fromSecondsSince1970(static_cast<double>(nanoseconds) / 1e9);
}

PropertyValue MDItem::attribute(const IndexCatalog &catalog, IndexSlot slot, const QString &name)
{
    const IndexChunk &chunk = catalog.chunkOf(slot);
    const quint32 row = IndexCatalog::rowOf(slot);
    if (name == u"kMDItemPath")
        return XPPath::decode(catalog.path(slot));
    if (name == u"kMDItemDisplayName" || name == u"kMDItemFSName")
        return XPPath::fileName(XPPath::decode(chunk.name(row)));
    if (name == u"kMDItemFSSize")
        return PropertyValue::integer(chunk.sizes[row]);
    if (name == u"kMDItemFSContentChangeDate" || name == u"kMDItemContentModificationDate")
        return dateOf(chunk.modified[row]);
    if (name == u"kMDItemContentCreationDate") {
        // Of the document, where it says so; else of its file.
        if (const PropertyValue own = catalog.attribute(slot, name); !own.isNull())
            return own;
    }
    if (name == u"kMDItemFSCreationDate" || name == u"kMDItemContentCreationDate")
        return chunk.births[row] ? dateOf(chunk.birth(row)) : PropertyValue();
    if (name == u"kMDItemContentType")
        return catalog.type(slot);
    if (name == u"kMDItemContentTypeTree")
        return KPContentTypes::typeTree(catalog.type(slot));
    if (name == u"kMDItemKind")
        return KPFileType::displayNameForUTI(catalog.type(slot));
    if (name == u"kMDItemSupportFileType")
        return chunk.hasFlag(row, IndexChunk::System)
                   ? PropertyValue(QStringLiteral("MDSystemFile"))
                   : PropertyValue();
    return catalog.attribute(slot, name);
}

#include "MDItem.h"

#include "IndexLook.h"
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
    std::shared_ptr<MDItem> item(new MDItem(source, number));
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
        const IndexLook look(source);
        if (const auto row = look.atPath(XPPath::encode(path)))
            number = row->item();
    }
    return withNumber(source, number);
}

QString MDItem::path() const
{
    const IndexLook look(m_source);
    const auto row = look.at(m_number);
    return row ? XPPath::decode(row->path()) : QString();
}

PropertyValue MDItem::copyAttribute(const QString &name) const
{
    const IndexLook look(m_source);
    const auto row = look.at(m_number);
    return row ? row->attribute(name) : PropertyValue();
}

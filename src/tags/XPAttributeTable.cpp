#include "XPAttributeTable.h"

namespace {

// Equal to itself alone. The text is for whoever looks at it in a debugger.
class Marker : public XPAttributeValue
{
public:
    explicit Marker(const char *text) : m_text(text) {}
    bool isEqual(const XPAttributeValue &other) const override { return this == &other; }

private:
    [[maybe_unused]] const char *const m_text;
};

} // namespace

// Neither is ever destroyed: somebody may still read while the process ends.
const XPAttributeValuePtr &XPAttributeTable::noItem()
{
    static const auto &marker = *new XPAttributeValuePtr(new Marker("kNoItemxxxxx"));
    return marker;
}

const XPAttributeValuePtr &XPAttributeTable::notLookedUp()
{
    static const auto &marker = *new XPAttributeValuePtr(new Marker("NotLookedUpxxxxx"));
    return marker;
}

XPAttributeTable::Found XPAttributeTable::find(KPPooledString path) const
{
    const Shard &shard = m_shards[shardOf(path)];
    const XPLocker lock(shard.mutex);
    const auto entry = shard.entries.constFind({path});
    if (entry == shard.entries.cend() || *entry == notLookedUp())
        return {{}, true};
    if (*entry == noItem())
        return {};
    return {*entry, false};
}

bool XPAttributeTable::store(KPPooledString path, const XPAttributeValuePtr &value)
{
    const XPAttributeValuePtr &stored = value ? value : noItem();
    Shard &shard = m_shards[shardOf(path)];
    XPAttributeValuePtr old; // destroyed after the lock
    const XPLocker lock(shard.mutex);
    XPAttributeValuePtr &entry = shard.entries[{path}];
    if (entry && (entry == stored || (value && entry->isEqual(*value))))
        return false;
    old = std::exchange(entry, stored);
    return old ? old != notLookedUp() : bool(value);
}

void XPAttributeTable::setNotLookedUp(KPPooledString path)
{
    Shard &shard = m_shards[shardOf(path)];
    XPAttributeValuePtr old;
    const XPLocker lock(shard.mutex);
    old = std::exchange(shard.entries[{path}], notLookedUp());
}

bool XPAttributeTable::remove(KPPooledString path)
{
    Shard &shard = m_shards[shardOf(path)];
    XPAttributeValuePtr old;
    const XPLocker lock(shard.mutex);
    old = shard.entries.take({path});
    return old && old != noItem() && old != notLookedUp();
}

QList<std::pair<KPPooledString, XPAttributeValuePtr>> XPAttributeTable::values() const
{
    QList<std::pair<KPPooledString, XPAttributeValuePtr>> values;
    for (const Shard &shard : m_shards) {
        const XPLocker lock(shard.mutex);
        for (auto entry = shard.entries.cbegin(); entry != shard.entries.cend(); ++entry) {
            if (*entry != noItem() && *entry != notLookedUp())
                values.emplaceBack(entry.key().path, entry.value());
        }
    }
    return values;
}

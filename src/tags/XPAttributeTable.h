#pragma once

#include "KPPool.h"
#include "XPAttributeValue.h"
#include "XPMutex.h"

#include <QHash>
#include <array>

// The locked dictionary of an attribute cache: pooled path to value or marker.
//
// Locks are many, each held for one look at one entry, so that readers hardly ever wait.
// Threads: any.
class XPAttributeTable
{
public:
    // What is stored instead of a value. Known by their address alone: a file may well have their
    // text as its value.
    static const XPAttributeValuePtr &noItem();      // "kNoItemxxxxx": there is no value
    static const XPAttributeValuePtr &notLookedUp(); // "NotLookedUpxxxxx": not known (any more)

    struct Found
    {
        XPAttributeValuePtr value; // null for a marker and without an entry
        bool isUnknown = false;    // no entry, or not looked up
    };
    Found find(KPPooledString path) const;

    // A null value stores noItem(). True when that is news: it differs, and the old entry was not
    // merely an unknown value.
    bool store(KPPooledString path, const XPAttributeValuePtr &value);
    void setNotLookedUp(KPPooledString path);
    // True when a value went with it.
    bool remove(KPPooledString path);

    // All real values, in no order.
    QList<std::pair<KPPooledString, XPAttributeValuePtr>> values() const;

private:
    // A path, hashed so that those that lie together in the pool, as the files of a folder do,
    // lie together in the table: a walk finds most of them in the processor's cache.
    struct Key
    {
        KPPooledString path;

        static constexpr int slotBits = 6;  // addresses that share a slot
        static constexpr int groupBits = 6; // slots that stay together
        friend bool operator==(Key a, Key b) { return a.path == b.path; }
        friend size_t qHash(Key key, size_t /*seed*/ = 0) noexcept
        {
            const auto slot = reinterpret_cast<size_t>(key.path.data()) >> slotBits;
            return (groupHash(slot >> groupBits) << groupBits) | (slot & ((1 << groupBits) - 1));
        }
        static size_t groupHash(size_t group) noexcept
        {
            return QT_PREPEND_NAMESPACE(qHash)(group);
        }
    };
    struct alignas(64) Shard
    {
        mutable XPMutex mutex;
        QHash<Key, XPAttributeValuePtr> entries XP_GUARDED_BY(mutex);
    };
    static constexpr size_t shardCount = 1 << 6;
    // By the upper bits of the hash; the tables split by the lower ones.
    static size_t shardOf(KPPooledString path)
    {
        return qHash(Key{path}) >> (sizeof(size_t) * 8 - 6);
    }

    std::array<Shard, shardCount> m_shards;
};

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
    struct alignas(64) Shard
    {
        mutable XPMutex mutex;
        QHash<KPPooledString, XPAttributeValuePtr> entries XP_GUARDED_BY(mutex);
    };
    static constexpr size_t shardCount = 1 << 6;
    // By the upper bits of the hash; the tables split by the lower ones.
    static size_t shardOf(KPPooledString path) { return qHash(path) >> (sizeof(size_t) * 8 - 6); }

    std::array<Shard, shardCount> m_shards;
};

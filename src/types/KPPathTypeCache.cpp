#include "KPPathTypeCache.h"

QString KPPathTypeCache::type(const QString &path) const
{
    const Shard &shard = m_shards[index(path)];
    const XPLocker lock(shard.mutex);
    return shard.types.value(path);
}

KPPathTypeCache::Stamp KPPathTypeCache::stamp(const QString &path) const
{
    const Shard &shard = m_shards[index(path)];
    const XPLocker lock(shard.mutex);
    return shard.forgotten;
}

void KPPathTypeCache::insert(const QString &path, const QString &type, Stamp stamp)
{
    Shard &shard = m_shards[index(path)];
    const XPLocker lock(shard.mutex);
    if (shard.forgotten != stamp)
        return;
    if (shard.types.size() >= pathsPerShard)
        shard.types.clear();
    shard.types.insert(path, type);
}

void KPPathTypeCache::forget(const QString &path)
{
    Shard &shard = m_shards[index(path)];
    const XPLocker lock(shard.mutex);
    ++shard.forgotten;
    shard.types.remove(path);
}

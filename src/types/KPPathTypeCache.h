#pragma once

#include "XPMutex.h"

#include <QHash>
#include <QString>
#include <array>

// The types of paths that had to be looked at, by path.
//
// A look takes time, and the file may change meanwhile: take the stamp before looking and hand
// it to insert(), which drops the answer when the path was forgotten since. The number of paths
// kept is limited: a full part of the cache starts again.
// Threads: any; split by hash, so that threads seldom wait for each other.
class KPPathTypeCache
{
public:
    using Stamp = quint64;

    QString type(const QString &path) const; // empty: not known
    Stamp stamp(const QString &path) const;
    void insert(const QString &path, const QString &type, Stamp stamp);
    void forget(const QString &path);

private:
    struct Shard
    {
        mutable XPMutex mutex;
        QHash<QString, QString> types XP_GUARDED_BY(mutex);
        Stamp forgotten XP_GUARDED_BY(mutex) = 0; // how often forget() was called
    };
    static constexpr size_t shardCount = 64;
    static constexpr qsizetype pathsPerShard = 4096;

    size_t index(const QString &path) const { return qHash(path, 1) % shardCount; }

    std::array<Shard, shardCount> m_shards;
};

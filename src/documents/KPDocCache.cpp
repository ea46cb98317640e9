#include "KPDocCache.h"

#include "KPDocTable.h"
#include "XPLog.h"

#include <array>
#include <deque>
#include <fcntl.h>

namespace {

// A part of the table. Outside of renames a record stands in it under its own path.
struct alignas(64) Shard
{
    XPMutex mutex;
    KPDocTable table XP_GUARDED_BY(mutex);
};

// Where records lie. By folder, so that those of one folder lie together: they are looked at in
// that order.
struct alignas(64) Slab
{
    XPMutex mutex;
    std::deque<KPDoc> docs XP_GUARDED_BY(mutex);
};

struct Tables
{
    static constexpr size_t shardCount = 64;
    static constexpr size_t slabCount = 16;

    std::array<Shard, shardCount> shards;
    std::array<Slab, slabCount> slabs;
    // Held for the three steps of a rename: the new key, the record's path, the old key. Who
    // finds a record under another path than its own waits here and looks again.
    XPMutex renames;

    Shard &shard(size_t hash) { return shards[hash % shardCount]; }
    Slab &slab(KPPooledString parent) { return slabs[KPDocTable::hash(parent) % slabCount]; }
};

} // namespace

// Never destroyed: other static objects may ask to the end.
static Tables &tables()
{
    static auto *const tables = new Tables;
    return *tables;
}

static KPDoc *lookUp(KPPooledString path, size_t hash)
{
    Shard &shard = tables().shard(hash);
    const XPLocker lock(shard.mutex);
    return shard.table.find(path, hash);
}

static KPDoc *find(KPPooledString path, size_t hash)
{
    KPDoc *doc = lookUp(path, hash);
    if (doc == nullptr || doc->pooledPath() == path)
        return doc;
    const XPLocker lock(tables().renames);
    return lookUp(path, hash);
}

static KPDoc *make(KPDoc::Place place, const XPFileInfo &info, size_t hash)
{
    const KPPooledString path = place.path;
    Slab &slab = tables().slab(place.parent);
    Shard &shard = tables().shard(hash);
    const XPLocker lock(shard.mutex);
    if (KPDoc *doc = shard.table.find(path, hash))
        return doc; // made by another thread meanwhile
    const XPLocker slabLock(slab.mutex);
    KPDoc *doc = &slab.docs.emplace_back(std::move(place), info);
    shard.table.put(path, hash, doc);
    return doc;
}

KPDoc *KPDocCache::docAtPath(KPPooledString path, const XPFileInfo *lstatInfo)
{
    if (path.isEmpty() || path == KPDoc::gonePath())
        return nullptr;
    const size_t hash = KPDocTable::hash(path);
    if (KPDoc *doc = find(path, hash)) {
        if (lstatInfo != nullptr)
            doc->updateFromLStat(*lstatInfo);
        return doc;
    }
    KPDoc::Place place(path);
    if (lstatInfo != nullptr)
        return make(std::move(place), *lstatInfo, hash);
    const XPFileInfo info =
        XPFileInfo::readAt(AT_FDCWD, place.representation.constData()).valueOr({});
    return make(std::move(place), info, hash);
}

KPDoc *KPDocCache::docAtPath(const QString &path, const XPFileInfo *lstatInfo)
{
    return docAtPath(KPPool::pooledString(path), lstatInfo);
}

KPDoc *KPDocCache::docAtPathIfExists(KPPooledString path)
{
    return path.isEmpty() ? nullptr : find(path, KPDocTable::hash(path));
}

KPDoc *KPDocCache::docAtPathIfExists(const QString &path)
{
    bool isPooled = false;
    const KPPooledString pooled = KPPool::existingString(path, &isPooled);
    return isPooled ? docAtPathIfExists(pooled) : nullptr;
}

KPDoc::Docs KPDocCache::docsAtPaths(const QStringList &paths)
{
    KPDoc::Docs docs;
    for (const QString &path : paths) {
        if (KPDoc *doc = docAtPath(path))
            docs.append(doc);
    }
    return docs;
}

qsizetype KPDocCache::totalDocs()
{
    qsizetype count = 0;
    for (Slab &slab : tables().slabs) {
        const XPLocker lock(slab.mutex);
        count += static_cast<qsizetype>(slab.docs.size());
    }
    return count;
}

std::optional<KPDocCache::Moved> KPDocCache::move(KPDoc *doc, KPDoc::Place place)
{
    const KPPooledString path = place.path;
    const bool isKept = !path.isEmpty() && path != KPDoc::gonePath();
    const XPLocker lock(tables().renames);
    Moved moved{doc->pooledPath()};
    if (moved.oldPath == path)
        return {};
    if (isKept) {
        const size_t hash = KPDocTable::hash(path);
        Shard &shard = tables().shard(hash);
        const XPLocker shardLock(shard.mutex);
        moved.displaced = shard.table.put(path, hash, doc);
    }
    doc->setPlace(std::move(place));
    // The file that it stood for was replaced by this one.
    if (moved.displaced != nullptr)
        moved.displaced->setPlace(KPDoc::Place(KPDoc::gonePath()));
    const size_t hash = KPDocTable::hash(moved.oldPath);
    Shard &shard = tables().shard(hash);
    const XPLocker shardLock(shard.mutex);
    shard.table.remove(moved.oldPath, hash, doc);
    return moved;
}

void KPDocCache::pathChanged(const QString &oldPath, const QString &newPath)
{
    KPDoc *doc = docAtPathIfExists(oldPath);
    if (doc != nullptr)
        doc->setFilePath(newPath);
    else
        qCWarning(xpLog) << "screw up in path changing in KPDocCache - there is no doc on record "
                            "for old path";
}

KPDoc::Docs KPDocCache::allDocsWithValues(KPDocMetaData::Attribute attribute)
{
    KPDoc::Docs docs;
    for (const auto &[path, value] : KPDocMetaData::values(attribute)) {
        if (KPDoc *doc = docAtPath(path))
            docs.append(doc);
    }
    return docs;
}

#include "KPDocCache.h"

#include "XPLog.h"

#include <array>
#include <deque>
#include <fcntl.h>

namespace {

// Where records lie. By folder, so that those of one folder lie together, as they are looked at
// one after the other.
struct alignas(64) Slab
{
    XPMutex mutex;
    std::deque<KPDoc> docs XP_GUARDED_BY(mutex);
};

struct Records
{
    static constexpr size_t slabCount = 16;

    std::array<Slab, slabCount> slabs;
    // Held for the three steps of a rename: attached to the new path, the record's own path,
    // detached from the old path. Who finds a record at another path than its own waits here and
    // looks again.
    XPMutex renames;

    Slab &slab(KPPooledString folder) { return slabs[qHash(folder) % slabCount]; }
};

} // namespace

// Never destroyed: other static objects may ask to the end.
static Records &records()
{
    static auto *const records = new Records;
    return *records;
}

// The record is attached to its pooled path: finding it takes no table and no lock.
static KPDoc *attachedTo(KPPooledString path)
{
    return static_cast<KPDoc *>(path.attachment().load(std::memory_order_acquire));
}

static KPDoc *find(KPPooledString path)
{
    KPDoc *doc = attachedTo(path);
    if (doc == nullptr || doc->pooledPath() == path)
        return doc;
    const XPLocker lock(records().renames);
    return attachedTo(path);
}

static KPDoc *make(KPDoc::Place place, const XPFileInfo &info)
{
    const KPPooledString path = place.path;
    Slab &slab = records().slab(place.parent);
    const XPLocker lock(slab.mutex);
    if (KPDoc *doc = attachedTo(path))
        return doc; // made by another thread meanwhile
    KPDoc *doc = &slab.docs.emplace_back(std::move(place), info);
    void *other = nullptr;
    if (path.attachment().compare_exchange_strong(other, doc, std::memory_order_acq_rel))
        return doc;
    slab.docs.pop_back(); // a renamed one has come to the path, and nobody has seen this one
    return static_cast<KPDoc *>(other);
}

KPDoc *KPDocCache::docAtPath(KPPooledString path, const XPFileInfo *lstatInfo)
{
    if (path.isEmpty() || path == KPDoc::gonePath())
        return nullptr;
    if (KPDoc *doc = find(path)) {
        if (lstatInfo != nullptr)
            doc->updateFromLStat(*lstatInfo);
        return doc;
    }
    KPDoc::Place place(path);
    if (lstatInfo != nullptr)
        return make(std::move(place), *lstatInfo);
    const XPFileInfo info =
        XPFileInfo::readAt(AT_FDCWD, place.representation.constData()).valueOr({});
    return make(std::move(place), info);
}

KPDoc *KPDocCache::docAtPath(const QString &path, const XPFileInfo *lstatInfo)
{
    return docAtPath(KPPool::pooledString(path), lstatInfo);
}

KPDoc *KPDocCache::docAtPathIfExists(KPPooledString path)
{
    return path.isEmpty() ? nullptr : find(path);
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
    for (Slab &slab : records().slabs) {
        const XPLocker lock(slab.mutex);
        count += static_cast<qsizetype>(slab.docs.size());
    }
    return count;
}

std::optional<KPDocCache::Moved> KPDocCache::move(KPDoc *doc, KPDoc::Place place)
{
    const KPPooledString path = place.path;
    const bool isKept = !path.isEmpty() && path != KPDoc::gonePath();
    const XPLocker lock(records().renames);
    Moved moved{doc->pooledPath()};
    if (moved.oldPath == path)
        return {};
    if (isKept)
        moved.displaced = static_cast<KPDoc *>(path.attachment().exchange(doc));
    doc->setPlace(std::move(place));
    // The file that it stood for was replaced by this one.
    if (moved.displaced != nullptr)
        moved.displaced->setPlace(KPDoc::Place(KPDoc::gonePath()));
    void *self = doc;
    moved.oldPath.attachment().compare_exchange_strong(self, nullptr);
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

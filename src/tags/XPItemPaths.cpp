#include "XPItemPaths.h"

#include "XPMutex.h"

#include <QHash>

namespace {

struct Table
{
    XPMutex mutex;
    QHash<const IndexSource *, QHash<IndexItem, KPPooledString>> paths XP_GUARDED_BY(mutex);
    QHash<const IndexSource *, int> users XP_GUARDED_BY(mutex);
};

// Never destroyed: a cache may be at work while the process ends.
Table &table()
{
    static auto &paths = *new Table;
    return paths;
}

} // namespace

bool XPItemPaths::begin(const IndexSource &source)
{
    Table &known = table();
    const XPLocker lock(known.mutex);
    return ++known.users[&source] == 1;
}

void XPItemPaths::end(const IndexSource &source)
{
    Table &known = table();
    const XPLocker lock(known.mutex);
    if (--known.users[&source] > 0)
        return;
    known.users.remove(&source);
    known.paths.remove(&source);
}

void XPItemPaths::set(const IndexSource &source, IndexItem item, KPPooledString path)
{
    Table &known = table();
    const XPLocker lock(known.mutex);
    known.paths[&source].insert(item, path);
}

std::optional<KPPooledString> XPItemPaths::setIfNone(const IndexSource &source, IndexItem item,
                                                     KPPooledString path)
{
    Table &known = table();
    const XPLocker lock(known.mutex);
    auto &paths = known.paths[&source];
    const auto entry = paths.constFind(item);
    if (entry != paths.cend())
        return *entry;
    paths.insert(item, path);
    return {};
}

std::optional<KPPooledString> XPItemPaths::find(const IndexSource &source, IndexItem item)
{
    Table &known = table();
    const XPLocker lock(known.mutex);
    const auto paths = known.paths.constFind(&source);
    if (paths == known.paths.cend())
        return {};
    const auto entry = paths->constFind(item);
    return entry == paths->cend() ? std::nullopt : std::optional(*entry);
}

void XPItemPaths::remove(const IndexSource &source, IndexItem item)
{
    Table &known = table();
    const XPLocker lock(known.mutex);
    const auto paths = known.paths.find(&source);
    if (paths != known.paths.end())
        paths->remove(item);
}

qsizetype XPItemPaths::count()
{
    Table &known = table();
    const XPLocker lock(known.mutex);
    qsizetype count = 0;
    for (const auto &paths : known.paths)
        count += paths.size();
    return count;
}

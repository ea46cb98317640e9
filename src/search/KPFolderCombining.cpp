#include "KPFolderCombining.h"

#include "KPSearchFolders.h"

namespace {

// Entries beside the paths that they stand for; one that stands for nothing is left out.
struct List
{
    QStringList entries;
    QStringList paths;
};

} // namespace

static List listOf(const QStringList &folders)
{
    List list;
    if (KPSearchFolders::isPlace(folders.first())) {
        const KPSearchFolders::Real real = KPSearchFolders::realFolders(folders);
        list.entries = real.folders;
        if (real.wholeDisk)
            list.entries.append(QStringLiteral("/"));
        list.paths = list.entries;
        return list;
    }
    for (const QString &entry : folders) {
        if (KPSearchFolders::isPlace(entry))
            continue;
        if (const QString path = KPSearchFolders::instance().actualPath(entry); !path.isEmpty()) {
            list.entries.append(entry);
            list.paths.append(path);
        }
    }
    return list;
}

// Which entries lie in the folders; of a listing, each must be one of them.
static QStringList entriesWithin(const List &list, const List &others,
                                 KPFolderCombining::Reach reach)
{
    const KPOptimizedFolders folders(others.paths, KPFolderCombining::Reach::Below);
    QStringList within;
    for (qsizetype i = 0; i < list.paths.size(); ++i) {
        const bool isWithin = reach == KPFolderCombining::Reach::Below
                                  ? folders.holdsOrIs(list.paths[i])
                                  : others.paths.contains(list.paths[i]);
        if (isWithin)
            within.append(list.entries[i]);
    }
    return within;
}

QStringList KPFolderCombining::common(const QStringList &one, Reach oneReach,
                                      const QStringList &two, Reach twoReach)
{
    if (one.isEmpty() || two.isEmpty())
        return one + two;
    if (one == two || two.first() == KPSearchFolders::everywhere)
        return one;
    if (one.first() == KPSearchFolders::everywhere)
        return two;
    const List first = listOf(one);
    const List second = listOf(two);
    const QStringList ofOne = entriesWithin(first, second, twoReach);
    if (!first.paths.isEmpty() && ofOne.size() == first.paths.size())
        return one;
    QStringList ofTwo = entriesWithin(second, first, oneReach);
    if (!second.paths.isEmpty() && ofTwo.size() == second.paths.size())
        return two;
    // One folder may stand in both, spelled in two ways.
    QStringList both;
    QStringList paths;
    for (const QString &entry : ofOne + ofTwo) {
        const QString path = KPSearchFolders::instance().actualPath(entry);
        if (!paths.contains(path)) {
            both.append(entry);
            paths.append(path);
        }
    }
    return both;
}

QStringList KPFolderCombining::unionOf(const QStringList &one, const QStringList &two)
{
    if (one.isEmpty() || two.isEmpty() || one == two)
        return one.isEmpty() ? two : one;
    for (const QStringList &list : {one, two}) {
        if (list.first() == KPSearchFolders::everywhere)
            return list;
    }
    const bool hasPlace =
        KPSearchFolders::isPlace(one.first()) || KPSearchFolders::isPlace(two.first());
    QStringList all = hasPlace ? listOf(one).paths + listOf(two).paths : one + two;
    all.removeDuplicates();
    return all;
}

#include "KPTagPlan.h"

#include "KPTagDocuments.h"
#include "KarvexTagKey.h"
#include "XPPath.h"

#include <QHash>
#include <QSet>
#include <algorithm>

static bool isBelow(const QString &path, const QStringList &roots)
{
    return std::any_of(roots.begin(), roots.end(), [&](const QString &root) {
        return path == root || path.startsWith(root.endsWith(u'/') ? root : root + u'/');
    });
}

static QList<KPTagPlan::Place> placesOf(const QStringList &paths)
{
    QHash<QString, qsizetype> counts;
    for (const QString &path : paths)
        ++counts[XPPath::folder(path)];
    QList<KPTagPlan::Place> places;
    for (auto each = counts.cbegin(); each != counts.cend(); ++each)
        places.append({each.key(), each.value()});
    std::sort(places.begin(), places.end(), [](const auto &a, const auto &b) {
        return a.count != b.count ? a.count > b.count : a.folder < b.folder;
    });
    return places;
}

KPTagPlan KPTagPlan::make(const KPTagRename &rename, const QStringList &missingRoots)
{
    KPTagPlan plan;
    plan.rename = rename;
    QStringList all;
    for (const QString &from : rename.allFrom())
        all += KPTagDocuments::pathsWithUserTag(from, rename.withBranch);
    all.removeDuplicates();
    for (const QString &path : all)
        (isBelow(path, missingRoots) ? plan.away : plan.paths).append(path);
    plan.places = placesOf(all);
    const QString &name = rename.isDeletion() ? rename.from : rename.to;
    const QSet<QString> spellings{foldText(rename.from), foldText(name)};
    auto used = KPTagDocuments::allUserTags();
    std::stable_sort(used.begin(), used.end(),
                     [](const auto &a, const auto &b) { return a.count > b.count; });
    for (const auto &each : used) {
        const QString key = karvexTagKey(each.tag);
        const bool isOld = key == karvexTagKey(rename.from);
        if (key == karvexTagKey(name))
            plan.isMerge = plan.isMerge || (!isOld && each.branchCount > 0);
        else if (!isOld && each.count > 0 && spellings.contains(foldText(each.tag)))
            plan.otherSpellings.append(each.tag);
    }
    return plan;
}

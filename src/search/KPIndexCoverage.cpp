#include "KPIndexCoverage.h"

#include "MetadataIndex.h"
#include "XPPath.h"
#include "XPVolumes.h"

// The path below the folder, without a slash at its beginning; nothing: it is not in it.
static std::optional<QByteArray> below(const QByteArray &folder, const QByteArray &path)
{
    if (path == folder)
        return QByteArray();
    const QByteArray start = folder == "/" ? folder : folder + '/';
    if (!path.startsWith(start))
        return {};
    return path.mid(start.size());
}

static bool isLeftOut(const IndexRules &rules, QByteArray folder, const QByteArray &rest)
{
    for (const QByteArray &name : rest.split('/')) {
        if (name.isEmpty())
            continue;
        if (rules.excludes(folder, name))
            return true;
        folder = folder == "/" ? folder + name : folder + '/' + name;
    }
    return false;
}

KPIndexCoverage::Kind KPIndexCoverage::of(const IndexSource &source, const QString &folder)
{
    const QByteArray path = XPPath::encode(folder);
    QSet<QByteArray> roots;
    bool isKnown = false;
    {
        const IndexCatalog &catalog = source.catalog();
        const IndexCatalog::Reading reading(catalog);
        isKnown = catalog.itemAtPath(path) != 0;
        for (const IndexItem root : catalog.roots())
            roots.insert(catalog.path(catalog.slotOf(root)));
    }
    // Those of the settings too: an index that was only just opened knows none yet.
    for (const QString &root : MetadataIndex::allRoots())
        roots.insert(XPPath::encode(XPPath::absolute(root)));
    const IndexRules rules = IndexRules::fromSettings();
    const QString mountPoint = XPVolumes::volumeOf(folder).mountPoint;
    Kind kind = Kind::NoRoot;
    for (const QByteArray &root : roots) {
        const auto rest = below(root, path);
        // A volume mounted inside a root is no part of it.
        if (!rest || XPVolumes::volumeOf(XPPath::decode(root)).mountPoint != mountPoint)
            continue;
        if (isKnown || !isLeftOut(rules, root, *rest))
            return Kind::Indexed;
        kind = Kind::LeftOut;
    }
    return kind;
}

QString KPIndexCoverage::problem(const IndexSource &source, const QString &folder)
{
    switch (of(source, folder)) {
    case Kind::Indexed:
        break;
    case Kind::NoRoot:
        return QStringLiteral("%1 is not indexed; add it with: murnctl index add DIR").arg(folder);
    case Kind::LeftOut:
        return QStringLiteral("%1 is left out of the index by a rule; add it with: murnctl index "
                              "add DIR")
            .arg(folder);
    }
    return {};
}

#include "KPIndexCoverage.h"

#include "IndexLook.h"
#include "IndexSettings.h"
#include "MetadataIndex.h"
#include "XPPath.h"
#include "XPVolumes.h"

#include <QSet>

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

KPIndexCoverage::Kind KPIndexCoverage::of(const IndexSource &source, const QString &folder)
{
    const QByteArray path = XPPath::encode(folder);
    QSet<QByteArray> roots;
    bool isKnown = false;
    {
        const IndexLook look(source);
        isKnown = look.atPath(path).has_value();
        for (const IndexItem root : look.roots()) {
            if (const auto row = look.at(root))
                roots.insert(row->path());
        }
    }
    // Those of the settings too: an index that was only just opened knows none yet.
    for (const QString &root : IndexSettings::allRoots())
        roots.insert(XPPath::encode(XPPath::absolute(root)));
    const QString mountPoint = XPVolumes::volumeOf(folder).mountPoint;
    Kind kind = Kind::NoRoot;
    for (const QByteArray &root : roots) {
        const auto rest = below(root, path);
        // A volume mounted inside a root is no part of it.
        if (!rest || XPVolumes::volumeOf(XPPath::decode(root)).mountPoint != mountPoint)
            continue;
        if (isKnown || !IndexSettings::isLeftOut(folder, XPPath::decode(root)))
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
        return qtTrId("KPIndexFolderNotIndexed").arg(XPPath::printable(folder));
    case Kind::LeftOut:
        return qtTrId("KPIndexFolderLeftOut").arg(XPPath::printable(folder));
    }
    return {};
}

#include "KPSearchPlaces.h"

#include "MDQuery.h"
#include "MetadataIndex.h"
#include "XPFolders.h"
#include "XPVolumes.h"

#include <algorithm>

const QString KPSearchPlaces::everywhere = QStringLiteral("KPQueryScopeEverywhere");
const QString KPSearchPlaces::preferredLocations = QStringLiteral("KPQueryScopePreferredLocations");
const QString KPSearchPlaces::preferredShort = QStringLiteral("KPPrefLoc");

static std::unique_ptr<KPSearchPlaces> &installed()
{
    static std::unique_ptr<KPSearchPlaces> places = std::make_unique<KPSearchPlaces>();
    return places;
}

const KPSearchPlaces &KPSearchPlaces::current()
{
    return *installed();
}

void KPSearchPlaces::install(std::unique_ptr<KPSearchPlaces> places)
{
    installed() = places ? std::move(places) : std::make_unique<KPSearchPlaces>();
}

// The folder itself counts.
static bool isIn(const QString &folder, const QString &path)
{
    return path == folder ||
           (path.startsWith(folder) && (folder.endsWith(u'/') || path.at(folder.size()) == u'/'));
}

KPSearchPlaces::Real KPSearchPlaces::realFolders(const QStringList &entries) const
{
    Real real;
    for (const QString &entry : entries) {
        if (entry == everywhere)
            real.everything = true;
        else if (entry == MDQuery::scopeComputer)
            real.folders.append(QStringLiteral("/"));
        else if (entry == MDQuery::scopeHome)
            real.folders.append(XPFolders::home());
        else if (entry == preferredLocations || entry == preferredShort)
            real.folders.append(MetadataIndex::roots());
        else if (const QString path = XPFolders::expandTilde(entry); path.startsWith(u'/'))
            real.folders.append(path);
    }
    return real;
}

bool KPSearchPlaces::pathInFolderArray(const QStringList &entries, const QString &path) const
{
    const Real real = realFolders(entries);
    if (real.everything)
        return true;
    return std::any_of(real.folders.begin(), real.folders.end(), [&](const QString &folder) {
        return folder == u"/" ? !isOnOtherVolume(path) : isIn(folder, path);
    });
}

QStringList KPSearchPlaces::spotlightNotAvaialableVolumeList() const
{
    const QStringList roots = MetadataIndex::allRoots();
    QStringList uncovered;
    for (const QString &mountPoint : XPVolumes::mountPoints()) {
        const bool isCovered = std::any_of(roots.begin(), roots.end(), [&](const QString &root) {
            return isIn(root, mountPoint) || isIn(mountPoint, root);
        });
        if (!isCovered && isOnOtherVolume(mountPoint + u'/'))
            uncovered.append(mountPoint);
    }
    return uncovered;
}

bool KPSearchPlaces::isOnOtherVolume(const QString &path)
{
    static const QLatin1String prefixes[] = {QLatin1String("/Volumes/"), QLatin1String("/Network/"),
                                             QLatin1String("/media/"), QLatin1String("/run/media/"),
                                             QLatin1String("/mnt/")};
    const auto isUnder = [&](QLatin1String prefix) { return path.startsWith(prefix); };
    if (std::any_of(std::begin(prefixes), std::end(prefixes), isUnder))
        return true;
    // A home on the network is home.
    const XPVolumes::Volume volume = XPVolumes::volumeOf(path);
    return volume.network && volume.mountPoint != XPVolumes::volumeOf(XPFolders::home()).mountPoint;
}

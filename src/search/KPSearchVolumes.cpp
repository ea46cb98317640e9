#include "KPSearchVolumes.h"

#include "XPFolders.h"
#include "XPVolumes.h"

#include <QSet>
#include <algorithm>

// Where desktops mount volumes, and where other platforms do. Of a folder with `depth` 2 the
// volumes lie one level deeper, below the name of a user.
static constexpr struct
{
    QLatin1String folder;
    int depth = 1;
} mountFolders[] = {{QLatin1String("/Volumes/"), 1},
                    {QLatin1String("/Network/"), 1},
                    {QLatin1String("/media/"), 2},
                    {QLatin1String("/run/media/"), 2},
                    {QLatin1String("/mnt/"), 1}};

static const auto *mountFolderOf(const QString &path)
{
    const auto found =
        std::find_if(std::begin(mountFolders), std::end(mountFolders),
                     [&](const auto &candidate) { return path.startsWith(candidate.folder); });
    return found == std::end(mountFolders) ? nullptr : found;
}

static bool isMadeUp(const XPVolumes::Volume &volume)
{
    static const QSet<QString> kernels = {
        QStringLiteral("proc"),       QStringLiteral("sysfs"),      QStringLiteral("devtmpfs"),
        QStringLiteral("devpts"),     QStringLiteral("tmpfs"),      QStringLiteral("cgroup"),
        QStringLiteral("cgroup2"),    QStringLiteral("securityfs"), QStringLiteral("debugfs"),
        QStringLiteral("tracefs"),    QStringLiteral("mqueue"),     QStringLiteral("hugetlbfs"),
        QStringLiteral("bpf"),        QStringLiteral("pstore"),     QStringLiteral("autofs"),
        QStringLiteral("configfs"),   QStringLiteral("fusectl"),    QStringLiteral("nsfs"),
        QStringLiteral("ramfs"),      QStringLiteral("efivarfs"),   QStringLiteral("binfmt_misc"),
        QStringLiteral("rpc_pipefs"), QStringLiteral("squashfs"),   QStringLiteral("fuse.portal"),
    };
    return kernels.contains(volume.fileSystem);
}

// A home on the network is home.
static bool isNetwork(const XPVolumes::Volume &volume)
{
    return volume.network && volume.mountPoint != XPVolumes::volumeOf(XPFolders::home()).mountPoint;
}

bool KPSearchVolumes::isOnOtherVolume(const QString &path)
{
    return mountFolderOf(path) != nullptr || isNetwork(XPVolumes::volumeOf(path));
}

// Those of memory alone count where a user mounted them.
static QStringList volumes(bool (*isWanted)(const XPVolumes::Volume &))
{
    QStringList found;
    for (const QString &mountPoint : XPVolumes::mountPoints()) {
        const XPVolumes::Volume volume = XPVolumes::volumeOf(mountPoint);
        const bool isReal =
            mountPoint == u"/" || mountFolderOf(mountPoint) != nullptr || !isMadeUp(volume);
        if (isReal && isWanted(volume) && !found.contains(mountPoint))
            found.append(mountPoint);
    }
    return found;
}

QStringList KPSearchVolumes::mounted()
{
    return volumes([](const XPVolumes::Volume &) { return true; });
}

QStringList KPSearchVolumes::mountedLocal()
{
    return volumes([](const XPVolumes::Volume &volume) { return !isNetwork(volume); });
}

QStringList KPSearchVolumes::mountedNetwork()
{
    return volumes(&isNetwork);
}

// The folder of a volume in the one that volumes are mounted in; empty: that folder itself.
static QString folderInMountFolder(const QString &path)
{
    const auto *mountFolder = mountFolderOf(path);
    if (mountFolder == nullptr)
        return {};
    qsizetype end = mountFolder->folder.size() - 1;
    for (int level = 0; level < mountFolder->depth; ++level) {
        const qsizetype begin = end + 1;
        if (begin >= path.size())
            return {};
        end = path.indexOf(u'/', begin);
        if (end < 0)
            end = path.size();
    }
    return path.left(end);
}

QString KPSearchVolumes::pathOf(const QString &path)
{
    QString mountPoint = XPVolumes::volumeOf(path).mountPoint;
    if (!path.startsWith(u"/Volumes/") && !path.startsWith(u"/Network/"))
        return mountPoint;
    const QString folder = folderInMountFolder(path);
    return mountPoint.size() > folder.size() ? mountPoint : folder;
}

bool KPSearchVolumes::isLikelyUnreachable(const QString &path)
{
    const QString folder = folderInMountFolder(path);
    return !folder.isEmpty() && XPVolumes::volumeOf(path).mountPoint.size() < folder.size() &&
           !XPVolumes::mountPoints().contains(folder);
}

QHash<QString, QString> KPSearchVolumes::indexAvailability(const QList<IndexStatus::Root> &roots)
{
    using State = IndexStatus::Root::State;
    static const auto statusOf = [](State state) {
        switch (state) {
        case State::Reading:
            return reading;
        case State::Missing:
            return missing;
        case State::Silent:
            return silent;
        case State::Live:
            break;
        }
        return works;
    };
    // Of several roots on a volume, the one that tells least good of it.
    static const QStringList worstLast = {works, reading, silent};
    QHash<QString, QString> statusOfVolume;
    for (const IndexStatus::Root &root : roots) {
        const QString status = statusOf(root.state);
        if (status == missing) {
            statusOfVolume.insert(root.path, status);
            continue;
        }
        QString &known = statusOfVolume[XPVolumes::volumeOf(root.path).mountPoint];
        if (known.isEmpty() || worstLast.indexOf(status) > worstLast.indexOf(known))
            known = status;
    }
    for (const QString &mountPoint : mounted()) {
        if (!statusOfVolume.contains(mountPoint) && isOnOtherVolume(mountPoint + u'/'))
            statusOfVolume.insert(mountPoint, fails);
    }
    return statusOfVolume;
}

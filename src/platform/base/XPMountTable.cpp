#include "XPMountTable.h"

#include "XPPath.h"

#include <QStringList>
#include <algorithm>

using Volume = XPVolumes::Volume;

// Reached over a network: file servers and cluster file systems, by the kernel's names, and the
// FUSE programs for the same purpose.
static bool isNetworkFileSystem(const QString &type)
{
    static const QStringList names = {
        QStringLiteral("nfs"),
        QStringLiteral("nfs4"),
        QStringLiteral("cifs"),
        QStringLiteral("smb3"),
        QStringLiteral("smbfs"),
        QStringLiteral("ncpfs"),
        QStringLiteral("afs"),
        QStringLiteral("coda"),
        QStringLiteral("9p"),
        QStringLiteral("ceph"),
        QStringLiteral("glusterfs"),
        QStringLiteral("lustre"),
        QStringLiteral("beegfs"),
        QStringLiteral("gpfs"),
        QStringLiteral("orangefs"),
        QStringLiteral("pvfs2"),
        QStringLiteral("davfs"),
        QStringLiteral("fuse.sshfs"),
        QStringLiteral("fuse.rclone"),
        QStringLiteral("fuse.glusterfs"),
        QStringLiteral("fuse.ceph"),
        QStringLiteral("fuse.davfs"),
        QStringLiteral("fuse.s3fs"),
        QStringLiteral("fuse.curlftpfs"),
        QStringLiteral("fuse.smbnetfs"),
        QStringLiteral("fuse.gvfsd-fuse"),
        QStringLiteral("fuse.kio-fuse"),
        QStringLiteral("fuse.google-drive-ocamlfuse"),
        QStringLiteral("fuse.onedriver"),
        QStringLiteral("fuse.juicefs"),
    };
    return names.contains(type);
}

// Every FUSE file system answers as slowly as the program behind it; "fuseblk" is a local disk.
// What an automounter will put in place of its "autofs" is not known before it is there.
static bool isSlowFileSystem(const QString &type)
{
    return type == u"fuse" || type.startsWith(u"fuse.") || type == u"autofs";
}

// Blanks, tabs, line ends and backslashes are written as a backslash and three octal digits.
static QString unescaped(const QByteArray &field)
{
    QByteArray bytes;
    const auto digit = [&field](qsizetype i) {
        const int value = i < field.size() ? field[i] - '0' : -1;
        return value >= 0 && value <= 7 ? value : -1;
    };
    for (qsizetype i = 0; i < field.size(); ++i) {
        const int high = digit(i + 1);
        const int middle = digit(i + 2);
        const int low = digit(i + 3);
        if (field[i] == '\\' && high >= 0 && high <= 3 && middle >= 0 && low >= 0) {
            bytes.append(static_cast<char>(high << 6 | middle << 3 | low));
            i += 3;
        } else {
            bytes.append(field[i]);
        }
    }
    return XPPath::decode(bytes);
}

// "36 35 98:0 /root /mount/point rw,noatime master:1 - ext4 /dev/sda1 rw": the number of fields
// before the dash varies.
static std::optional<Volume> volumeInLine(const QByteArray &line)
{
    const QList<QByteArray> fields = line.split(' ');
    const qsizetype dash = fields.indexOf("-", 6);
    if (dash < 0 || fields.size() < dash + 3 || !fields[4].startsWith('/'))
        return {};
    Volume volume;
    volume.mountPoint = unescaped(fields[4]);
    volume.fileSystem = unescaped(fields[dash + 1]);
    volume.source = unescaped(fields[dash + 2]);
    // A FUSE program without a name of its own often gives away the address that it serves.
    volume.network = isNetworkFileSystem(volume.fileSystem) ||
                     (volume.fileSystem == u"fuse" && volume.source.contains(u"://"));
    volume.slow = volume.network || isSlowFileSystem(volume.fileSystem);
    return volume;
}

// Orders paths so that everything in a folder directly follows the folder: '/' sorts first.
static bool comesBefore(QStringView a, QStringView b)
{
    const auto [inA, inB] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
    if (inA == a.end() || inB == b.end())
        return inA == a.end() && inB != b.end();
    if (*inA == u'/' || *inB == u'/')
        return *inA == u'/';
    return *inA < *inB;
}

static bool holds(QStringView mountPoint, QStringView path)
{
    if (mountPoint.size() == 1) // the root
        return path.startsWith(u'/');
    return path.startsWith(mountPoint) &&
           (path.size() == mountPoint.size() || path[mountPoint.size()] == u'/');
}

XPMountTable XPMountTable::parse(const QByteArray &mountInfo)
{
    XPMountTable table;
    for (const QByteArray &line : mountInfo.split('\n')) {
        if (auto volume = volumeInLine(line))
            table.m_entries.push_back({*std::move(volume)});
    }
    table.sort();
    return table;
}

// Of several mounts on one point the last one covers the others.
void XPMountTable::sort()
{
    const auto inOrder = [](const Entry &a, const Entry &b) {
        return comesBefore(a.volume.mountPoint, b.volume.mountPoint);
    };
    const auto samePoint = [](const Entry &a, const Entry &b) {
        return a.volume.mountPoint == b.volume.mountPoint;
    };
    std::reverse(m_entries.begin(), m_entries.end());
    std::stable_sort(m_entries.begin(), m_entries.end(), inOrder);
    m_entries.erase(std::unique(m_entries.begin(), m_entries.end(), samePoint), m_entries.end());
    for (size_t i = 0; i < m_entries.size(); ++i)
        m_entries[i].parent = holderAmong(static_cast<int>(i) - 1, m_entries[i].volume.mountPoint);
}

// Of an entry and those that hold it, the first that holds the path.
int XPMountTable::holderAmong(int entry, QStringView path) const
{
    while (entry >= 0) {
        const Entry &candidate = m_entries[static_cast<size_t>(entry)];
        if (holds(candidate.volume.mountPoint, path))
            break;
        entry = candidate.parent;
    }
    return entry;
}

// The last mount point not behind the path lies in the wanted one or is it: all that sorts
// between a folder and a path in it is in that folder too.
const Volume &XPMountTable::volumeOf(QStringView path) const
{
    static const Volume none;
    const auto after = std::upper_bound(m_entries.begin(), m_entries.end(), path,
                                        [](QStringView wanted, const Entry &entry) {
                                            return comesBefore(wanted, entry.volume.mountPoint);
                                        });
    const int found = holderAmong(static_cast<int>(after - m_entries.begin()) - 1, path);
    return found < 0 ? none : m_entries[static_cast<size_t>(found)].volume;
}

QStringList XPMountTable::mountPoints() const
{
    QStringList points;
    for (const Entry &entry : m_entries)
        points.append(entry.volume.mountPoint);
    return points;
}

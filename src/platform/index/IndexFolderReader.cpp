#include "IndexFolderReader.h"

#include "KPFileType.h"
#include "XPPath.h"
#include "XPPropertyList.h"

#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <sched.h>
#include <sys/sysmacros.h>
#include <sys/xattr.h>
#include <unistd.h>

static constexpr char prefix[] = "user.com.apple.metadata:";
static constexpr size_t prefixLength = sizeof prefix - 1;

IndexFolderReader::IndexFolderReader(const IndexRules &rules) : m_rules(rules)
{
    // Attributes are read by bare name in the folder, which is far cheaper than by whole path.
    m_ownDirectory = ::unshare(CLONE_FS) == 0;
}

int IndexFolderReader::openFolder(const QByteArray &path, int *error) const
{
    constexpr int flags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK;
    if (path.size() < 4000) {
        const int folder = ::open(path.constData(), flags);
        *error = errno;
        return folder;
    }
    // Longer than the system takes at once: step by step.
    int folder = ::open("/", flags);
    for (const QByteArray &part : path.split('/')) {
        if (part.isEmpty() || folder < 0)
            continue;
        const int next = ::openat(folder, part.constData(), flags);
        *error = errno;
        ::close(folder);
        folder = next;
    }
    return folder;
}

void IndexFolderReader::readAttributes(IndexEntry &entry)
{
    char names[4096];
    ssize_t size = ::llistxattr(entry.name.constData(), names, sizeof names);
    QByteArray larger;
    if (size < 0 && errno == ERANGE) {
        larger.resize(65536);
        size =
            ::llistxattr(entry.name.constData(), larger.data(), static_cast<size_t>(larger.size()));
    }
    entry.attributesRead = true;
    const char *at = larger.isEmpty() ? names : larger.constData();
    const char *const end = at + std::max<ssize_t>(size, 0);
    for (; at < end; at += std::strlen(at) + 1) {
        if (std::strncmp(at, prefix, prefixLength) != 0)
            continue;
        char bytes[4096];
        const ssize_t length = ::lgetxattr(entry.name.constData(), at, bytes, sizeof bytes);
        if (length <= 0)
            continue; // empty, gone meanwhile, or longer than any value of the convention
        const auto value = XPPropertyList::read(QByteArrayView(bytes, length));
        entry.attributes.insert(XPPath::decode(QByteArrayView(at + prefixLength)),
                                value ? *value : PropertyValue(QByteArray(bytes, length)));
    }
}

bool IndexFolderReader::fill(int folder, const QByteArray &path, IndexEntry &entry, quint64 device,
                             const Known &known)
{
    auto info = XPFileInfo::readAt(folder, entry.name.constData());
    if (!info)
        return false; // gone since the folder was read
    entry.info = *info;
    entry.descend = entry.info.isDirectory() && entry.info.device == device &&
                    !m_rules.excludes(path, entry.name);
    if (entry.info.isDirectory() && !entry.descend && m_rules.excludes(path, entry.name))
        return false;
    if (known && known(entry.name, entry.info))
        return true;
    const QString name = XPPath::decode(entry.name);
    entry.type = KPFileType::utiForPath(XPPath::decode(path) + u'/' + name, XPPath::extension(name),
                                        entry.info.mode);
    if (entry.info.isRegular() || entry.info.isDirectory())
        readAttributes(entry);
    else
        entry.attributesRead = true;
    return true;
}

IndexListing IndexFolderReader::readFolder(const QByteArray &path, const Known &known)
{
    IndexListing listing;
    listing.folder = path;
    int error = 0;
    const int folder = openFolder(path, &error);
    if (folder < 0) {
        listing.error = XPError::fromErrno(error, XPPath::decode(path));
        return listing;
    }
    DIR *stream = ::fdopendir(folder);
    struct stat own = {};
    if (!stream || ::fstat(folder, &own) != 0 || !m_ownDirectory || ::fchdir(folder) != 0) {
        listing.error = XPError::fromErrno(errno, XPPath::decode(path));
        stream ? ::closedir(stream) : ::close(folder);
        return listing;
    }
    const quint64 device = quint64{gnu_dev_major(own.st_dev)} << 32 | gnu_dev_minor(own.st_dev);
    errno = 0;
    while (const dirent *item = ::readdir(stream)) { // NOLINT(concurrency-mt-unsafe): own stream
        const QByteArrayView name(item->d_name);
        if (name == "." || name == "..")
            continue;
        if (m_rules.isCacheMarker(name)) {
            listing.isCache = true;
            listing.entries.clear();
            break;
        }
        IndexEntry entry;
        entry.name = name.toByteArray();
        if (fill(folder, path, entry, device, known))
            listing.entries.push_back(std::move(entry));
        errno = 0;
    }
    if (errno != 0 && !listing.isCache)
        listing.error = XPError::fromErrno(errno, XPPath::decode(path));
    if (const auto info = XPFileInfo::readAt(folder, "."))
        listing.info = *info;
    ::closedir(stream);
    return listing;
}

XPResult<IndexEntry> IndexFolderReader::readEntry(const QByteArray &folder, const QByteArray &name)
{
    int error = 0;
    const int opened = openFolder(folder, &error);
    if (opened < 0)
        return XPError::fromErrno(error, XPPath::decode(folder));
    IndexEntry entry;
    entry.name = name;
    struct stat own = {};
    const bool there =
        m_ownDirectory && ::fstat(opened, &own) == 0 && ::fchdir(opened) == 0 &&
        fill(opened, folder, entry,
             quint64{gnu_dev_major(own.st_dev)} << 32 | gnu_dev_minor(own.st_dev), {});
    ::close(opened);
    if (!there)
        return XPError::make(XPError::Kind::NotFound, QStringLiteral("not there, or left out"),
                             XPPath::decode(folder + '/' + name));
    return entry;
}

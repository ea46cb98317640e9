#include "IndexFolderReader.h"

#include "IndexBytesKey.h"
#include "IndexDesktopKeys.h"
#include "XPPath.h"
#include "XPPropertyList.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <sched.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

static constexpr char prefix[] = "user.com.apple.metadata:";
static constexpr size_t prefixLength = sizeof prefix - 1;
static constexpr char userPrefix[] = "user.";
static constexpr size_t userPrefixLength = sizeof userPrefix - 1;
static constexpr size_t bufferSize = 64 * 1024; // of names: a part of a listing
static constexpr size_t largestValue = 64 * 1024;
// More a value of that length only holds by sharing its parts: then it is kept as its bytes.
static constexpr XPPropertyList::Limits valueLimits{.objects = largestValue};
static constexpr size_t usualValue = 1024; // the kernel clears as much memory as it is offered

IndexFolderReader::IndexFolderReader(std::shared_ptr<const IndexRules> rules, Options options)
    : m_rules(std::move(rules)), m_options(options)
{
    // Attributes are read by bare name in the folder, which is far cheaper than by whole path.
    m_ownDirectory = options.ownDirectory && ::unshare(CLONE_FS) == 0;
    m_buffers[0].resize(bufferSize);
    m_buffers[1].resize(bufferSize);
    m_value.resize(largestValue);
}

// --- Folders

static int openFolder(const QByteArray &path)
{
    constexpr int flags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK;
    if (path.size() < PATH_MAX)
        return ::open(path.constData(), flags);
    // Longer than the system takes at once: step by step.
    int folder = ::open("/", flags);
    for (const QByteArray &part : path.split('/')) {
        if (part.isEmpty() || folder < 0)
            continue;
        const int next = ::openat(folder, part.constData(), flags);
        const int error = errno;
        ::close(folder);
        errno = error;
        folder = next;
    }
    return folder;
}

bool IndexFolderReader::open(const QByteArray &path, XPError *error)
{
    if (m_folder.isOpen() && m_path == path)
        return true;
    m_folder = XPFileDescriptor(openFolder(path));
    m_path = path;
    bool isMount = false;
    XPFileInfo info;
    if (m_folder.isOpen() && (!m_ownDirectory || ::fchdir(m_folder.get()) == 0) &&
        readFacts("", info, isMount)) {
        m_device = info.device;
        m_attributePath = "/proc/self/fd/" + QByteArray::number(m_folder.get()) + '/';
        return true;
    }
    *error = XPError::fromErrno(errno, XPPath::decode(path));
    closeFolder();
    return false;
}

void IndexFolderReader::closeFolder()
{
    if (m_folder.isOpen() && m_ownDirectory)
        (void)!::chdir("/"); // a volume that a thread stands on cannot be taken away
    m_folder.close();
    m_path.clear();
}

static qint64 nanoseconds(const statx_timestamp &time)
{
    return time.tv_sec * 1'000'000'000LL + time.tv_nsec;
}

// An empty name: the folder itself.
bool IndexFolderReader::readFacts(const char *name, XPFileInfo &info, bool &isMount) const
{
    struct statx data = {};
    const int flags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT | (*name ? 0 : AT_EMPTY_PATH) |
                      (m_options.local ? AT_STATX_DONT_SYNC : AT_STATX_SYNC_AS_STAT);
    if (::statx(m_folder.get(), name, flags, STATX_BASIC_STATS | STATX_BTIME, &data) != 0)
        return false;
    info.mode = data.stx_mode;
    info.size = static_cast<qint64>(data.stx_size);
    info.modified = nanoseconds(data.stx_mtime);
    info.changed = nanoseconds(data.stx_ctime);
    info.accessed = nanoseconds(data.stx_atime);
    info.birth = (data.stx_mask & STATX_BTIME) ? nanoseconds(data.stx_btime) : 0;
    info.device = quint64{data.stx_dev_major} << 32 | data.stx_dev_minor;
    info.inode = data.stx_ino;
    info.links = data.stx_nlink;
    // Kernels that tell mounts know one also where it is of the same device.
    isMount = (data.stx_attributes_mask & STATX_ATTR_MOUNT_ROOT)
                  ? (data.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0
                  : info.device != m_device;
    return true;
}

ssize_t IndexFolderReader::nextNames(std::vector<char> &buffer) const
{
    return ::getdents64(m_folder.get(), buffer.data(), buffer.size());
}

// Fills m_seen from a buffer of directory entries. False: the folder names itself a cache.
bool IndexFolderReader::see(const QByteArray &path, std::span<const char> names,
                            std::optional<XPError> &error)
{
    m_seen.clear();
    for (size_t at = 0; at < names.size();) {
        const auto *item = reinterpret_cast<const dirent64 *>(names.data() + at);
        at += item->d_reclen;
        const char *name = item->d_name;
        if (name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0')))
            continue;
        const QByteArrayView view(name);
        if (m_rules->isCacheMarker(view)) {
            m_seen.clear();
            return false;
        }
        Seen &seen = m_seen.emplace_back();
        seen.name = name;
        seen.nameSize = static_cast<quint32>(view.size());
        bool isMount = false;
        if (!readFacts(name, seen.info, isMount)) {
            // Gone since the folder was read; anything else is no reason to forget the entry.
            if (errno != ENOENT)
                error = XPError::fromErrno(errno, XPPath::decode(path));
            m_seen.pop_back();
        } else if (seen.info.isDirectory()) {
            if (m_rules->excludes(path, view))
                m_seen.pop_back();
            else
                seen.descend = !isMount;
        }
    }
    return true;
}

// --- Attributes

const char *IndexFolderReader::attributePath(const char *name)
{
    if (m_ownDirectory)
        return name;
    m_attributePath.truncate(m_attributePath.lastIndexOf('/') + 1);
    m_attributePath.append(name);
    return m_attributePath.constData();
}

// So that the bytes can be had again: see IndexRecord::attributes.
static void putAttribute(const QString &key, const QByteArray &bytes,
                         IndexRecord::Attributes &attributes)
{
    const auto value = XPPropertyList::read(bytes, valueLimits);
    if (!value || value->kind() == PropertyValue::Kind::Data) {
        attributes.insert(key, bytes);
        return;
    }
    attributes.insert(key, *value);
    const auto ours = XPPropertyList::writeBinary(*value);
    if (!ours || *ours != bytes)
        attributes.insert(IndexBytesKey::of(key), bytes);
}

void IndexFolderReader::readAttributes(const char *name, IndexRecord::Attributes &attributes)
{
    const char *path = attributePath(name);
    char names[4096];
    ssize_t size = ::llistxattr(path, names, sizeof names);
    if (size == 0)
        return;
    std::vector<char> larger;
    if (size < 0 && errno == ERANGE) {
        larger.resize(XATTR_LIST_MAX);
        size = ::llistxattr(path, larger.data(), larger.size());
    }
    const char *at = larger.empty() ? names : larger.data();
    const char *const end = at + std::max<ssize_t>(size, 0);
    for (; at < end; at += std::strlen(at) + 1) {
        const bool isOurs = std::strncmp(at, prefix, prefixLength) == 0;
        if (!isOurs && std::strncmp(at, userPrefix, userPrefixLength) != 0)
            continue;
        const QString key =
            XPPath::decode(QByteArrayView(at + (isOurs ? prefixLength : userPrefixLength)));
        if (isOurs == isIndexDesktopKey(key))
            continue; // of no use, or one of ours that takes the name of the desktop's
        ssize_t length = ::lgetxattr(path, at, m_value.data(), usualValue);
        if (length < 0 && errno == ERANGE)
            length = ::lgetxattr(path, at, m_value.data(), m_value.size());
        if (length < 0)
            continue; // gone meanwhile
        const QByteArray bytes(m_value.data(), length);
        if (isOurs)
            putAttribute(key, bytes, attributes);
        else
            attributes.insert(key, bytes);
    }
}

void IndexFolderReader::complete(const Seen &seen, IndexRecord &record)
{
    record.info = seen.info;
    record.type = m_types.type(m_path, m_folder.get(), QByteArrayView(seen.name, seen.nameSize),
                               seen.info.mode);
    if (seen.info.isRegular() || seen.info.isDirectory())
        readAttributes(seen.name, record.attributes);
}

// --- Whole folders

void IndexFolderReader::fillListing(IndexListing &listing)
{
    qsizetype size = 0;
    size_t count = 0;
    for (const Seen &seen : m_seen) {
        if (seen.descend)
            listing.below.emplace_back(seen.name, seen.nameSize);
        if (!seen.known) {
            size += seen.nameSize + 1;
            ++count;
        }
    }
    listing.names.reserve(size);
    listing.changes.resize(count);
    listing.descend.resize(count);
    size_t at = 0;
    for (const Seen &seen : m_seen) {
        if (seen.known)
            continue;
        IndexRecord &record = listing.changes[at].record;
        // Reserved above, so the bytes stay where they are.
        record.name = QByteArray::fromRawData(listing.names.constData() + listing.names.size(),
                                              seen.nameSize);
        listing.names.append(seen.name, seen.nameSize + 1);
        complete(seen, record);
        listing.descend[at++] = seen.descend;
    }
}

// Whether rows of the folder may be of entries that are gone. The parts of a large folder are
// compared one after the other, so their counts tell only if the index stood still meanwhile.
struct IndexFolderReader::Presence
{
    QByteArray names;

    void add(const Hooks::Known &known, std::span<const Seen> seen, bool last)
    {
        if (m_parts++ == 0) {
            m_rows = known.rows;
            m_generation = known.generation;
        }
        m_stoodStill = m_stoodStill && known.generation == m_generation;
        for (const Seen &entry : seen)
            m_known += entry.known ? 1 : 0;
        // With nothing known before there is nothing to miss.
        if (m_rows == 0 || (last && !mayMiss(known)))
            return;
        for (const Seen &entry : seen)
            names.append(entry.name, entry.nameSize + 1);
    }
    bool mayMiss(const Hooks::Known &known) const
    {
        return m_rows > 0 && !(m_stoodStill && m_known == known.rows);
    }

private:
    quint32 m_parts = 0;
    quint32 m_rows = 0;
    quint32 m_known = 0;
    quint64 m_generation = 0;
    bool m_stoodStill = true;
};

void IndexFolderReader::readFolder(const QByteArray &path, const Hooks &hooks)
{
    IndexListing failed;
    failed.folder = path;
    closeFolder();
    XPError error;
    XPFileInfo info;
    bool isMount = false;
    if (!open(path, &error) || !readFacts("", info, isMount)) {
        failed.error = error;
        hooks.deliver(std::move(failed));
        return;
    }
    hooks.opened(path, m_folder.get());
    size_t buffer = 0;
    ssize_t size = nextNames(m_buffers[buffer]);
    Presence presence;
    for (bool last = false; !last;) {
        IndexListing listing;
        listing.folder = path;
        listing.info = info;
        if (size < 0)
            listing.error = XPError::fromErrno(errno, XPPath::decode(path));
        const std::span<const char> names(m_buffers[buffer].data(),
                                          static_cast<size_t>(std::max<ssize_t>(size, 0)));
        const bool isCache = !see(path, names, listing.error);
        buffer = 1 - buffer;
        size = size > 0 && !isCache ? nextNames(m_buffers[buffer]) : 0;
        last = size <= 0;
        listing.last = last;
        if (size < 0)
            listing.error = XPError::fromErrno(errno, XPPath::decode(path));
        const Hooks::Known known = hooks.compare(listing, m_seen);
        presence.add(known, m_seen, last);
        if (isCache)
            listing.present = QByteArray();
        else if (last && !listing.error && presence.mayMiss(known))
            listing.present = std::move(presence.names);
        fillListing(listing);
        listing.isNews =
            !listing.changes.empty() || listing.present || listing.error || !known.folder;
        hooks.deliver(std::move(listing));
    }
    closeFolder();
}

// --- Single entries

XPResult<IndexFolderReader::Entry> IndexFolderReader::readEntry(const QByteArray &folder,
                                                                const QByteArray &name)
{
    XPError error;
    if (!open(folder, &error))
        return error;
    Seen seen;
    bool isMount = false;
    if (!readFacts(name.constData(), seen.info, isMount))
        return XPError::fromErrno(errno, XPPath::decode(folder + '/' + name));
    if (seen.info.isDirectory() && m_rules->excludes(folder, name))
        return XPError::make(XPError::Kind::NotFound, QStringLiteral("left out by a rule"),
                             XPPath::decode(folder + '/' + name));
    Entry entry;
    entry.descend = seen.info.isDirectory() && !isMount;
    entry.record.name = name;
    seen.name = name.constData();
    seen.nameSize = static_cast<quint32>(name.size());
    complete(seen, entry.record);
    return entry;
}

XPResult<XPFileInfo> IndexFolderReader::readFacts(const QByteArray &folder)
{
    XPError error;
    XPFileInfo info;
    bool isMount = false;
    if (!open(folder, &error))
        return error;
    if (!readFacts("", info, isMount))
        return XPError::fromErrno(errno, XPPath::decode(folder));
    return info;
}

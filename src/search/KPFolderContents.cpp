#include "KPFolderContents.h"

#include "XPPath.h"

#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/xattr.h>

// The system takes no path longer than this at once (PATH_MAX, less room for its end).
static constexpr qsizetype longestPath = 4000;

XPFileDescriptor KPFolderContents::open(const QByteArray &path, bool followLink)
{
    XPFileDescriptor folder;
    QByteArray rest = path;
    constexpr int flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK;
    while (rest.size() > longestPath) {
        const qsizetype cut = rest.lastIndexOf('/', longestPath);
        if (cut <= 0) {
            errno = ENAMETOOLONG;
            return {};
        }
        const QByteArray part = rest.left(cut);
        XPFileDescriptor next(
            ::openat(folder.isOpen() ? folder.get() : AT_FDCWD, part.constData(), flags));
        if (!next.isOpen())
            return {};
        folder = std::move(next);
        rest = rest.mid(cut + 1);
    }
    return XPFileDescriptor(::openat(folder.isOpen() ? folder.get() : AT_FDCWD, rest.constData(),
                                     flags | (followLink ? 0 : O_NOFOLLOW)));
}

namespace {

class Reader
{
public:
    Reader(KPFolderContents &contents, const KPFolderContents::How &how, int folder)
        : m_contents(contents), m_how(how), m_folder(folder)
    {
        if (how.attributes)
            m_attributePath = "/proc/self/fd/" + QByteArray::number(folder) + '/';
    }

    // False: abandoned.
    bool see(QByteArrayView name)
    {
        if (m_how.isAbandoned && m_how.isAbandoned()) {
            m_contents.isAbandoned = true;
            return false;
        }
        KPFolderContents::Entry entry;
        entry.nameAt = m_contents.names.size();
        entry.nameSize = name.size();
        m_contents.names.append(name.data(), name.size()).append('\0');
        const char *ended = m_contents.names.constData() + entry.nameAt;
        const auto info = XPFileInfo::readAt(m_folder, ended);
        if (!info) {
            m_contents.names.truncate(entry.nameAt); // it went meanwhile, or is told of elsewhere
            return true;
        }
        entry.info = *info;
        // Links have no attributes of their own.
        if (m_how.attributes && !info->isLink())
            entry.hasAttributes =
                ::llistxattr((m_attributePath + ended).constData(), nullptr, 0) != 0;
        m_contents.entries.push_back(entry);
        return true;
    }

private:
    KPFolderContents &m_contents;
    const KPFolderContents::How &m_how;
    const int m_folder;
    QByteArray m_attributePath;
};

struct CloseFolder
{
    void operator()(DIR *folder) const { ::closedir(folder); }
};

} // namespace

// The stream closes what it reads from: it gets a descriptor of its own.
static void readAll(Reader &reader, KPFolderContents &contents, int folder, bool all)
{
    const int own = ::fcntl(folder, F_DUPFD_CLOEXEC, 0);
    const std::unique_ptr<DIR, CloseFolder> stream(own >= 0 ? ::fdopendir(own) : nullptr);
    if (!stream) {
        contents.error = XPError::fromErrno(errno, XPPath::decode(contents.path));
        if (own >= 0)
            ::close(own);
        return;
    }
    for (;;) {
        errno = 0;
        const dirent *entry = ::readdir(stream.get()); // NOLINT(concurrency-mt-unsafe): own stream
        if (entry == nullptr) {
            if (errno != 0)
                contents.error = XPError::fromErrno(errno, XPPath::decode(contents.path));
            return;
        }
        const QByteArrayView name(static_cast<const char *>(entry->d_name));
        if (name == "." || name == ".." || (!all && name.front() == '.'))
            continue;
        if (!reader.see(name))
            return;
    }
}

KPFolderContents KPFolderContents::read(const QByteArray &path,
                                        const std::optional<QSet<QByteArray>> &only, const How &how)
{
    KPFolderContents contents;
    contents.path = path;
    contents.only = only;
    const XPFileDescriptor folder = open(path, how.followLink);
    if (!folder.isOpen()) {
        contents.error = XPError::fromErrno(errno, XPPath::decode(path));
        return contents;
    }
    if (how.opened)
        how.opened(folder.get());
    Reader reader(contents, how, folder.get());
    if (!only) {
        readAll(reader, contents, folder.get(), how.all);
        return contents;
    }
    for (const QByteArray &name : *only) {
        if (!reader.see(name))
            break;
    }
    return contents;
}

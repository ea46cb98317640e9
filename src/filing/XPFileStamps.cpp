#include "XPFileStamps.h"

#include "XPFileDescriptor.h"
#include "XPFileInfo.h"
#include "XPFolderNames.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <vector>

int XPFileStamps::readOne(int folder, const char *name, Stamp &stamp)
{
    const auto info = XPFileInfo::readAt(folder, name);
    if (!info)
        return static_cast<int>(info.error().code);
    stamp = {info->device,   info->inode,  info->mode, info->isDirectory() ? 0 : info->size,
             info->modified, info->changed};
    return 0;
}

int XPFileStamps::read(int folder, const QByteArray &name)
{
    m_stamps.clear();
    return add(folder, name, {}, 0);
}

int XPFileStamps::add(int folder, const QByteArray &name, const QByteArray &path, int depth)
{
    Stamp stamp;
    if (const int error = readOne(folder, name.constData(), stamp))
        return error;
    m_stamps.emplace(path, stamp);
    if (stamp.device != top().device)
        return EXDEV;
    if (!S_ISDIR(stamp.mode))
        return 0;
    if (depth == deepest)
        return ELOOP;
    const XPFileDescriptor opened(
        ::openat(folder, name.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!opened.isOpen())
        return errno;
    std::vector<QByteArray> names;
    int error = XPFolderNames::forEach(opened.get(), ".", [&names](QByteArrayView found) {
        names.push_back(found.toByteArray());
        return true;
    });
    for (const QByteArray &child : names) {
        if (error == 0)
            error = add(opened.get(), child, path + '/' + child, depth + 1);
    }
    return error;
}

bool XPFileStamps::isSameAs(const XPFileStamps &other) const
{
    return std::equal(m_stamps.begin(), m_stamps.end(), other.m_stamps.begin(),
                      other.m_stamps.end(), [](const auto &one, const auto &two) {
                          Stamp stamp = one.second;
                          if (one.first.isEmpty())
                              stamp.changed = two.second.changed;
                          return one.first == two.first && stamp == two.second;
                      });
}

bool XPFileStamps::looksLike(const XPFileStamps &other) const
{
    return std::equal(
        m_stamps.begin(), m_stamps.end(), other.m_stamps.begin(), other.m_stamps.end(),
        [](const auto &one, const auto &two) {
            const bool sameKind = (one.second.mode & S_IFMT) == (two.second.mode & S_IFMT);
            return one.first == two.first && sameKind && one.second.size == two.second.size;
        });
}

qint64 XPFileStamps::bytes() const
{
    qint64 sum = 0;
    for (const auto &[path, stamp] : m_stamps)
        sum += stamp.size;
    return sum;
}

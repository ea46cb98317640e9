#include "XPAttributeRoom.h"

#include "XPFileAttributes.h"
#include "XPFileDescriptor.h"
#include "XPFileInfo.h"
#include "XPFolderNames.h"
#include "XPMoveJournal.h"
#include "XPPath.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

// Gone by its name as soon as it is there.
static XPFileDescriptor namelessFile(const QByteArray &folder)
{
    const QByteArray name = XPMoveJournal::Note::make({}, {}, false).temporary;
    const QByteArray path = folder + '/' + name;
    XPFileDescriptor file(
        ::open(path.constData(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (file.isOpen() && ::unlink(path.constData()) != 0)
        return {};
    return file;
}

// The file's own attributes, and in a folder those of everything in it.
static bool fits(int folder, const char *name, int probe)
{
    const auto info = XPFileInfo::readAt(folder, name);
    if (!info || (!info->isRegular() && !info->isDirectory()))
        return true; // nothing to lose
    const XPFileDescriptor file(
        ::openat(folder, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!file.isOpen())
        return true; // it will not be copied either
    bool isFitting = XPFileAttributes::tryOut(file.get(), probe) == 0;
    if (info->isDirectory()) {
        XPFolderNames::forEach(file.get(), ".", [&](QByteArrayView child) {
            return isFitting = isFitting && fits(file.get(), child.data(), probe);
        });
    }
    return isFitting;
}

XPResult<QStringList> XPAttributeRoom::wouldLose(const QStringList &paths, const QString &folder)
{
    const auto there = XPFileInfo::read(folder + QStringLiteral("/."));
    if (!there)
        return there.error();
    const XPFileDescriptor probe = namelessFile(XPPath::encode(folder));
    if (!probe.isOpen())
        return XPError::fromErrno(errno, folder);
    QStringList losing;
    for (const QString &path : paths) {
        const auto info = XPFileInfo::read(path);
        if (info && info->device != there->device &&
            !fits(AT_FDCWD, XPPath::encode(path).constData(), probe.get()))
            losing.append(path);
    }
    return losing;
}

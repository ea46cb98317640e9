#pragma once

#include "XPFileDescriptor.h"

#include <QByteArray>
#include <QString>

// The folder that an archive's documents go to, and those below it: opened name by name, so that no
// link in them leads a file to somewhere else. Threads: one at a time; blocking file calls.
// Functions return 0 or the errno.
class XPImportFolder
{
public:
    int open(const QString &path);
    int open(XPFileDescriptor folder);
    bool isOpen() const { return m_root.isOpen(); }
    int root() const { return m_root.get(); }

    // The folder of a relative path, for the caller to own; with `makes` the missing ones are made.
    // ELOOP or ENOTDIR where a name on the way is something else than a folder.
    int folderOf(const QString &path, bool makes, XPFileDescriptor &folder);

private:
    int openBelow(const QByteArray &folder, bool makes, XPFileDescriptor &found) const;

    XPFileDescriptor m_root;
    QByteArray m_lastPath; // most documents lie where the one before did
    XPFileDescriptor m_last;
};

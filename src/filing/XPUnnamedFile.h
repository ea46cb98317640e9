#pragma once

#include "XPFileDescriptor.h"

#include <QByteArray>
#include <QByteArrayView>

// A new file that has no name yet: what is written to it appears as a whole or, when this is
// destroyed before, never did. Where the file system has no such files it has a hidden name
// meanwhile (".murn-new-…"). Move-only. Threads: one at a time; blocking file calls. Functions
// return 0 or the errno.
class XPUnnamedFile
{
public:
    XPUnnamedFile() = default;
    ~XPUnnamedFile();
    XPUnnamedFile(XPUnnamedFile &&other) noexcept = default;
    XPUnnamedFile &operator=(XPUnnamedFile &&other) noexcept;

    // In the folder, with the rights that the user gives new files.
    int open(XPFileDescriptor folder);
    bool isOpen() const { return m_file.isOpen(); }
    int file() const { return m_file.get(); } // open for reading too
    int write(QByteArrayView bytes);
    int sync();
    // EEXIST where the name is taken: another one may be tried.
    int give(const QByteArray &name);
    // So that the name lasts; where folders cannot be synced there is no better way.
    void syncFolder() const;

private:
    XPFileDescriptor m_folder;
    XPFileDescriptor m_file;
    QByteArray m_hidden;
};

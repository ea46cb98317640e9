#pragma once

#include "XPError.h"
#include "XPFileDescriptor.h"

#include <QByteArray>

// A path as an open folder and a name in it, so that nothing done there is led elsewhere by a
// folder that is swapped for a link meanwhile. Move-only; any thread; blocking file calls.
class XPFilePlace
{
public:
    static XPResult<XPFilePlace> open(const QString &path);

    int folder() const { return m_folder.get(); }
    const QByteArray &name() const { return m_name; }
    const QString &path() const { return m_path; }

    // Whether the path still leads to this folder.
    bool isStillThere() const;
    // Whether this folder is the one with that device and inode, or lies in it.
    bool isInside(quint64 device, quint64 inode) const;
    // 0 or the errno; where folders cannot be synced there is no better way.
    int sync() const;
    // For a free name beside it: 0 or the errno.
    int rename(const QByteArray &from, const QByteArray &to) const;

private:
    XPFilePlace(XPFileDescriptor folder, QByteArray name, QString path);

    XPFileDescriptor m_folder;
    QByteArray m_name;
    QString m_path;
};

#pragma once

#include "XPVolumes.h"

#include <QByteArray>
#include <QList>
#include <QStringList>
#include <vector>

// The volumes that a mount table names, found by path: a plain value, no file calls. The text is
// that of /proc/self/mountinfo, as proc(5) describes it. Any thread.
class XPMountTable
{
public:
    // Lines that cannot be read are left out.
    static XPMountTable parse(const QByteArray &mountInfo);

    // The volume of the longest mount point that holds the path; one without a name when none
    // does. Logarithmic in the number of volumes.
    const XPVolumes::Volume &volumeOf(QStringView path) const;

    // All mount points, a folder before what is in it.
    QStringList mountPoints() const;

private:
    struct Entry
    {
        XPVolumes::Volume volume;
        int parent = -1; // the nearest entry whose mount point holds this one
    };

    void sort();
    int holderAmong(int entry, QStringView path) const;

    std::vector<Entry> m_entries; // by mount point, a folder directly before what is in it
};

#include "KPOptimizedFolders.h"

#include "KPSearchFolders.h"
#include "KPSearchVolumes.h"

#include <QDir>
#include <algorithm>

KPOptimizedFolders::KPOptimizedFolders(const QStringList &folders, Reach reach)
    : m_reach(reach), m_hasEntries(!folders.isEmpty())
{
    const KPSearchFolders::Real real = KPSearchFolders::realFolders(folders);
    m_isEverything = real.everything;
    m_isWholeDisk = real.everything || real.wholeDisk;
    QStringList sorted;
    for (const QString &folder : real.folders) {
        const QString clean = QDir::cleanPath(folder);
        if (clean == u"/")
            m_isWholeDisk = true;
        else
            sorted.append(clean + u'/');
    }
    std::sort(sorted.begin(), sorted.end());
    // A folder comes right after the one that it is inside of, or after others inside that one.
    for (const QString &folder : sorted) {
        if (!m_folders.isEmpty() &&
            (folder == m_folders.last() ||
             (reach == Reach::Below && folder.startsWith(m_folders.last()))))
            continue;
        m_folders.append(folder);
    }
}

bool KPOptimizedFolders::holds(QStringView path) const
{
    if (m_isEverything && m_reach == Reach::Below)
        return true;
    return m_reach == Reach::Below ? isBelow(m_folders, path, m_isWholeDisk)
                                   : isInside(m_folders, path, m_isWholeDisk);
}

// Whether `path` with a "/" at its end sorts before a folder of the list, which has one.
static bool sortsBefore(QStringView path, const QString &folder)
{
    const qsizetype common = std::min(path.size(), folder.size());
    if (const int order = path.compare(QStringView(folder).left(common)); order != 0)
        return order < 0;
    if (folder.size() <= path.size())
        return false;
    return folder.at(common) == u'/' ? folder.size() > path.size() + 1 : u'/' < folder.at(common);
}

bool KPOptimizedFolders::holdsOrIs(QStringView path) const
{
    if (m_isEverything)
        return true;
    // As in isBelow(), of the path as a folder: the last one before it holds it or is it.
    const auto after = std::upper_bound(m_folders.begin(), m_folders.end(), path, sortsBefore);
    if (after != m_folders.begin()) {
        const QStringView folder(*(after - 1));
        if (path.startsWith(folder) || path == folder.chopped(1))
            return true;
    }
    return m_isWholeDisk && path.startsWith(u'/') &&
           !KPSearchVolumes::isOnOtherVolume(path.toString());
}

bool KPOptimizedFolders::isInsideAnother(QStringView path) const
{
    return path != u"/" && holds(path);
}

bool KPOptimizedFolders::isBelow(const QStringList &folders, QStringView path, bool wholeDisk)
{
    // Whatever sorts between a folder and a path below it is below the folder too, and so not in
    // the list: only the last one before the path can hold it.
    const auto after = std::upper_bound(folders.begin(), folders.end(), path);
    if (after != folders.begin()) {
        const QString &folder = *(after - 1);
        if (path.size() > folder.size() && path.startsWith(folder))
            return true;
    }
    return wholeDisk && !KPSearchVolumes::isOnOtherVolume(path.toString());
}

bool KPOptimizedFolders::isInside(const QStringList &folders, QStringView path, bool wholeDisk)
{
    const qsizetype nameAt = path.lastIndexOf(u'/') + 1;
    if (nameAt == path.size()) // no path of a file
        return false;
    return (wholeDisk && nameAt == 1) ||
           std::binary_search(folders.begin(), folders.end(), path.left(nameAt));
}

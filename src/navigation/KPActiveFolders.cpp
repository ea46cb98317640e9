#include "KPActiveFolders.h"

#include <QSet>
#include <algorithm>

static QStringView folderOf(QStringView path)
{
    const qsizetype slash = path.lastIndexOf(u'/');
    return slash == 0 ? path.first(1) : path.first(std::max<qsizetype>(slash, 0));
}

QHash<QString, QList<KPActiveFolders::Folder>>
KPActiveFolders::below(const QStringList &folders) const
{
    QHash<QStringView, qsizetype> places;
    QSet<qsizetype> lengths; // the quicker test: most folders lie elsewhere
    for (qsizetype place = 0; place < folders.size(); ++place) {
        places.insert(folders[place], place);
        lengths.insert(folders[place].size());
    }
    const auto placeOf = [&](QStringView path) {
        return lengths.contains(path.size()) ? places.value(path, -1) : -1;
    };
    QList<QList<Folder>> found(folders.size());
    QSet<QStringView> parents; // of the folders two levels below
    for (auto entry = m_table.cbegin(); entry != m_table.cend(); ++entry) {
        const QStringView path = entry.key().view();
        if (path.size() < 2)
            continue;
        const QStringView above = folderOf(path);
        if (const qsizetype place = placeOf(above); place >= 0)
            found[place].append({path.toString(), *entry, false});
        if (above.size() > 1 && placeOf(folderOf(above)) >= 0)
            parents.insert(above);
    }
    QHash<QString, QList<Folder>> result;
    for (qsizetype place = 0; place < folders.size(); ++place) {
        QList<Folder> &list = found[place];
        for (Folder &folder : list)
            folder.hasChildren = parents.contains(folder.path);
        std::sort(list.begin(), list.end(), [](const Folder &a, const Folder &b) {
            const int order = a.path.compare(b.path, Qt::CaseInsensitive);
            return order != 0 ? order < 0 : a.path < b.path;
        });
        result.insert(folders[place], list);
    }
    return result;
}

QList<KPActiveFolders::Folder> KPActiveFolders::roots(const QStringList &folders) const
{
    QList<Folder> roots;
    for (const QString &folder : folders) {
        const qsizetype count = m_table.value(KPPool::pooledString(folder), 0);
        if (count > 0)
            roots.append({folder, count, true});
    }
    return roots;
}

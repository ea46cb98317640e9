#include "KPIndexRoots.h"

#include "IndexSettings.h"
#include "MDQuery.h"
#include "MetadataIndex.h"
#include "XPPath.h"
#include "XPVolumes.h"

QString KPIndexRoots::above(const QString &folder, const QStringList &roots)
{
    const auto mountPoint = [](const QString &path) {
        return XPVolumes::volumeOf(path).mountPoint;
    };
    for (const QString &root : roots) {
        const QString start = root.endsWith(u'/') ? root : root + u'/';
        if (folder == root || (folder.startsWith(start) && mountPoint(folder) == mountPoint(root)))
            return root;
    }
    return {};
}

bool KPIndexRoots::add(const QString &folder)
{
    QStringList roots = IndexSettings::roots();
    const QString root = above(folder, roots);
    if (!root.isEmpty() && !IndexSettings::isLeftOut(folder, root))
        return false;
    roots.removeIf([&](const QString &inner) {
        return !above(inner, {folder}).isEmpty() && !IndexSettings::isLeftOut(inner, folder);
    });
    roots.append(folder);
    IndexSettings::setRoots(roots);
    return true;
}

static QString quoted(const QString &text)
{
    QString quoted;
    for (const QChar character : text) {
        if (QStringView(u"\\\"*?").contains(character))
            quoted.append(u'\\');
        quoted.append(character);
    }
    return u'"' + quoted + u'"';
}

QStringList KPIndexRoots::foldersNamed(MetadataIndex &index, const QString &name)
{
    constexpr qsizetype enough = 1000;
    const auto query = MDQuery::create(
        index.source(),
        QStringLiteral("kMDItemFSName == %1 && kMDItemContentTypeTree == \"public.directory\"")
            .arg(quoted(name)));
    if (!query)
        return {};
    (*query)->setMaxCount(enough);
    (*query)->execute(MDQuery::Synchronous);
    QStringList paths;
    for (qsizetype i = 0; i < (*query)->resultCount(); ++i)
        paths.append((*query)->resultAt(i)->path());
    return paths;
}

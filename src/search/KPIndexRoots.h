#pragma once

#include <QStringList>

class MetadataIndex;

// The folders that are indexed, as the setting lists them, and changes of that list.
// Threads: any; foldersNamed() waits for the catalog. Whoever changes the list tells the index
// (MetadataIndex::settingsChanged()).
namespace KPIndexRoots {

// The one of the roots that holds `folder` (rules aside); empty: none. A volume mounted inside a
// root is no part of it.
QString above(const QString &folder, const QStringList &roots);

// False: it is indexed already. Roots that the new one holds are no roots of their own any more.
bool add(const QString &folder);

// The folders of that name which the index holds now, of no more than a thousand files of it.
QStringList foldersNamed(MetadataIndex &index, const QString &name);

} // namespace KPIndexRoots

#pragma once

#include "PropertyValue.h"

#include <QStringList>

// The names of the fields in an item's stored form, and how paths stand there: a text, or the
// bytes of a name that is no text.
// Threads: any.
namespace KPItemArchive {

inline const QString classKey = QStringLiteral("class");
inline const QString titleKey = QStringLiteral("title");
inline const QString parentKey = QStringLiteral("parentFolder");
inline const QString displayNameKey = QStringLiteral("displayName");
inline const QString dateStringKey = QStringLiteral("dateString");
inline const QString relativeStartKey = QStringLiteral("relativeStart"); // of older archives
inline const QString relativeEndKey = QStringLiteral("relativeEnd");
inline const QString goDeepKey = QStringLiteral("goDeep");
inline const QString searchStateKey = QStringLiteral("searchState");
inline const QString foldersKey = QStringLiteral("folders");
inline const QString typesKey = QStringLiteral("types");

PropertyValue savedPath(const QString &path);
QString pathOf(const PropertyValue &saved);
PropertyValue savedPaths(const QStringList &paths);
QStringList pathsOf(const PropertyValue &saved);

} // namespace KPItemArchive

#pragma once

#include <QStringList>

// The user's search folders as the setting "KPSearchFolders" keeps them: paths in the home folder
// as "~/…", a path that is no well-formed text as its bytes.
// Threads: any. No file call.
namespace KPSearchFolderSetting {

inline const QString key = QStringLiteral("KPSearchFolders");

// Absolute paths.
QStringList folders();
void setFolders(const QStringList &folders);

} // namespace KPSearchFolderSetting

#pragma once

#include "IndexStatus.h"

#include <QHash>
#include <QStringList>

// The volumes that a user keeps files on, told from the mount table: the disk ("/"), local ones
// and network ones. File systems that the kernel makes up (proc, sysfs, …) are none.
// Threads: any. No call looks at a volume itself, so that none can hang.
namespace KPSearchVolumes {

// How the index stands on a volume.
inline const QString works = QStringLiteral("works");
inline const QString reading = QStringLiteral("reading");
inline const QString silent = QStringLiteral("silent");   // the volume does not answer
inline const QString missing = QStringLiteral("missing"); // it is not mounted
inline const QString fails = QStringLiteral("fails");     // no folder on it is indexed

QStringList mounted();
QStringList mountedLocal();
QStringList mountedNetwork();

// Where the volume of a path is mounted; below "/Volumes/" and "/Network/" its folder there.
QString pathOf(const QString &path);
// On a removable or a network volume, which "/" does not stand for.
bool isOnOtherVolume(const QString &path);
// In a folder that volumes are mounted in, but below no volume.
bool isLikelyUnreachable(const QString &path);

// By volume, for the mounted ones and for the roots that are missing.
QHash<QString, QString> indexAvailability(const QList<IndexStatus::Root> &roots);

} // namespace KPSearchVolumes

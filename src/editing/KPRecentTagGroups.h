#pragma once

#include "KPTagRename.h"
#include "PropertyValue.h"

// The groups of tags that were set together lately, in the settings under "recentTagGroups": key
// the tags joined with ",", value their array "tags" and the "date" of the last use. As many are
// kept as "maxTagGroupsToRemember" says, 6 when that is 0 or absent.
// Threads: any.
namespace KPRecentTagGroups {

extern const QString settingsKey; // "recentTagGroups"

QList<QStringList> groups(); // newest first
void addNewTagsToRecentGroups(const QStringList &tags);
void removeGroup(const QStringList &tags);
void removeExtraTagGroups(PropertyValue::Dictionary *groups); // the oldest go
void rename(const KPTagRename &rename);

} // namespace KPRecentTagGroups

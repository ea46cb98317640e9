#pragma once

#include "KPOptimizedFolders.h"

// Two lists of folders as a search state holds them (paths, places, constants), combined into one.
//
// An entry that stays, stays as it is spelled. A place stays where all of it fulfils the other
// list, and is its folders of today otherwise, as a list begins with a place or has none.
// Threads: any; as KPSearchFolders.
namespace KPFolderCombining {

using Reach = KPOptimizedFolders::Reach;

// What lies in both; empty where nothing does, and one list where the other is empty.
QStringList common(const QStringList &one, Reach oneReach, const QStringList &two, Reach twoReach);
// What lies in either.
QStringList unionOf(const QStringList &one, const QStringList &two);

} // namespace KPFolderCombining

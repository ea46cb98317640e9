#pragma once

#include <QString>
#include <QStringList>

// What the user set of the index. An open index follows the settings of its own process; others
// are told by MetadataIndex::settingsChanged().
// Threads: any.
namespace IndexSettings {

extern const QString rootsKey; // "KPIndexRoots"
extern const QString rulesKey; // "KPIndexExclusions"

// The folders that are indexed; the user's home where nothing is set.
QStringList roots();
void setRoots(const QStringList &roots);
// The same and what is always indexed: the inbox of documents that wait to be filed.
QStringList allRoots();

// The folders that are left out; see IndexRules.
QStringList rules();
QStringList defaultRules();
void setRules(const QStringList &rules);
// A folder's name, or a path that begins with / or ~/.
bool isPattern(const QString &text);
// Leaves out what has the pattern, or takes it in again.
void setExcluded(const QString &pattern, bool isExcluded);
// Whether the rules leave out `folder`, or a folder between it and `root`, which holds it.
bool isLeftOut(const QString &folder, const QString &root);

// The file of the store: in the user's caches, as it can be made again at any time.
QString storePath();

} // namespace IndexSettings

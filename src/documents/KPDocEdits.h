#pragma once

#include "Karvex.h"
#include "KarvexRepair.h"

#include <QStringList>

// Changes of a file's tags, rating, comment and web addresses that a person asked for.
//
// Beyond what Karvex writes: the caches that records read from know the new value at once, and with
// the setting "KPSetModifiyTimeOnTagsChanging" the file counts as modified just now. What writes
// the same as before changes nothing. Backups, healing and marks of the program's own go past this.
// Threads: any; blocking file calls. Errors: those of Karvex, which see for each operation.
namespace KPDocEdits {

std::optional<XPError> setUserTags(const QStringList &tags, const QString &path);
std::optional<XPError> addUserTags(const QStringList &tags, const QString &path);
std::optional<XPError> clearUserTags(const QStringList &tags, const QString &path);
std::optional<XPError> setCommonUserTags(const QString &path, const QStringList &originalCommonTags,
                                         const QStringList &replaceWith);
std::optional<XPError> changeUserTags(const Karvex::TagsChange &change, const QString &path);
std::optional<XPError> setRating(double rating, const QString &path);
std::optional<XPError> setURLs(const QStringList &urls, const QString &path);
// Empty: none.
XPResult<QString> comment(const QString &path);
std::optional<XPError> setComment(const QString &comment, const QString &path);
// Takes off what nobody can understand, or puts it back (KarvexRepair).
XPResult<bool> exchange(const KarvexRepair::Bytes &bytes, const QString &path);

} // namespace KPDocEdits

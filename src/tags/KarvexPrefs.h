#pragma once

#include "XPError.h"

#include <QStringList>

// The tags that the user entered last, newest first: a list in the preferences domain that all
// programs of the convention share (key "recentlyEnteredTags").
//
// Changes read the file, change the list and write it under a lock that our own processes share,
// so that none of their entries is lost. A program that only writes the file keeps what it wrote
// at the moment of our reading.
// Threads: any. All but setPrefsFile() and chooseDomain() may read and write a file.
class KarvexPrefs
{
public:
    static const QString sharedDomain; // "com.karvex.shared", the domain unless another is set
    static const QString recentTagsKey;
    static constexpr qsizetype maximumRecentTags = 1401;

    // The domain that all operations use.
    static void setPrefsFile(const QString &domain);
    // The shared domain when its file exists, else the program's own. Every program of ours calls
    // it at its start, so that all have one list.
    static void chooseDomain();

    static QStringList recentTags();

    // The tags that a document had, and has now: the new ones move to the front. Each tag is
    // kept once by lower case, in its newest spelling.
    static std::optional<XPError> updatePrefsRecentTags(const QStringList &oldTags,
                                                        const QStringList &newTags);
    static std::optional<XPError> removeTagsFromRecents(const QStringList &tags);

    // Brings memory and file together.
    static std::optional<XPError> synchPrefs();
    // The same, when it was not done here in the last 10 seconds.
    static std::optional<XPError> synchPrefsIfItsBeenAWhile();
};

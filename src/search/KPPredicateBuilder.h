#pragma once

#include "KPTagName.h"

#include <QStringList>
#include <optional>

// The clauses of metadata queries, as text in the index's query language (MDQueryParser).
//
// What a user typed goes into a clause as it stands: wildcards in it work, and a text that the
// language does not take gives a query that cannot be made, which the index says.
// Threads: any.
class KPPredicateBuilder
{
public:
    // The clauses for a text, a date range in days before now, and file types, in this order,
    // each only where there is something to ask for. `types` are identifiers and the pseudo-types
    // of KPSearchState. An extension at the end of the text ("report.pdf") is a file type where
    // no types are given.
    static QStringList mdQueryFromSearch(const QStringList &types, const QString &searchString,
                                         bool searchContent, bool requireAllWords,
                                         bool searchOtherKeys, bool searchFileNames,
                                         std::optional<double> startDaysBeforeNow,
                                         std::optional<double> endDaysBeforeNow);

    // One word, or "tag:…", "rating:…", "name:…"; with "-" or "!" in front what does not have it.
    // Names are always searched: `searchFileNames` changes nothing.
    static QString searchForWord(const QString &word, bool searchContent, bool searchOtherKeys,
                                 bool searchFileNames, bool isMultiwordSearch);
    // One letter or none: names that begin with it are meant.
    static bool searchStringShortSoUseBeginsWith(const QString &text);
    // The text without its extension and the types of that; the whole text and no types where the
    // end is no known extension, or the text looks like an address.
    static QString stripExtensionIfLooksGood(const QString &text, QStringList *outExtensionUTIs);

    static QString mdSearchForUTI(const QString &type);
    static QString mdQueryForExtension(const QString &extension);
    static QString mdQueryForItemKind(const QString &kind);
    static QString mdQueryForDynamicUTI(const QString &type);
    static QString imageSearch();
    static QString tagSearch(const QString &tag, bool searchUser, bool searchReadOnly);
    static QString mdCombineSearches(const QStringList &clauses, const QString &withOperator);
};

// The words of a text as typed: split at blanks, "quoted words" as one, and what ends in ":"
// together with the word after it.
QStringList componentsSeparatedByBlanksAndQuotes(const QString &text);

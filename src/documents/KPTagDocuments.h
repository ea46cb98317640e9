#pragma once

#include "KPDoc.h"

// What is done with a tag over all documents that carry it.
//
// "All" is what the index holds, once KPDoc::startMetaDataSearching() was given it. Only tags that
// the user entered can be removed; file types and keywords belong to the files.
// Threads: docsWithTag() any; the rest main, where the change itself is the tag editor's
// (KPDocServices) and may be asked about first.
class KPTagDocuments
{
public:
    // Of a file type also those that conform to it. New records are read. Blocking.
    static KPDoc::Docs docsWithTag(KPTagName *tag);

    // The files that carry a tag of the user's, in any spelling; `withBranch`: or one below it
    // ("tax/2024" is below "tax"). Blocking.
    static QStringList pathsWithUserTag(const QString &tag, bool withBranch);

    // The user's tags of the library by key, with the documents that have them. Blocking.
    struct UsedTag
    {
        QString tag;               // in the spelling that most documents have
        qsizetype count = 0;       // documents that have it
        qsizetype branchCount = 0; // or one below it; more than `count` for a parent
    };
    // A parent that no document has is among them, with a count of 0.
    static QList<UsedTag> allUserTags();

    // How many documents have each other tag beside this one, by key (karvexTagKey). Blocking.
    static QHash<QString, qsizetype> tagsBeside(const QString &tag);

    // Nothing for a tag that is not the user's.
    static void deleteTag(KPTagName *tag, const KPDoc::Docs &fromDocs) XP_REQUIRES(xpGuiThread);

    // Takes the user's tags among these off every document. Alerts when there are none, or others
    // besides.
    static void removeTagFromAllDocuments(const KPTagName::Tags &tags) XP_REQUIRES(xpGuiThread);
};

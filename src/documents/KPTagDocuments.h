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

    // Nothing for a tag that is not the user's.
    static void deleteTag(KPTagName *tag, const KPDoc::Docs &fromDocs) XP_REQUIRES(xpGuiThread);

    // Takes the user's tags among these off every document. Alerts when there are none, or others
    // besides.
    static void removeTagFromAllDocuments(const KPTagName::Tags &tags) XP_REQUIRES(xpGuiThread);
};

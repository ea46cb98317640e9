#pragma once

#include "KPDoc.h"
#include "KPDocMetaData.h"

// The records of this process: one for each path, made when first asked for, kept for good.
//
// A record is attached to its pooled path, so that finding it takes no lock; making one waits only
// for others of some folders. No file is read and nobody is told anything under a lock here.
// Threads: any, but for intializeGlobals().
class KPDocCache
{
public:
    // Begins to follow notifications of changed documents. Main thread, once. (Spelled so.)
    static void intializeGlobals() XP_REQUIRES(xpGuiThread);

    // The record of a path; nullptr for an empty one and for "gone". `lstatInfo` is what lstat
    // said of the file just now; without it a new record reads the file. Blocking then.
    static KPDoc *docAtPath(KPPooledString path, const XPFileInfo *lstatInfo = nullptr);
    static KPDoc *docAtPath(const QString &path, const XPFileInfo *lstatInfo = nullptr);
    // nullptr when there is none yet.
    static KPDoc *docAtPathIfExists(KPPooledString path);
    static KPDoc *docAtPathIfExists(const QString &path);
    static KPDoc::Docs docsAtPaths(const QStringList &paths);
    static qsizetype totalDocs();

    // The record at the old path takes the new one, and the caches forget the old path. Blocking.
    static void pathChanged(const QString &oldPath, const QString &newPath);

    // Every document that an attribute cache holds a value of. New records are read. Blocking.
    static KPDoc::Docs allDocsWithValues(KPDocMetaData::Attribute attribute);

    // Deliberately nothing: records live as long as the process, so no timer calls it either.
    static void garbageCollection() {}

private:
    friend class KPDoc;
    struct Moved
    {
        KPPooledString oldPath;
        KPDoc *displaced = nullptr; // stood for the new path so far, and is gone now
    };
    // Gives the record its new path and attaches it there. Nothing when it has that path
    // already.
    static std::optional<Moved> move(KPDoc *doc, KPDoc::Place place);
};

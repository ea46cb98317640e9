#pragma once

#include "KPTagName.h"
#include "XPError.h"

#include <functional>
#include <memory>

class QMimeData;
class QObject;

// What a document record asks of higher layers, which install it at start-up.
//
// Until something is installed, the shell's way holds: marks and tags are written to the files at
// once, without questions, and there is no searcher and no thumbnail to tell.
// Threads: main, but for clearCacheForPath(), which any thread may call.
class KPDocServices
{
public:
    struct TagChange
    {
        KPTagName::Tags originalTags; // taken off every file that has them
        KPTagName::Tags newTags;      // and these put in their place
        QStringList filePaths;
        std::optional<double> rating; // none: ratings stay
        bool confirmWhenChangingManyFiles = false;
        QObject *reportChangesOverView = nullptr; // where to show progress; may be null
    };

    virtual ~KPDocServices() = default;

    // The filing store's marks. False when the file could not be marked.
    virtual bool setManaged(bool managed, const QString &path);
    // The tag editor's batch change; it may go on after this returns.
    virtual void replaceOriginalTags(const TagChange &change);
    // To the searcher that owns the results.
    virtual void pathChanged(const QString &oldPath, const QString &newPath);
    // To the cache of thumbnails.
    virtual void clearCacheForPath(const QString &path);
    // Shows the documents in the window's library, and a file's information window.
    virtual void revealInLibrary(const QStringList &paths);
    virtual void openInfoWindow(const QStringList &paths);
    // Makes documents of what another program drops on a row that stands for a folder; an empty
    // one: today's. Files are moved there, or copied.
    virtual void importDropped(const QMimeData &data, const QString &folder, bool copies);
    // They came into the library just now: opened, pasted, dropped, scanned, captured or filed.
    virtual void documentsImported(const QStringList &paths);
    // Runs `work` where file calls may wait (never under a lock, in the order given), then `done`
    // on the main thread.
    virtual void runFileWork(std::function<void()> work, std::function<void()> done);

    // Never null.
    static KPDocServices &current();
    // Start-up and tests: no other thread may use the old one.
    static void install(std::unique_ptr<KPDocServices> services);
};

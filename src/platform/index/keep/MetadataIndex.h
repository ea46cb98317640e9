#pragma once

#include "IndexAttributesChange.h"
#include "IndexLoss.h"
#include "IndexSource.h"
#include "IndexStatus.h"

#include <memory>

struct IndexDifference;
struct IndexSetup;

// The metadata index of this user, as this process has it: kept here when no other process does,
// followed otherwise, and taken over when the other process ends, however it ends.
//
// open() returns at once; the index is loaded on a thread of its own (waitUntilLoaded()). Where
// nothing can be saved the index works in memory and its status says so.
// Threads: open and destroy on the main thread, which observes the settings; the rest from any.
// Ownership: the caller's; queries must be gone before it.
class MetadataIndex
{
public:
    using Stop = std::function<bool()>; // asked from time to time: whether to give up

    // By the settings (IndexSettings), which it follows. `waitedFor`: as in IndexSetup.
    static std::unique_ptr<MetadataIndex> open(bool waitedFor = false);
    static std::unique_ptr<MetadataIndex> open(const IndexSetup &setup);
    ~MetadataIndex();

    IndexSource &source();
    bool waitUntilLoaded(const Stop &stop = {}) const;
    // False while another process keeps the index; true until the end once it is.
    bool isKeptHere() const;
    // Told of files that lost attributes while the index is kept here, also before the call; on a
    // thread of the index, so it only takes note. Not called any more once another one was set.
    void setLossListener(IndexLoss::Report listener);

    // The same, told of files whose attributes are others than the index held, or new to it.
    void setAttributesListener(IndexAttributesChange::Report listener);

    // Whichever process keeps the index; at once where it is kept here. Cancelled when `stop` said
    // so before, else an error when that process does not answer.
    XPResult<IndexStatus> status(const Stop &stop = {}) const;
    // Returns when everything that happened before the call is in this process's index too;
    // with `contents` also the text that waits to be imported.
    std::optional<XPError> sync(bool contents, const Stop &stop = {});
    // Compares every row with what is on disk; only tells. While somebody is at work on the files,
    // what was just changed may show. `progress` is told of the folders and says whether to go on.
    std::vector<IndexDifference> verify(const std::function<bool(qint64 folders)> &progress,
                                        qint64 *itemsCompared) const;

    // After a change of the settings, made in this process: tells whoever keeps the index.
    void settingsChanged();
    // Other folders from now on, for an index with a setup of its own that is kept here.
    void setFolders(const QStringList &roots, const QStringList &rules);

    // Deletes the store, so that the next open() builds it anew. NotPermitted while it is kept.
    static std::optional<XPError> remove();

private:
    struct Private;
    explicit MetadataIndex(const IndexSetup &setup);

    std::unique_ptr<Private> d;
};

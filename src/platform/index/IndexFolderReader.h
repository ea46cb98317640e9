#pragma once

#include "IndexRecord.h"
#include "IndexRules.h"

#include <atomic>

// One entry of a folder as it was seen on disk.
struct IndexEntry
{
    QByteArray name;
    XPFileInfo info;
    QString type;
    IndexRecord::Attributes attributes;
    bool attributesRead = false; // false: not looked at, as facts said that nothing changed
    bool descend = false;        // a folder to be read too
};

// What a folder held when it was read.
struct IndexListing
{
    QByteArray folder;              // path, bytes
    std::optional<XPFileInfo> info; // the folder's own, after its entries were read
    std::vector<IndexEntry> entries;
    std::optional<XPError> error; // could not be read; entries may be incomplete
    bool isCache = false;         // names itself a cache: no entries
    bool deep = false;            // part of the reading of a whole tree
    quint64 stamp = 0;            // the watcher's event count when reading began
};

// Reads folders and single files for the index, by descriptors and bytes: links are never
// followed, names are never decoded on the way, paths may be longer than PATH_MAX, special files
// are not opened. Folders on other devices are entries, but not descended into.
// Threads: one object per thread. It unshares this thread's working directory, so construct it
// only on a thread of your own that needs none.
class IndexFolderReader
{
public:
    explicit IndexFolderReader(const IndexRules &rules);

    // `known` answers what the index holds for an entry: a row whose change time and inode are
    // the same has the same attributes, which are then not read again. It may be empty.
    using Known = std::function<bool(const QByteArray &name, const XPFileInfo &info)>;
    IndexListing readFolder(const QByteArray &path, const Known &known = {});
    // One file or folder; NotFound when it is gone.
    XPResult<IndexEntry> readEntry(const QByteArray &folder, const QByteArray &name);

private:
    int openFolder(const QByteArray &path, int *error) const;
    bool fill(int folder, const QByteArray &path, IndexEntry &entry, quint64 device,
              const Known &known);
    void readAttributes(IndexEntry &entry);

    const IndexRules &m_rules;
    bool m_ownDirectory = false; // fchdir() touches this thread alone
};

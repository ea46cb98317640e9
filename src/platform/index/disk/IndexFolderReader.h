#pragma once

#include "IndexRecord.h"
#include "IndexRules.h"
#include "IndexTypeFinder.h"
#include "XPFileDescriptor.h"

#include <functional>
#include <memory>
#include <span>

// A part of what a folder held when it was read; the last part of a folder says so.
struct IndexListing
{
    QByteArray folder;              // path, bytes
    std::optional<XPFileInfo> info; // the folder's own
    // Entries that the index does not hold as they are, as Put changes without item and parent.
    // Their names stand in `names`.
    IndexBatch changes;
    std::vector<bool> descend; // for each of them: a folder to be read too
    QByteArray names;
    // In the last part, where rows of the folder may be of entries that are gone: all names of
    // all parts, one after the other, each with a zero behind.
    std::optional<QByteArray> present;
    std::vector<QByteArray> below; // names of all folders to be read too
    std::optional<XPError> error;  // could not be read, or not to its end
    bool last = true;
    bool isNews = true; // false: all is known as it is, only `below` is of use
    bool deep = false;  // part of the reading of a whole tree
    quint64 stamp = 0;  // the keeper's count of events when reading began
};

// Reads folders and single files for the index, by descriptors and bytes: links are never
// followed, names are never decoded on the way, paths may be longer than PATH_MAX, special files
// are not opened. Mounts inside are entries, but not to be read too.
// Threads: one object per thread. It unshares this thread's working directory, so construct it
// only on a thread of your own that needs none.
class IndexFolderReader
{
public:
    struct Options
    {
        bool local = true;        // false: attributes that another machine may change are fetched
        bool ownDirectory = true; // false: as on a system that gives a thread none of its own
    };
    IndexFolderReader(std::shared_ptr<const IndexRules> rules, Options options);

    void setRules(std::shared_ptr<const IndexRules> rules) { m_rules = std::move(rules); }

    // An entry as it is on disk.
    struct Seen
    {
        const char *name = nullptr;
        quint32 nameSize = 0;
        bool descend = false;
        bool known = false; // the index holds it like this: attributes are not read again
        XPFileInfo info;
    };
    struct Hooks
    {
        // The folder is open and about to be read.
        std::function<void(const QByteArray &folder, int descriptor)> opened;
        // Marks what is known as it is.
        struct Known
        {
            quint32 rows = 0;       // that the index holds in the folder
            bool folder = false;    // the folder's own facts are known
            quint64 generation = 0; // changes with the index
        };
        std::function<Known(const IndexListing &listing, std::span<Seen> entries)> compare;
        std::function<void(IndexListing listing)> deliver;
    };
    // Delivers the folder's parts.
    void readFolder(const QByteArray &path, const Hooks &hooks);

    struct Entry
    {
        IndexRecord record; // without item and parent
        bool descend = false;
    };
    // One file or folder; NotFound when it is gone or left out. The folder stays open for the
    // next entry of the same one, until closeFolder().
    XPResult<Entry> readEntry(const QByteArray &folder, const QByteArray &name);
    // The facts of a folder itself.
    XPResult<XPFileInfo> readFacts(const QByteArray &folder);
    void closeFolder();

private:
    struct Presence;
    bool open(const QByteArray &path, XPError *error);
    bool readFacts(const char *name, XPFileInfo &info, bool &isMount) const;
    ssize_t nextNames(std::vector<char> &buffer) const;
    bool see(const QByteArray &path, std::span<const char> names, std::optional<XPError> &error);
    void fillListing(IndexListing &listing);
    const char *attributePath(const char *name);
    void readAttributes(const char *name, IndexRecord::Attributes &attributes);
    void complete(const Seen &seen, IndexRecord &record);

    std::shared_ptr<const IndexRules> m_rules;
    const Options m_options;
    bool m_ownDirectory = false; // fchdir() touches this thread alone
    IndexTypeFinder m_types;
    QByteArray m_path; // of the open folder
    XPFileDescriptor m_folder;
    quint64 m_device = 0;           // of the open folder
    QByteArray m_attributePath;     // instead of a working directory
    std::vector<Seen> m_seen;       // of the part at hand
    std::vector<char> m_buffers[2]; // names as the kernel gave them: this part's and the next's
    std::vector<char> m_value;
};

#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <map>
#include <memory>
#include <vector>

// A folder of a walk: what was found in it, so that a second look can tell what changed.
struct KPFolderNode
{
    struct Document
    {
        size_t facts = 0; // hash of what was reported
        quint32 pass = 0; // the reading of the folder that saw it last
    };

    KPFolderNode *parent = nullptr;
    QByteArray name; // of a root: the whole path, empty for "/"
    int watch = -1;
    quint32 pass = 0;       // counts the readings of this folder
    quint32 parentPass = 0; // the reading of the parent that saw it last
    bool queued = false;    // waits to be read
    bool failed = false;    // could not be opened
    bool dropped = false;
    std::map<QByteArray, std::unique_ptr<KPFolderNode>> folders;
    QHash<QByteArray, Document> documents; // those in the results

    // The path in bytes; "" for "/", so that "/" + name can follow.
    QByteArray path() const;
};

// Opens folders of a walk by descriptor, one component at a time and never through a link, so
// that neither a long path nor a folder swapped for a link matters.
//
// Keeps the folders on the way to the last one open (a bounded number), so that a walk in depth
// costs one call for each folder. Threads: one at a time.
class KPFolderOpener
{
public:
    KPFolderOpener() = default;
    ~KPFolderOpener() { clear(); }
    KPFolderOpener(const KPFolderOpener &) = delete;
    KPFolderOpener &operator=(const KPFolderOpener &) = delete;

    // Borrowed until the next call; -1 with errno.
    int open(const KPFolderNode &node);
    // To be called before a node is destroyed.
    void forget(const KPFolderNode &node);
    // Closes all: an idle walk keeps no folder open.
    void clear() { truncate(0); }

private:
    struct Open
    {
        const KPFolderNode *node;
        int descriptor;
    };

    // Number of open folders up to and including this one; 0: it is not open.
    size_t depthOf(const KPFolderNode *node) const;
    void truncate(size_t size);

    std::vector<Open> m_open;
};

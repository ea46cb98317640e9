#pragma once

#include "IndexCatalog.h"
#include "IndexCorpusWords.h"

#include <functional>

// A home folder made up for measuring: on disk, or straight into a catalog. The same files, names
// and attributes for the same number, everywhere.
//
// Folders hold 10 to 200 files and lie two to six deep; one file in twenty carries tags, a rating
// or the managed mark as this system writes them. With bodies, three files in four are text of
// about a kilobyte; without, all are empty on disk.
// Threads: immutable; writeTo() uses two of its own.
class IndexCorpus
{
public:
    // Changes whenever other files would come out.
    static constexpr int version = 1;

    enum class Bodies { None, Prose };
    IndexCorpus(quint32 files, Bodies bodies);

    // The corpus on disk in the working directory, made on first use and kept. Its path.
    static QString onDisk(quint32 files, Bodies bodies);
    // Makes it in `path`, which must not exist. Exits the program when that fails.
    void writeTo(const QString &path) const;

    // The batches that a crawl of the corpus would apply, folders before what they hold; items
    // count up from 1, the root, whose path is `rootPath`.
    static constexpr const char *rootPath = "/home/user";
    void batches(const std::function<void(const IndexBatch &batch)> &take) const;
    // Catalogs of so many files without a disk; each made once.
    static const IndexCatalog &hundredThousand();
    static const IndexCatalog &million();

    struct Folder
    {
        quint32 parent; // its number; the first folder is the root itself
        quint32 depth;
        quint32 files;
        QByteArray name;
    };
    const std::vector<Folder> &folders() const { return m_folders; }
    QByteArray path(quint32 folder) const; // relative to the root; empty for the root

    struct File
    {
        QByteArray name;
        QByteArray extension;
        qint64 modified = 0; // nanoseconds since 1970
        qint64 size = 0;     // what it would have with a body
        IndexRecord::Attributes attributes;
        quint64 seed = 0; // of its body
    };
    std::vector<File> filesIn(quint32 folder) const;
    QByteArray body(const File &file) const;

private:
    void makeFolder(int root, quint32 folder) const;

    const Bodies m_bodies;
    std::vector<Folder> m_folders;
};

#include "IndexTestKept.h"
#include "MDQuery.h"
#include "TestHome.h"

#include <QDir>
#include <sqlite3.h>

namespace {

// SQLite's own access to files, on a disk that maps no memory which processes share.
class UnmappedDisk
{
public:
    UnmappedDisk() : m_usual(sqlite3_vfs_find(nullptr))
    {
        usual() = m_usual;
        m_vfs = *m_usual;
        m_vfs.zName = "unmapped";
        m_vfs.xOpen = &open;
        sqlite3_vfs_register(&m_vfs, 1);
    }
    ~UnmappedDisk()
    {
        sqlite3_vfs_register(m_usual, 1);
        sqlite3_vfs_unregister(&m_vfs);
    }
    UnmappedDisk(const UnmappedDisk &) = delete;
    UnmappedDisk &operator=(const UnmappedDisk &) = delete;

private:
    static sqlite3_vfs *&usual()
    {
        static sqlite3_vfs *vfs = nullptr;
        return vfs;
    }
    static int map(sqlite3_file *, int, int, int, void volatile **) { return SQLITE_IOERR_SHMMAP; }
    static int open(sqlite3_vfs *, sqlite3_filename name, sqlite3_file *file, int flags, int *out)
    {
        const int result = usual()->xOpen(usual(), name, file, flags, out);
        if (result == SQLITE_OK && file->pMethods->iVersion >= 2 && (flags & SQLITE_OPEN_MAIN_DB)) {
            static sqlite3_io_methods methods = *file->pMethods;
            methods.xShmMap = &map;
            file->pMethods = &methods;
        }
        return result;
    }

    sqlite3_vfs *const m_usual;
    sqlite3_vfs m_vfs = {};
};

qsizetype found(IndexTestKept &kept, const char *text)
{
    const auto query = MDQuery::create(kept.source(), QString::fromLatin1(text));
    if (!query)
        return -1;
    (*query)->execute(MDQuery::Synchronous);
    return (*query)->resultCount();
}

} // namespace

TEST(IndexOddDisk, WithoutSharedMemoryKeepsEverythingOverTheNextStart)
{
    const TestFolder folder;
    const QString store = folder.path(QStringLiteral("store/index.sqlite"));
    const QString root = QFileInfo(folder.file(QStringLiteral("tree/a.txt"), "lighthouse")).path();
    const auto expectWhole = [&](const char *who) {
        SCOPED_TRACE(who);
        IndexTestKept kept(store, root);
        ASSERT_TRUE(kept.settle());
        EXPECT_EQ(kept.problems().size(), 0);
        EXPECT_EQ(found(kept, "kMDItemTextContent == \"lighthouse\"cdw"), 1);
        EXPECT_EQ(found(kept, "kMDItemFSName == \"*.txt\""), 1);
    };
    expectWhole("on a usual disk"); // leaves a log, if any, to the next
    {
        const UnmappedDisk disk;
        expectWhole("moved to such a disk");
        expectWhole("again");
    }
    expectWhole("and back");
    const QStringList files = QDir(QFileInfo(store).path()).entryList(QDir::Files);
    EXPECT_TRUE(files.filter(QStringLiteral("damaged")).isEmpty())
        << files.join(u' ').toStdString();
}

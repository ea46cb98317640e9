#include "Karvex.h"
#include "TestHome.h"
#include "XPArchiveWriter.h"
#include "XPAtomicFile.h"
#include "XPDocumentExport.h"
#include "XPDocumentImport.h"
#include "XPExtendedAttributes.h"
#include "XPFileInfo.h"
#include "XPImportFolder.h"
#include "XPPath.h"

#include <QDir>
#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <thread>
#include <unistd.h>

using Action = XPDocumentImport::Action;
using Options = XPDocumentImport::Options;
using Summary = XPDocumentImport::Summary;

namespace {

class ArchiveFaults : public testing::Test
{
protected:
    Summary import(const Options &options = {}) const
    {
        return XPDocumentImport::run(m_archive, m_to, options);
    }
    QStringList entries() const
    {
        return QDir(m_to).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    // An archive that only a program could have written.
    void writeArchive(const std::function<void(XPArchiveWriter &)> &write) const
    {
        const XPFileDescriptor file(
            ::open(XPPath::encode(m_archive).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
        XPArchiveWriter writer(file.get(), false);
        write(writer);
        EXPECT_FALSE(writer.finish());
    }

    const TestFolder m_folder;
    const QString m_archive = m_folder.path(QStringLiteral("out.murnarchive"));
    const QString m_to = m_folder.path(QStringLiteral("to"));
    const QStringList m_tags = {QStringLiteral("one"), QStringLiteral("two")};
};

} // namespace

TEST_F(ArchiveFaults, LeavesTagsThatCannotBeReadAsTheyAre)
{
    const QString one = m_folder.file(QStringLiteral("in/one"), "1");
    const QString two = m_folder.file(QStringLiteral("in/two"), "2");
    for (const QString &path : {one, two})
        EXPECT_FALSE(Karvex::setUserTags(m_tags, path));
    EXPECT_FALSE(XPDocumentExport::run({one, two}, m_archive, {}).error);
    const QString there = m_folder.file(QStringLiteral("to/one"), "1");
    const QString name = Karvex::spotlightKey(Karvex::userTagsKey);
    ASSERT_FALSE(XPExtendedAttributes::write(there, name, "bplist00garbage"));
    const Summary summary = import();
    EXPECT_FALSE(summary.error);
    EXPECT_EQ(summary.count(Action::Failed), 1);
    EXPECT_EQ(summary.count(Action::Added), 1);
    EXPECT_EQ(**XPExtendedAttributes::read(there, name), "bplist00garbage");
}

// What cannot be understood travels as the bytes that it is.
TEST_F(ArchiveFaults, CarriesWhatItDoesNotUnderstand)
{
    const QString one = m_folder.file(QStringLiteral("in/one"), "1");
    const QString name = Karvex::spotlightKey(Karvex::userTagsKey);
    ASSERT_FALSE(XPExtendedAttributes::write(one, name, "bplist00garbage"));
    EXPECT_FALSE(XPDocumentExport::run({one}, m_archive, {}).error);
    EXPECT_EQ(import().count(Action::Added), 1);
    EXPECT_EQ(**XPExtendedAttributes::read(m_to + QStringLiteral("/one"), name), "bplist00garbage");
}

TEST_F(ArchiveFaults, ChangesNothingTheSecondTime)
{
    const QString one = m_folder.file(QStringLiteral("in/one"), "1");
    EXPECT_FALSE(Karvex::setUserTags(m_tags, one));
    EXPECT_FALSE(Karvex::setRating(2, one));
    EXPECT_FALSE(XPDocumentExport::run({one}, m_archive, {}).error);
    EXPECT_EQ(import().count(Action::Added), 1);
    const auto before = XPFileInfo::read(m_to + QStringLiteral("/one"));
    EXPECT_EQ(import().count(Action::Same), 1);
    EXPECT_EQ(XPFileInfo::read(m_to + QStringLiteral("/one"))->changed, before->changed);
}

// One that changes while it is read is left out: neither half of it is ever in an archive.
TEST_F(ArchiveFaults, LeavesOutWhatChangesMeanwhile)
{
    const QString restless =
        m_folder.file(QStringLiteral("in/restless"), QByteArray(16 << 20, 'r'));
    const QString still = m_folder.file(QStringLiteral("in/still"), "s");
    std::atomic<bool> isOver = false;
    std::thread writer([&] {
        for (int i = 1; !isOver; i = i % 1000 + 1) {
            const timeval times[] = {{i, i}, {i, i}};
            ::utimes(XPPath::encode(restless).constData(), times);
        }
    });
    QStringList failed;
    XPDocumentExport::Options options;
    options.failed = [&](const QString &path, const XPError &) { failed.append(path); };
    const auto result = XPDocumentExport::run({restless, still}, m_archive, options);
    isOver = true;
    writer.join();
    EXPECT_FALSE(result.error);
    EXPECT_EQ(result.documents, 1);
    EXPECT_EQ(failed, QStringList{restless});
    const Summary summary = import();
    EXPECT_EQ(summary.count(Action::Failed), 1);
    EXPECT_EQ(entries(), QStringList{QStringLiteral("still")});
}

// Sizes of what was left out count for nothing, however large they claim to be.
TEST_F(ArchiveFaults, BelievesNoSizeOfWhatIsNotThere)
{
    writeArchive([](XPArchiveWriter &writer) {
        for (const char *name : {"a", "b", "c"}) {
            XPArchivedFile file;
            file.path = QString::fromLatin1(name);
            file.size = std::numeric_limits<qint64>::max() / 2;
            EXPECT_FALSE(writer.begin(file));
            EXPECT_FALSE(writer.end(true));
        }
    });
    const Summary summary = import();
    EXPECT_FALSE(summary.error);
    EXPECT_EQ(summary.bytes, 0);
    EXPECT_EQ(summary.count(Action::Failed), 3);
    EXPECT_TRUE(entries().isEmpty());
}

TEST_F(ArchiveFaults, GivesANameOnlyOnce)
{
    writeArchive([](XPArchiveWriter &writer) {
        for (const char *contents : {"first", "other"}) {
            XPArchivedFile file;
            file.path = QStringLiteral("x");
            file.size = 5;
            EXPECT_FALSE(writer.begin(file));
            EXPECT_FALSE(writer.addContents(contents));
            EXPECT_FALSE(writer.end());
        }
    });
    const Summary summary = import();
    EXPECT_EQ(summary.count(Action::Added), 1);
    EXPECT_EQ(summary.count(Action::Failed), 1);
    EXPECT_EQ(XPAtomicFile::read(m_to + QStringLiteral("/x")).valueOr({}), "first");
}

// Stopped after any number of pieces there are whole documents only, and nothing hidden.
TEST_F(ArchiveFaults, StopsInTheMiddleOfADocument)
{
    QByteArray large(3 << 20, 'l');
    for (qsizetype at = 0; at < large.size(); at += 4096)
        large[at] = static_cast<char>(at >> 12);
    const QString one = m_folder.file(QStringLiteral("in/large"), large);
    const QString part = m_folder.file(QStringLiteral("in/p.rtfd/part"), large);
    EXPECT_FALSE(
        XPDocumentExport::run({one, m_folder.path(QStringLiteral("in/p.rtfd"))}, m_archive, {})
            .error);
    int whole = 0;
    XPDocumentImport::check(m_archive, m_to, {.progress = [&](qint64, qint64) { return ++whole; }});
    for (int most = whole + 1; most < 2 * whole; ++most) {
        SCOPED_TRACE(most);
        int calls = 0;
        const Summary summary =
            import({.progress = [&](qint64, qint64) { return ++calls < most; }});
        EXPECT_TRUE(summary.stopped);
        EXPECT_FALSE(summary.error);
        for (const QString &name : entries()) {
            const QString path = name == u"large" ? QString() : QStringLiteral("/part");
            EXPECT_EQ(XPAtomicFile::read(m_to + u'/' + name + path).valueOr({}), large);
        }
        EXPECT_LE(entries().size(), 1);
        EXPECT_TRUE(QDir(m_to).removeRecursively());
    }
}

// A folder that could not be made is never taken for the one before it.
TEST_F(ArchiveFaults, KeepsFoldersApart)
{
    XPImportFolder place;
    QDir().mkpath(m_to);
    ASSERT_EQ(place.open(m_to), 0);
    XPFileDescriptor first;
    ASSERT_EQ(place.folderOf(QStringLiteral("x/1"), true, first), 0);
    XPFileDescriptor other;
    EXPECT_EQ(place.folderOf(QStringLiteral("a/") + QString(300, u'n') + QStringLiteral("/2"), true,
                             other),
              ENAMETOOLONG);
    ASSERT_EQ(place.folderOf(QStringLiteral("x/3"), true, other), 0);
    struct stat one = {};
    struct stat two = {};
    EXPECT_EQ(::fstat(first.get(), &one), 0);
    EXPECT_EQ(::fstat(other.get(), &two), 0);
    EXPECT_EQ(one.st_ino, two.st_ino);
}

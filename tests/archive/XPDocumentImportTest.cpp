#include "XPDocumentImport.h"
#include "Karvex.h"
#include "TestHome.h"
#include "TestSystem.h"
#include "XPAtomicFile.h"
#include "XPDocumentExport.h"
#include "XPExtendedAttributes.h"
#include "XPFileInfo.h"
#include "XPFileTransfers.h"
#include "XPPath.h"

#include <QDir>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

using Action = XPDocumentImport::Action;
using Summary = XPDocumentImport::Summary;

namespace {

class Archive : public testing::Test
{
protected:
    static QByteArray read(const QString &path)
    {
        return XPAtomicFile::read(path).valueOr("(nothing)");
    }
    XPDocumentExport::Result write(const QStringList &paths) const
    {
        return XPDocumentExport::run(paths, m_archive, {});
    }
    Summary import(bool dryRun = false)
    {
        m_steps.clear();
        XPDocumentImport::Options options;
        options.dryRun = dryRun;
        options.told = [this](const XPDocumentImport::Step &step) { m_steps.append(step); };
        Summary summary = XPDocumentImport::run(m_archive, m_to, options);
        if (summary.error)
            ADD_FAILURE() << summary.error->message.toStdString();
        return summary;
    }
    QString there(const char *name) const { return m_to + u'/' + XPPath::decode(name); }
    static void setTime(const QString &path, qint64 seconds)
    {
        const timeval times[] = {{seconds, 0}, {seconds, 0}};
        EXPECT_EQ(::utimes(XPPath::encode(path).constData(), times), 0);
    }
    QStringList entries() const
    {
        return QDir(m_to).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    const TestFolder m_folder;
    const QString m_archive = m_folder.path(QStringLiteral("out.murnarchive"));
    const QString m_to = m_folder.path(QStringLiteral("to"));
    const QStringList m_tags = {QStringLiteral("one"), QStringLiteral("two")};
    QList<XPDocumentImport::Step> m_steps;
};

} // namespace

TEST_F(Archive, BringsDocumentsBackWithAllThatStandsOnThem)
{
    const QString letter =
        m_folder.file(QStringLiteral("in/a/letter.txt"), QByteArray(3 << 20, 'l'));
    const QString odd = m_folder.file(XPPath::decode("in/odd\xff\n.pdf"), "");
    const QString part = m_folder.file(QStringLiteral("in/p.rtfd/sub/TXT.rtf"), "rich");
    EXPECT_FALSE(Karvex::setUserTags(m_tags, letter));
    EXPECT_FALSE(Karvex::setRating(3, odd));
    EXPECT_FALSE(XPExtendedAttributes::write(letter, QStringLiteral("xdg.comment"), "a comment"));
    EXPECT_EQ(::chmod(XPPath::encode(letter).constData(), 0700), 0);
    setTime(letter, 1'000'000'000);
    const auto written = write({letter, odd, m_folder.path(QStringLiteral("in/p.rtfd"))});
    EXPECT_FALSE(written.error);
    EXPECT_EQ(written.documents, 3);

    const Summary dry = import(true);
    EXPECT_EQ(dry.count(Action::Added), 3);
    EXPECT_FALSE(XPFileInfo::read(m_to));
    EXPECT_EQ(import().count(Action::Added), 3);
    EXPECT_EQ(read(there("a/letter.txt")), read(letter));
    EXPECT_EQ(*Karvex::getUserTags(there("a/letter.txt")), m_tags);
    EXPECT_EQ(*Karvex::getRating(there("odd\xff\n.pdf")), 3);
    EXPECT_EQ(**XPExtendedAttributes::read(there("a/letter.txt"), QStringLiteral("xdg.comment")),
              "a comment");
    EXPECT_EQ(read(there("p.rtfd/sub/TXT.rtf")), "rich");
    const auto info = XPFileInfo::read(there("a/letter.txt"));
    EXPECT_EQ(info->modified, 1'000'000'000'000'000'000);
    EXPECT_EQ(info->mode & 0777U, 0600U);       // private as it was, and no program
    EXPECT_EQ(import().count(Action::Same), 2); // the package is only kept
    EXPECT_EQ(entries(), (QStringList{QStringLiteral("a"), QStringLiteral("p.rtfd")}));
}

TEST_F(Archive, LeavesWhatIsNewerAndPutsWhatIsOlderInTheTrash)
{
    const QString newer = m_folder.file(QStringLiteral("in/newer"), "from the archive");
    const QString older = m_folder.file(QStringLiteral("in/older"), "from the archive");
    const QString same = m_folder.file(QStringLiteral("in/same"), "the same");
    EXPECT_FALSE(Karvex::setUserTags(m_tags, same));
    EXPECT_FALSE(Karvex::setUserTags(m_tags, older));
    EXPECT_FALSE(write({newer, older, same}).error);
    for (const char *name : {"to/newer", "to/older"})
        m_folder.file(QString::fromUtf8(name), "of this machine.");
    m_folder.file(QStringLiteral("to/same"), "the same");
    setTime(there("older"), 1000);
    setTime(there("newer"), 4'000'000'000);
    EXPECT_FALSE(Karvex::setRating(5, there("older")));
    EXPECT_FALSE(Karvex::setUserTags(QStringList{QStringLiteral("later")}, there("newer")));

    const auto expected = [](const Summary &summary) {
        return summary.count(Action::Kept) == 1 && summary.count(Action::Replaced) == 1 &&
               summary.count(Action::Changed) == 1;
    };
    EXPECT_TRUE(expected(import(true)));
    EXPECT_EQ(read(there("older")), "of this machine.");
    EXPECT_TRUE(Karvex::getUserTags(there("same"))->isEmpty());
    EXPECT_TRUE(expected(import()));
    EXPECT_EQ(read(there("newer")), "of this machine.");
    EXPECT_EQ(*Karvex::getUserTags(there("newer")), QStringList{QStringLiteral("later")});
    EXPECT_EQ(read(there("older")), "from the archive");
    EXPECT_EQ(*Karvex::getUserTags(there("older")), m_tags);
    EXPECT_EQ(*Karvex::getRating(there("older")), 5); // of this machine, and the archive has none
    EXPECT_EQ(*Karvex::getUserTags(there("same")), m_tags);
    EXPECT_EQ(entries().size(), 3);
}

TEST_F(Archive, FollowsNoLinkOutOfTheFolder)
{
    const QString inside = m_folder.file(QStringLiteral("in/sub/x"), "x");
    const QString other = m_folder.file(QStringLiteral("in/y"), "y");
    m_folder.file(QStringLiteral("elsewhere/y"), "mine");
    EXPECT_FALSE(write({inside, other}).error);
    QDir().mkpath(m_to);
    EXPECT_EQ(::symlink("../elsewhere", XPPath::encode(there("sub")).constData()), 0);
    EXPECT_EQ(::symlink("../elsewhere/y", XPPath::encode(there("y")).constData()), 0);
    EXPECT_EQ(import().count(Action::Failed), 2);
    EXPECT_FALSE(XPFileInfo::read(m_folder.path(QStringLiteral("elsewhere/x"))));
    EXPECT_EQ(read(m_folder.path(QStringLiteral("elsewhere/y"))), "mine");
}

TEST_F(Archive, ChangesNothingWhenItIsDamaged)
{
    QStringList paths;
    for (int i = 0; i < 40; ++i)
        paths.append(m_folder.file(QStringLiteral("in/%1").arg(i), QByteArray(100'000, 'x')));
    EXPECT_FALSE(write(paths).error);
    QByteArray bytes = read(m_archive);
    bytes[bytes.size() - 20] = static_cast<char>(bytes[bytes.size() - 20] ^ 1);
    EXPECT_FALSE(XPAtomicFile::write(m_archive, bytes));
    const Summary summary = XPDocumentImport::run(m_archive, m_to, {});
    ASSERT_TRUE(summary.error);
    EXPECT_EQ(summary.error->path, m_archive);
    EXPECT_FALSE(XPFileInfo::read(m_to));
}

TEST_F(Archive, NeverReplacesAFileAndLeavesNothingBehind)
{
    const QString one = m_folder.file(QStringLiteral("in/one"), "1");
    m_folder.file(QStringLiteral("out.murnarchive"), "mine");
    EXPECT_TRUE(write({one}).error);
    EXPECT_EQ(read(m_archive), "mine");
    ::unlink(XPPath::encode(m_archive).constData());
    XPDocumentExport::Options options;
    options.progress = [](qint64 done) { return done < 1; };
    EXPECT_EQ(XPDocumentExport::run({one, one}, m_archive, options).error->kind,
              XPError::Kind::Cancelled);
    QStringList failed;
    options = {};
    options.failed = [&](const QString &path, const XPError &) { failed.append(path); };
    const QString link = m_folder.path(QStringLiteral("in/link"));
    EXPECT_EQ(::symlink("one", XPPath::encode(link).constData()), 0);
    EXPECT_EQ(XPDocumentExport::run({link, one}, m_archive, options).documents, 1);
    EXPECT_EQ(failed, QStringList{link});
    EXPECT_EQ(QDir(m_folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
}

TEST_F(Archive, ReadsTheListThatLiesBesideCopies)
{
    const QString one = m_folder.file(QStringLiteral("in/one.txt"), "1");
    const QString gone = m_folder.file(QStringLiteral("in/gone.txt"), "2");
    const QString drive = m_folder.path(QStringLiteral("drive"));
    QDir().mkpath(drive);
    for (const QString &path : {one, gone})
        EXPECT_FALSE(Karvex::setUserTags(m_tags, path));
    XPFileTransfers::Request request{{one, gone}, drive, true};
    request.isRemembered = false;
    request.listsTags = true;
    const XPFileReport report = XPFileTransfers::moveCopyFiles(request);
    EXPECT_EQ(report.paths.size(), 2);
    ASSERT_FALSE(report.tagList.isEmpty());
    // As a drive without attributes leaves them.
    const QString copy = drive + QStringLiteral("/one.txt");
    EXPECT_FALSE(Karvex::setXAttrMetaData({}, Karvex::userTagsKey, copy));
    EXPECT_FALSE(Karvex::setXAttrMetaData({}, Karvex::userTagTimeKey, copy));
    EXPECT_EQ(::unlink(XPPath::encode(drive + QStringLiteral("/gone.txt")).constData()), 0);

    const Summary summary = XPDocumentImport::run(report.tagList, m_to, {});
    EXPECT_FALSE(summary.error);
    EXPECT_TRUE(summary.isBeside);
    EXPECT_EQ(summary.count(Action::Added), 1);
    EXPECT_EQ(summary.count(Action::Failed), 1);
    EXPECT_EQ(read(there("one.txt")), "1");
    EXPECT_EQ(*Karvex::getUserTags(there("one.txt")), m_tags);
    // Where they lie, they get their tags back.
    EXPECT_EQ(XPDocumentImport::run(report.tagList, drive, {}).count(Action::Changed), 1);
    EXPECT_EQ(*Karvex::getUserTags(copy), m_tags);
}

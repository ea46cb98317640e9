#include "Karvex.h"
#include "Murnctl.h"
#include "TestHome.h"
#include "XPFileInfo.h"
#include "XPFolders.h"
#include "XPPath.h"

#include <QDate>
#include <QDir>
#include <QJsonArray>
#include <QJsonObject>
#include <gtest/gtest.h>

// A managed folder in the private home, and a folder of documents.
class MurnctlFile : public testing::Test
{
protected:
    MurnctlFile()
    {
        QDir(m_root).removeRecursively();
        QDir().mkpath(m_root);
    }
    ~MurnctlFile() override { QDir(m_root).removeRecursively(); }

    QByteArray today(const QByteArray &name) const
    {
        const QDate date = QDate::currentDate();
        return XPPath::encode(m_root) +
               QStringLiteral("/%1/%2/%3/")
                   .arg(date.year())
                   .arg(date.month())
                   .arg(date.day())
                   .toUtf8() +
               name;
    }
    static bool exists(const QByteArray &path)
    {
        return XPFileInfo::read(XPPath::decode(path)).hasValue();
    }
    static bool isManaged(const QByteArray &path)
    {
        return Karvex::getXAttrMetaData(Karvex::managedKey, XPPath::decode(path))
            .valueOr({})
            .boolValue();
    }
    MurnctlResult run(const QByteArrayList &words) const { return murnctl(words, m_folder.path()); }
    QByteArray path(const QByteArray &name) const
    {
        return XPPath::encode(m_folder.path()) + '/' + name;
    }

    const QString m_root = XPFolders::documents() + QStringLiteral("/Filed Documents");
    const TestFolder m_folder;
};

TEST_F(MurnctlFile, RefusesToMoveWithoutATerminalOrYes)
{
    m_folder.file(QStringLiteral("a.pdf"));
    for (const QByteArrayList &words :
         {QByteArrayList{"file", "a.pdf"}, QByteArrayList{"file", "--to", ".", "a.pdf"},
          QByteArrayList{"file"}, QByteArrayList{"file", "--copy", "a.pdf"},
          QByteArrayList{"file", "--pending", "--to", ".", "a.pdf"}, QByteArrayList{"manage"}}) {
        EXPECT_EQ(run(words).status, 2) << words.join(' ').constData();
        EXPECT_TRUE(exists(path("a.pdf")));
    }
}

TEST_F(MurnctlFile, SaysWhereAFileWouldGoAndThenFilesIt)
{
    m_folder.file(QStringLiteral("a.pdf"));
    m_folder.file(QStringLiteral("in/b.pdf"));
    const QByteArray line = path("a.pdf") + " -> " + today("a.pdf");
    const auto planned = run({"file", "--dry-run", "a.pdf"});
    EXPECT_EQ(planned.status, 0);
    EXPECT_EQ(planned.lines(), QByteArrayList{line});
    EXPECT_TRUE(exists(path("a.pdf")));
    EXPECT_FALSE(exists(today("")));

    const auto done = run({"file", "--yes", "a.pdf", "in", "gone"});
    EXPECT_EQ(done.status, 1);
    EXPECT_EQ(done.lines(), (QByteArrayList{line, path("in/b.pdf") + " -> " + today("b.pdf")}));
    EXPECT_EQ(done.err.count('\n'), 1);
    EXPECT_TRUE(isManaged(today("a.pdf")));
    EXPECT_FALSE(exists(path("a.pdf")));
}

TEST_F(MurnctlFile, MovesToAFolderAndNeverReplacesUnasked)
{
    m_folder.file(QStringLiteral("a.pdf"), "new");
    m_folder.file(QStringLiteral("to/a.pdf"), "old");
    m_folder.file(QStringLiteral("in/a.pdf"), "other");
    const auto copied = run({"file", "--to", "to", "--copy", "--yes", "--json", "a.pdf"});
    EXPECT_EQ(copied.status, 0);
    const QJsonObject step = copied.json().array().at(0).toObject();
    EXPECT_EQ(step.value(u"action").toString(), QStringLiteral("copied"));
    EXPECT_TRUE(step.value(u"to").toString().endsWith(u"/to/a 1.pdf"));
    EXPECT_TRUE(exists(path("a.pdf")));

    // Two of one name: the second stays, and is told of.
    const auto moved = run({"file", "--to", "to", "--yes", "--print0", "a.pdf", "in/a.pdf"});
    EXPECT_EQ(moved.status, 1);
    EXPECT_EQ(moved.out, path("a.pdf") + '\0' + path("to/a 2.pdf") + '\0');
    EXPECT_TRUE(exists(path("in/a.pdf")));
    EXPECT_FALSE(exists(path("a.pdf")));
    EXPECT_EQ(run({"file", "--to", "gone", "--yes", "in/a.pdf"}).status, 1);
}

TEST_F(MurnctlFile, MarksInPlaceWhateverTheName)
{
    const QByteArray odd = "\xff\n.pdf";
    m_folder.file(QStringLiteral("a.pdf"));
    ASSERT_EQ(::rename(path("a.pdf").constData(), path(odd).constData()), 0);
    EXPECT_EQ(run({"manage", "--dry-run", odd}).status, 0);
    EXPECT_FALSE(isManaged(path(odd)));
    EXPECT_EQ(run({"manage", "--print0", odd}).out, path(odd) + '\0');
    EXPECT_TRUE(isManaged(path(odd)));
    EXPECT_EQ(run({"unmanage", odd}).status, 0);
    EXPECT_FALSE(isManaged(path(odd)));
    // What somebody decided stays, as it would in a dry run.
    for (const bool isDry : {true, false}) {
        const auto asked = run(isDry ? QByteArrayList{"manage", "--if-unmarked", "--dry-run", odd}
                                     : QByteArrayList{"manage", "--if-unmarked", odd});
        EXPECT_EQ(asked.status, 0);
        EXPECT_EQ(asked.out, "");
    }
    EXPECT_EQ(run({"manage", "gone"}).status, 1);
}

TEST_F(MurnctlFile, EmptiesTheInbox)
{
    const QString inbox = XPFolders::ourApplicationSupport() + QStringLiteral("/Pending Documents");
    QDir().mkpath(inbox);
    const QByteArray scan = XPPath::encode(inbox) + "/scan.pdf";
    m_folder.file(QStringLiteral("scan.pdf"));
    ASSERT_EQ(::rename(path("scan.pdf").constData(), scan.constData()), 0);
    EXPECT_EQ(run({"file", "--pending", "--dry-run"}).lines(),
              QByteArrayList{scan + " -> " + today("scan.pdf")});
    EXPECT_TRUE(exists(scan));
    EXPECT_EQ(run({"file", "--pending"}).status, 0);
    EXPECT_FALSE(exists(scan));
    EXPECT_TRUE(isManaged(today("scan.pdf")));
}

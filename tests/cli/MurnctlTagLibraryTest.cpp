#include "Karvex.h"
#include "Murnctl.h"
#include "TestHome.h"
#include "XPExtendedAttributes.h"
#include "XPFolders.h"
#include "XPPath.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonObject>
#include <gtest/gtest.h>

// Files in the indexed private home.
class MurnctlTagLibrary : public testing::Test
{
protected:
    MurnctlTagLibrary()
    {
        QDir(m_folder).removeRecursively();
        QDir().mkpath(m_folder);
        for (const char *name : {"a", "b", "torn"})
            tag(name, {work, QStringLiteral("work/old")});
        tag("c", {home, QStringLiteral("WORK")});
    }
    ~MurnctlTagLibrary() override { QDir(m_folder).removeRecursively(); }

    QString path(const char *name) const { return m_folder + u'/' + QLatin1String(name); }
    void tag(const char *name, const QStringList &tags) const
    {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        EXPECT_FALSE(Karvex::setUserTags(tags, path(name)));
    }
    QStringList tags(const char *name) const
    {
        return Karvex::getUserTags(path(name)).valueOr({QStringLiteral("(error)")});
    }
    MurnctlResult run(const QByteArrayList &words) const { return murnctl(words, m_folder); }

    const QString m_folder = XPFolders::documents() + QStringLiteral("/Tagged");
    const QString work = QStringLiteral("work");
    const QString home = QStringLiteral("home");
};

TEST_F(MurnctlTagLibrary, TouchesNothingWithoutYes)
{
    for (const QByteArrayList &words :
         {QByteArrayList{"tag-rename", "--dry-run", "work", "job"},
          QByteArrayList{"tag-rename", "work", "job"}, QByteArrayList{"tag-delete", "work"}}) {
        const auto result = run(words);
        EXPECT_EQ(result.status, words.contains("--dry-run") ? 0 : 1);
        EXPECT_EQ(result.lines().size(), 4) << "says what it would change";
        EXPECT_EQ(tags("c"), (QStringList{home, QStringLiteral("WORK")}));
    }
}

TEST_F(MurnctlTagLibrary, RenamesTheBranchAndSaysWhatFailed)
{
    ASSERT_FALSE(run({"index", "sync"}).status);
    // Torn after the index saw it: must not be written over.
    const QString name = Karvex::spotlightKey(Karvex::userTagsKey);
    const auto result = [&] {
        EXPECT_FALSE(XPExtendedAttributes::write(path("torn"), name, "bplist00garbage"));
        return run({"tag-rename", "--yes", "work", "home"});
    }();
    EXPECT_EQ(tags("a"), (QStringList{home, QStringLiteral("home/old")}));
    EXPECT_EQ(tags("c"), QStringList{home}) << "the two became one";
    EXPECT_EQ(XPExtendedAttributes::read(path("torn"), name, 4096).valueOr({}), "bplist00garbage");
    EXPECT_EQ(run({"tag-rename", "--yes", "work", "job"}).status, 1) << "nothing left";
    EXPECT_EQ(run({"tag-delete", "--yes", "--branch", "home"}).status, 0);
    EXPECT_TRUE(tags("a").isEmpty());
    EXPECT_EQ(run({"tag-rename", "one", "two", "three"}).status, 2);
    EXPECT_EQ(run({"tag-rename", "one", "two,three"}).status, 2);
}

TEST_F(MurnctlTagLibrary, CountsTagsAndTheirBranches)
{
    const auto all = run({"tags", "--all", "--json"}).json().array();
    QHash<QString, QJsonObject> byTag;
    for (const auto &each : all)
        byTag.insert(each[QStringLiteral("tag")].toString(), each.toObject());
    EXPECT_EQ(byTag.value(work).value(QStringLiteral("count")).toInt(), 4);
    EXPECT_EQ(byTag.value(work).value(QStringLiteral("branchCount")).toInt(), 4)
        << "a document with parent and child counts once";
    EXPECT_EQ(byTag.value(QStringLiteral("work/old")).value(QStringLiteral("count")).toInt(), 3);
    EXPECT_TRUE(run({"tags", "--all", "--tree"}).out.contains("  old\t3\n"));
    EXPECT_EQ(run({"tags", "--tree", "x"}).status, 2);
}

TEST_F(MurnctlTagLibrary, SuggestsKnownTagsThatSuitTheName)
{
    tag("Letter about work.txt", {});
    const auto result = run({"tag", "--suggest", "Letter about work.txt"});
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(result.lines().contains("work"));
    EXPECT_EQ(run({"tag", "--suggest", "gone"}).status, 1);
    EXPECT_EQ(run({"tag", "--suggest", "--add", "x", "a"}).status, 2);
}

TEST_F(MurnctlTagLibrary, FindsABranchByTheTagAboveItAndTagsWithQuotationMarks)
{
    tag("torn",
        {QStringLiteral("work/old"), QStringLiteral("say \"hi\""), QStringLiteral("back\\")});
    tag("c", {QStringLiteral("workshop")});
    const QByteArray found = path("torn").toUtf8();
    const auto lines = [&](const QByteArrayList &words) {
        return run(QByteArrayList{"find", "--in", "."} + words).lines();
    };
    EXPECT_EQ(lines({"--tag", "WORK"}).size(), 3);
    EXPECT_EQ(lines({"--tag", "work", "--not-tag", "work/old"}), QByteArrayList());
    EXPECT_EQ(lines({"--not-tag", "work"}), QByteArrayList{path("c").toUtf8()});
    EXPECT_EQ(lines({"--tag", "say \"hi\""}), QByteArrayList{found});
    EXPECT_EQ(lines({"--tag", "back\\"}), QByteArrayList{found});
    EXPECT_EQ(lines({"--not-tag", "say \"hi\""}).size(), 3);
}

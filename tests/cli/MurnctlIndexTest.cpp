#include "Murnctl.h"

#include "Karvex.h"
#include "TestHome.h"
#include "XPPath.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>

// An indexed folder: the setting is the private home's, so it is taken back at the end.
class MurnctlIndex : public testing::Test
{
protected:
    MurnctlIndex()
    {
        EXPECT_FALSE(Karvex::addUserTags({QStringLiteral("Work")}, letter));
        EXPECT_EQ(run({"index", "add", "."}).status, 0);
    }
    ~MurnctlIndex() override { run({"index", "remove", "."}); }

    MurnctlResult run(const QByteArrayList &words) const { return murnctl(words, folder.path()); }
    QByteArray bytes(const QString &path) const { return XPPath::encode(path); }
    MurnctlResult query(const QByteArrayList &words) const
    {
        return run(QByteArrayList{"query", "--in", "."} + words);
    }

    const TestFolder folder;
    const QString letter =
        folder.file(QStringLiteral("letter.txt"), "Dear Sir, the zanzibar invoice");
    const QString odd = folder.file(XPPath::decode("sub/odd\xff\n.pdf"));
};

TEST_F(MurnctlIndex, QueriesFilesAndFoldersByTheQueryLanguage)
{
    const QByteArray sub = bytes(folder.path(QStringLiteral("sub")));
    const struct
    {
        const char *text;
        QByteArray out;
    } cases[] = {
        {"kMDItemFSName == \"*.TXT\"c", bytes(letter) + '\n'},
        {"kMDItemKXUserTags == \"work\"cd && kMDItemFSSize > 5", bytes(letter) + '\n'},
        {"kMDItemContentType == public.folder && kMDItemFSName != \"*test*\"", sub + '\n'},
        {"kMDItemTextContent == \"zanz*\"cdw", bytes(letter) + '\n'},
        {"kMDItemNoSuchThing == *", ""},
    };
    for (const auto &each : cases) {
        const MurnctlResult result = query({each.text});
        EXPECT_EQ(result.out, each.out) << each.text;
        EXPECT_EQ(result.status, 0) << result.err.constData();
    }
    EXPECT_EQ(query({"--count", "kMDItemFSSize > 0 && kMDItemFSName == \"*.*\""}).out, "2\n");
    EXPECT_EQ(query({"--limit", "1", "--print0", "kMDItemFSName == \"odd*\""}).out,
              bytes(odd) + '\0');
    const QJsonArray json = query({"--json", "kMDItemFSName == \"odd*\""}).json().array();
    ASSERT_EQ(json.size(), 1);
    EXPECT_EQ(json[0].toObject().keys(), QStringList{QStringLiteral("path")});
}

TEST_F(MurnctlIndex, ShowsWhereAQueryCannotBeRead)
{
    const MurnctlResult result = query({"kMDItemFSSize > 3 && (kMDItemFSName == 'é\x1b)"});
    EXPECT_EQ(result.status, 2);
    const QByteArrayList lines = result.err.split('\n');
    ASSERT_EQ(lines.size(), 5) << result.err.constData();
    EXPECT_TRUE(lines[0].startsWith("murnctl: "));
    EXPECT_FALSE(result.err.contains('\x1b'));
    EXPECT_EQ(lines[2].trimmed(), "^");
    EXPECT_EQ(lines[2].size(), QString::fromUtf8(lines[1]).size() + 1) << "at the end of the text";
    EXPECT_EQ(query({"a ==", "b"}).status, 2);
    EXPECT_EQ(run({"query"}).status, 2);
}

TEST_F(MurnctlIndex, FollowsAQueryWithItsFolders)
{
    Murnctl live({"query", "--live", "--in", ".", "kMDItemFSName == \"new*\""}, folder.path());
    Murnctl other({"query", "--live", "--in", ".", "kMDItemFSName == letter.txt"}, folder.path());
    ASSERT_TRUE(other.waitForLine("+ " + bytes(letter)));
    const QString made = folder.file(QStringLiteral("new folder/new file"));
    EXPECT_TRUE(live.waitForLine("+ " + bytes(made)));
    std::filesystem::rename(bytes(folder.path(QStringLiteral("new folder"))).toStdString(),
                            bytes(folder.path(QStringLiteral("newer"))).toStdString());
    EXPECT_TRUE(live.waitForLine("- " + bytes(made)));
    EXPECT_TRUE(live.waitForLine("+ " + bytes(folder.path(QStringLiteral("newer/new file")))));
    live.interrupt();
    EXPECT_EQ(live.wait(), 0) << live.err.constData();
}

TEST_F(MurnctlIndex, CoversWhatTheUserSays)
{
    const TestFolder more;
    const QByteArray file = bytes(more.file(QStringLiteral("build/x")));
    const QByteArray path = bytes(more.path());
    const auto finds = [&] { return run({"query", "--in", path, "kMDItemFSName == x"}).out; };
    EXPECT_EQ(finds(), "");
    EXPECT_EQ(run({"index", "add", path}).status, 0);
    EXPECT_EQ(run({"index", "add", path + "/build"}).status, 0) << "is indexed already";
    EXPECT_TRUE(run({"index", "roots"}).out.endsWith('\n' + path + '\n'));
    EXPECT_EQ(finds(), file + '\n');
    EXPECT_EQ(run({"index", "exclude", "bu?ld"}).status, 0);
    EXPECT_EQ(finds(), "");
    EXPECT_TRUE(run({"index", "roots", "--json"}).out.contains("\"bu?ld\""));
    EXPECT_TRUE(run({"query", "--in", path + "/build", "true"}).err.contains("left out"));
    EXPECT_EQ(run({"index", "include", path + "/build"}).status, 0);
    EXPECT_EQ(finds(), file + '\n');
    EXPECT_EQ(run({"index", "exclude", path + "/build"}).status, 0);
    EXPECT_EQ(run({"index", "include", "bu?ld"}).status, 0);
    EXPECT_EQ(finds(), "");
    EXPECT_EQ(run({"index", "include", path + "/build"}).status, 0);
    EXPECT_FALSE(run({"index", "roots", "--json"}).out.contains(path + "/build"));
    EXPECT_EQ(run({"index", "remove", path}).status, 0);
    EXPECT_EQ(run({"index", "remove", path}).status, 1);
    EXPECT_EQ(finds(), "");
    for (const char *wrong : {"a/b", "!a", ""})
        EXPECT_EQ(run({"index", "exclude", wrong}).status, 2) << wrong;
    EXPECT_EQ(run({"index", "add", "missing"}).status, 1);
}

TEST_F(MurnctlIndex, TellsWhatItHoldsAndThatItIsRight)
{
    EXPECT_EQ(run({"index", "sync"}).status, 0);
    const QJsonObject status = run({"index", "status", "--json"}).json().object();
    EXPECT_GE(status[QStringLiteral("items")].toInt(), 4);
    EXPECT_EQ(status[QStringLiteral("contentsWaiting")].toInt(), 0);
    EXPECT_EQ(status[QStringLiteral("phase")].toString(), QStringLiteral("live"));
    const QJsonObject root{{QStringLiteral("path"), folder.path()},
                           {QStringLiteral("state"), QStringLiteral("live")}};
    EXPECT_TRUE(status[QStringLiteral("roots")].toArray().contains(root));
    EXPECT_TRUE(run({"index", "status"}).out.contains("up to date"));
    const MurnctlResult verified = run({"index", "verify"});
    EXPECT_EQ(verified.status, 0) << verified.out.constData();
    EXPECT_TRUE(verified.out.endsWith("the index agrees\n"));
    EXPECT_EQ(run({"index", "verify", "--json"}).out, "[]\n");
    for (const QByteArrayList &wrong :
         {QByteArrayList{"index"}, {"index", "nothing"}, {"index", "add"}, {"index", "sync", "x"}})
        EXPECT_EQ(run(wrong).status, 2);
}

TEST_F(MurnctlIndex, IsBuiltAnewUnlessAnotherProcessKeepsIt)
{
    {
        Murnctl live({"query", "--live", "kMDItemFSName == letter.txt"}, folder.path());
        ASSERT_TRUE(live.waitForLine("+ " + bytes(letter)));
        const MurnctlResult refused = run({"index", "rebuild"});
        EXPECT_EQ(refused.status, 1);
        EXPECT_TRUE(refused.err.contains("quit it first")) << refused.err.constData();
        live.interrupt();
        EXPECT_EQ(live.wait(), 0);
    }
    EXPECT_EQ(run({"index", "rebuild"}).status, 0);
    EXPECT_EQ(query({"kMDItemTextContent == \"zanzibar\"cdw"}).out, bytes(letter) + '\n');
    EXPECT_EQ(Karvex::getUserTags(letter).valueOr({}), QStringList{QStringLiteral("Work")});
}

TEST_F(MurnctlIndex, IsSharedByProcessesAndOutlivesThem)
{
    const QByteArrayList words = {"query", "--live", "kMDItemFSName == \"live*\""};
    const QByteArray first = "+ " + bytes(folder.file(QStringLiteral("live 1")));
    Murnctl keeper(words, folder.path());
    ASSERT_TRUE(keeper.waitForLine(first));
    Murnctl follower(words, folder.path());
    ASSERT_TRUE(follower.waitForLine(first));
    EXPECT_FALSE(run({"index", "status", "--json"}).json()[QStringLiteral("keptHere")].toBool());
    // The settings that a third one changes reach who keeps the index, and so all.
    const TestFolder more;
    const QByteArray second = bytes(more.file(QStringLiteral("live 2")));
    EXPECT_EQ(run({"index", "add", bytes(more.path())}).status, 0);
    EXPECT_TRUE(keeper.waitForLine("+ " + second));
    EXPECT_TRUE(follower.waitForLine("+ " + second));
    EXPECT_EQ(run({"query", "--count", "kMDItemFSName == \"live*\""}).out, "2\n");
    // Who follows goes on alone.
    keeper.send(SIGKILL);
    keeper.wait();
    EXPECT_EQ(run({"index", "remove", bytes(more.path())}).status, 0);
    EXPECT_TRUE(follower.waitForLine("- " + second));
    EXPECT_TRUE(follower.waitForLine("+ " + bytes(folder.file(QStringLiteral("live 3")))));
    EXPECT_EQ(run({"index", "verify"}).status, 0);
    follower.interrupt();
    EXPECT_EQ(follower.wait(), 0) << follower.err.constData();
}

TEST_F(MurnctlIndex, EndsWithItsOwnStatusWhenInterrupted)
{
    Murnctl keeper({"query", "--live", "kMDItemFSName == letter.txt"}, folder.path());
    ASSERT_TRUE(keeper.waitForLine("+ " + bytes(letter)));
    keeper.send(SIGSTOP); // so that nobody answers
    for (const QByteArrayList &words :
         {QByteArrayList{"index", "sync"}, {"index", "verify"}, {"find"}, {"query", "true"}}) {
        Murnctl waiting(words, folder.path());
        waiting.interrupt();
        const int status = waiting.wait(); // or ended by the signal before it could heed it
        EXPECT_TRUE(status == 130 || status == -SIGINT) << words.join(' ').constData();
        EXPECT_EQ(waiting.out, "");
    }
    keeper.send(SIGCONT);
    EXPECT_EQ(run({"index", "sync"}).status, 0);
}

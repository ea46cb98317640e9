#include "Murnctl.h"

#include "Karvex.h"
#include "TestHome.h"
#include "XPPath.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <algorithm>
#include <csignal>
#include <gtest/gtest.h>

class MurnctlFind : public testing::Test
{
protected:
    MurnctlFind()
    {
        EXPECT_FALSE(Karvex::addUserTags({QStringLiteral("Work"), QStringLiteral("Tax")}, plain));
        EXPECT_FALSE(Karvex::addUserTags({QStringLiteral("work")}, odd));
        EXPECT_FALSE(Karvex::setRating(4, plain));
        EXPECT_EQ(murnctl({"index", "add", "."}, folder.path()).status, 0);
    }
    ~MurnctlFind() override { murnctl({"index", "remove", "."}, folder.path()); }
    QByteArray bytes(const QString &path) const { return XPPath::encode(path); }
    MurnctlResult find(const QByteArrayList &words)
    {
        return murnctl(QByteArrayList{"find", "--in", "."} + words, folder.path());
    }
    QByteArrayList sorted(QByteArrayList list) const
    {
        std::sort(list.begin(), list.end());
        return list;
    }

    const TestFolder folder;
    const QString plain = folder.file(QStringLiteral("Invoice 2024.pdf"));
    const QString odd = folder.file(XPPath::decode("sub/odd\xff"));
    const QString other = folder.file(QStringLiteral("sub/other.txt"));
};

TEST_F(MurnctlFind, PrintsWhatFulfilsAllCriteria)
{
    const QByteArrayList all = sorted({bytes(plain), bytes(odd), bytes(other)});
    EXPECT_EQ(find({}).lines(), all);
    EXPECT_EQ(find({"--tag", "WORK"}).lines(), sorted({bytes(plain), bytes(odd)}));
    EXPECT_EQ(find({"--tag", "WORK", "--not-tag=tax"}).lines(), QByteArrayList{bytes(odd)});
    EXPECT_EQ(find({"--rating", ">=4"}).lines(), QByteArrayList{bytes(plain)});
    EXPECT_EQ(find({"inv", "tax"}).out, "");
    EXPECT_EQ(find({"inv", "tax", "--metadata"}).lines(), QByteArrayList{bytes(plain)});
    EXPECT_EQ(find({"--rating", "unrated"}).lines(), sorted({bytes(odd), bytes(other)}));
    EXPECT_EQ(find({"--not-in", "sub"}).lines(), QByteArrayList{bytes(plain)});
    EXPECT_EQ(find({"--type", "com.adobe.pdf"}).lines(), QByteArrayList{bytes(plain)});
    EXPECT_EQ(find({"--untagged"}).lines(), QByteArrayList{bytes(other)});
    EXPECT_EQ(murnctl({"find", "--list-folder", "."}, folder.path()).lines(),
              sorted({bytes(plain), bytes(folder.path(QStringLiteral("sub")))}));
    EXPECT_EQ(murnctl({"find", "--list-folder", ".", "--deep"}, folder.path()).lines(), all);
    EXPECT_EQ(find({"--", "-odd"}).lines(), sorted({bytes(plain), bytes(other)}));
    EXPECT_EQ(find({"--count"}).out, "3\n");
    EXPECT_EQ(find({"--limit", "2"}).lines().size(), 2);
    EXPECT_EQ(find({"--tag", "tax", "--print0"}).out, bytes(plain) + '\0');
}

TEST_F(MurnctlFind, PrintsInOrderAndInGroups)
{
    const auto lines = [this](const QByteArrayList &words) { return find(words).out; };
    const QByteArray first = bytes(plain) + '\n';
    const QByteArray raw = bytes(odd) + '\n';
    const QByteArray text = bytes(other) + '\n';
    EXPECT_EQ(lines({"--sort", "name"}), first + raw + text);
    EXPECT_EQ(lines({"--sort", "-name"}), text + raw + first);
    EXPECT_EQ(lines({"--sort", "-name", "--limit", "1"}), text);
    EXPECT_EQ(lines({"--sort", "rating,-name"}), text + raw + first);
    EXPECT_EQ(lines({"--group", "-rating"}), "Four stars\n" + first + "\nNot rated\n" + raw + text);
    EXPECT_EQ(
        murnctl({"find", "--list-folder", ".", "--deep", "--sort", "-name"}, folder.path()).out,
        text + raw + first);
    const QJsonArray grouped = find({"--group=folder", "--json"}).json().array();
    ASSERT_EQ(grouped.size(), 3);
    EXPECT_EQ(grouped[0][QLatin1String("group")].toString(), folder.path());
    EXPECT_EQ(grouped[2][QLatin1String("rating")].toDouble(), 0);
    EXPECT_EQ(find({"--sort", "name", "nothing"}).out, "");
    EXPECT_EQ(find({"--sort", "name", "--json", "nothing"}).out, "[]\n");
}

TEST_F(MurnctlFind, PrintsJsonThatIsValid)
{
    const QJsonArray one = find({"--json", "--tag", "tax"}).json().array();
    ASSERT_EQ(one.size(), 1);
    EXPECT_EQ(one[0][QLatin1String("path")].toString(), plain);
    EXPECT_EQ(one[0][QLatin1String("rating")].toDouble(), 4);
    EXPECT_EQ(one[0][QLatin1String("tags")].toArray().size(), 2);
    EXPECT_EQ(find({"--json"}).json().array().size(), 3);
    EXPECT_EQ(find({"--json", "--limit", "2"}).json().array().size(), 2);
    EXPECT_EQ(find({"--json", "nothing"}).out, "[]\n");
}

TEST_F(MurnctlFind, LooksWhereverIsIndexedWithoutAFolder)
{
    const QString atHome =
        XPPath::absolute(qEnvironmentVariable("HOME") + QStringLiteral("/in home"));
    QFile file(atHome);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    const QString here = folder.file(QStringLiteral("in the folder"));
    const MurnctlResult result = murnctl({"find", "in", "name:o"}, folder.path());
    EXPECT_EQ(result.lines(), sorted({bytes(atHome), bytes(plain), bytes(here)}));
    file.remove();
}

TEST_F(MurnctlFind, NamesMissingFoldersAndSearchesTheOthers)
{
    const MurnctlResult result = find({"--in", "missing", "--tag", "tax"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.lines(), QByteArrayList{bytes(plain)});
    EXPECT_EQ(result.err, "murnctl: " + bytes(folder.path(QStringLiteral("missing"))) +
                              ": No such file or directory\n");
    EXPECT_EQ(murnctl({"find", "--in", "Invoice 2024.pdf"}, folder.path()).status, 1);
    const TestFolder elsewhere;
    const MurnctlResult outside = find({"--in", XPPath::encode(elsewhere.path())});
    EXPECT_EQ(outside.status, 1);
    EXPECT_EQ(outside.lines().size(), 3);
    EXPECT_TRUE(outside.err.contains(" is not indexed."));
}

TEST_F(MurnctlFind, FollowsChangesUntilInterrupted)
{
    Murnctl live({"find", "--live", "--in", ".", "--tag", "tax"}, folder.path());
    ASSERT_TRUE(live.waitForLine("+ " + bytes(plain)));
    ASSERT_FALSE(Karvex::addUserTags({QStringLiteral("Tax")}, other));
    EXPECT_TRUE(live.waitForLine("+ " + bytes(other)));
    ASSERT_FALSE(Karvex::setRating(1, other));
    EXPECT_TRUE(live.waitForLine("~ " + bytes(other)));
    const QString renamed = folder.path(QStringLiteral("renamed"));
    ASSERT_TRUE(QFile::rename(other, renamed));
    EXPECT_TRUE(live.waitForLine("- " + bytes(other)));
    EXPECT_TRUE(live.waitForLine("+ " + bytes(renamed)));
    ASSERT_FALSE(Karvex::clearUserTags({QStringLiteral("TAX")}, plain));
    EXPECT_TRUE(live.waitForLine("- " + bytes(plain)));
    live.interrupt();
    EXPECT_EQ(live.wait(), 0) << live.err.constData();
}

// Where no index looks, too.
TEST_F(MurnctlFind, ListsFoldersAndFilesFromTheDisk)
{
    const TestFolder elsewhere;
    const QString tagged = elsewhere.file(QStringLiteral("deep/tagged"));
    elsewhere.file(QStringLiteral("plain"));
    ASSERT_FALSE(Karvex::setUserTags(QStringList{QStringLiteral("work")}, tagged));
    const QByteArray where = XPPath::encode(elsewhere.path());
    const QByteArrayList deep = {"find", "--list-folder", where, "--deep", "--tag", "WORK"};
    EXPECT_EQ(murnctl(deep, folder.path()).lines(), QByteArrayList{bytes(tagged)});
    const QJsonArray one = murnctl(deep + QByteArrayList{"--json"}, folder.path()).json().array();
    ASSERT_EQ(one.size(), 1);
    EXPECT_EQ(one[0][QLatin1String("tags")].toArray().size(), 1);
    Murnctl live(deep + QByteArrayList{"--live"}, folder.path());
    ASSERT_TRUE(live.waitForLine("+ " + bytes(tagged)));
    const QString later = elsewhere.file(QStringLiteral("new/later"));
    ASSERT_FALSE(Karvex::setUserTags(QStringList{QStringLiteral("work")}, later));
    EXPECT_TRUE(live.waitForLine("+ " + bytes(later)));
    ASSERT_TRUE(QFile::remove(tagged));
    EXPECT_TRUE(live.waitForLine("- " + bytes(tagged)));
    live.interrupt();
    EXPECT_EQ(live.wait(), 0) << live.err.constData();
}

TEST_F(MurnctlFind, EndsQuietlyWhenNobodyReads)
{
    for (int i = 0; i < 1500; ++i)
        folder.file(QStringLiteral("many/") + QString(100, u'x') + QString::number(i));
    Murnctl run({"find", "--in", "."}, folder.path());
    run.stopReading();
    EXPECT_EQ(run.wait(), -SIGPIPE);
    EXPECT_EQ(run.err, "");
}

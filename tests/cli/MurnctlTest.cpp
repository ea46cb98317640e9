#include "Murnctl.h"

#include "Karvex.h"
#include "TestHome.h"
#include "UserDefaults.h"
#include "XPExtendedAttributes.h"
#include "XPFileInfo.h"
#include "XPPath.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QProcess>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

class MurnctlFiles : public testing::Test
{
protected:
    MurnctlResult run(const QByteArrayList &words) { return murnctl(words, folder.path()); }
    QStringList tagsOf(const QString &name)
    {
        return Karvex::getUserTags(folder.path(name)).valueOr({QStringLiteral("unreadable")});
    }
    QString damagedFile()
    {
        QString path = folder.file(QStringLiteral("damaged"));
        const QString name = Karvex::spotlightKey(Karvex::userTagsKey);
        EXPECT_FALSE(XPExtendedAttributes::write(path, name, "bplist00garbage"));
        return path;
    }

    const TestFolder folder;
    const QString a = folder.file(QStringLiteral("a"));
    const QString b = folder.file(QStringLiteral("b"));
};

TEST_F(MurnctlFiles, AnswersWrongUsageWithTwoAndChangesNothing)
{
    const QByteArrayList wrong[] = {{},
                                    {"nosuch"},
                                    {"tags"},
                                    {"tags", "--json", "--print0", "a"},
                                    {"tags", "--recent", "a"},
                                    {"tag", "a"},
                                    {"comment"},
                                    {"comment", "--json", "--write", "x", "a"},
                                    {"tag", "--add", "x"},
                                    {"tag", "--add"},
                                    {"tag", "--add", "  ", "a"},
                                    {"tag", "--add", "\xff", "a"},
                                    {"tag", "--clear=x", "a"},
                                    {"tag", "--set", "x", "--add", "y", "a"},
                                    {"tag", "--set", "x", "--clear", "a"},
                                    {"tag", "--bogus", "a"},
                                    {"tag", "--add", " , ,", "a"},
                                    {"tag", "--add", "x", "--force", "a"},
                                    {"rate", "a"},
                                    {"rate", "5.1", "a"},
                                    {"rate", "-1", "a"},
                                    {"rate", "nan", "a"},
                                    {"rate", "1e0", "a"},
                                    {"rate", "", "a"},
                                    {"info"},
                                    {"info", "--tree", "a"},
                                    {"types"},
                                    {"types", "--extension", "pdf", "a"},
                                    {"types", "--extension", ""},
                                    {"types", "--groups", "a"},
                                    {"types", "--groups", "--tree"},
                                    {"find", "--rating", ">"},
                                    {"find", "--rating", "=>3"},
                                    {"find", "--limit", "0"},
                                    {"find", "--limit", "x"},
                                    {"find", "--in", ""},
                                    {"find", "--live", "--json"},
                                    {"find", "--live", "--count"},
                                    {"find", "--sort", "colour"},
                                    {"find", "--sort", "name,-name"},
                                    {"find", "--group", ""},
                                    {"find", "--sort", "name", "--live"},
                                    {"find", "--group", "type", "--print0"},
                                    {"find", "--print0", "--json"}};
    for (const QByteArrayList &words : wrong) {
        const MurnctlResult result = run(words);
        EXPECT_EQ(result.status, 2) << words.join(' ').constData();
        EXPECT_TRUE(result.err.startsWith("murnctl: ")) << result.err.constData();
        EXPECT_TRUE(result.out.isEmpty());
    }
    EXPECT_TRUE(tagsOf(QStringLiteral("a")).isEmpty());
}

TEST_F(MurnctlFiles, ExplainsEveryOptionItTakes)
{
    EXPECT_TRUE(run({"--version"}).out.startsWith("murnctl "));
    EXPECT_TRUE(run({"--help"}).out.contains("find"));
    const QByteArray help = run({"find", "--rating", "--help", "--help"}).out;
    for (const char *option : {"--tag", "--not-tag", "--rating", "--in", "--count", "--limit",
                               "--live", "--json", "--print0", "--sort", "--group"})
        EXPECT_TRUE(help.contains(option)) << option;
}

TEST_F(MurnctlFiles, ChangesTagsOfManyFilesAndGoesOnAfterAFailure)
{
    const MurnctlResult added =
        run({"tag", "--add", " Work ", "a", "--add=Café", "missing", "--", "b"});
    EXPECT_EQ(added.status, 1);
    EXPECT_EQ(added.err, "murnctl: missing: No such file or directory\n");
    const QStringList both = {QStringLiteral("Work"), QStringLiteral("Cafe\u0301")};
    EXPECT_EQ(tagsOf(QStringLiteral("a")), both);
    EXPECT_EQ(tagsOf(QStringLiteral("b")), both);
    EXPECT_EQ(run({"tag", "--remove", "WORK", "--add", "New", "a"}).status, 0);
    EXPECT_EQ(run({"tags", "a"}).out, "Cafe\u0301\nNew\n");
    EXPECT_EQ(run({"tag", "--set", "one", "--set", "ONE", "--set", "two", "a"}).status, 0);
    EXPECT_EQ(run({"tags", "a", "b"}).out, "a\tone\ttwo\nb\tWork\tCafe\u0301\n");
    EXPECT_EQ(run({"tag", "--clear", "b"}).status, 0);
    EXPECT_EQ(run({"tags", "--print0", "a", "b"}).out, QByteArray("a\0one\0a\0two\0", 12));
    EXPECT_EQ(run({"tags", "--recent"}).out.split('\n').mid(0, 3),
              QByteArrayList({"one", "two", "New"}));
}

TEST_F(MurnctlFiles, LeavesUnreadableTagsAndRatingsAsTheyAre)
{
    const QString path = damagedFile();
    const QString name = Karvex::spotlightKey(Karvex::userTagsKey);
    for (const QByteArrayList &change :
         {QByteArrayList{"tag", "--add", "x"}, {"tag", "--set", "x"}, {"tag", "--clear"}}) {
        const MurnctlResult result = run(change + QByteArrayList{"damaged", "a"});
        EXPECT_EQ(result.status, 1);
        EXPECT_TRUE(result.err.startsWith("murnctl: damaged: tags cannot be read: "));
        EXPECT_EQ(result.err.count('\n'), 1);
        EXPECT_EQ(**XPExtendedAttributes::read(path, name), "bplist00garbage");
    }
    EXPECT_EQ(run({"tags", "damaged"}).status, 1);
    const QString rating = Karvex::spotlightKey(Karvex::starRatingKey);
    EXPECT_FALSE(XPExtendedAttributes::write(path, rating, "bplist00garbage"));
    EXPECT_EQ(run({"rate", "3", "damaged"}).status, 1);
    EXPECT_EQ(**XPExtendedAttributes::read(path, rating), "bplist00garbage");
}

TEST_F(MurnctlFiles, WritesOverUnreadableTagsWhenToldToAndPrintsThem)
{
    const QString path = damagedFile();
    const QString name = Karvex::spotlightKey(Karvex::userTagsKey);
    const MurnctlResult forced = run({"tag", "--set", "x", "--force", "damaged", "a", "missing"});
    EXPECT_EQ(forced.status, 1) << "there is no such file as the last one";
    EXPECT_EQ(forced.out, "damaged\tuser.com.apple.metadata:kMDItemKXUserTags=0x" +
                              QByteArray("bplist00garbage").toHex() + '\n');
    EXPECT_EQ(tagsOf(QStringLiteral("damaged")), QStringList(QStringLiteral("x")));
    EXPECT_EQ(tagsOf(QStringLiteral("a")), QStringList(QStringLiteral("x")));
    EXPECT_FALSE(XPExtendedAttributes::write(path, name, QByteArray(3000, 'x')));
    QProcess unheard;
    unheard.setStandardOutputFile(QStringLiteral("/dev/full"));
    unheard.start(QStringLiteral(MURNCTL), {QStringLiteral("tag"), QStringLiteral("--clear"),
                                            QStringLiteral("--force"), path});
    EXPECT_TRUE(unheard.waitForFinished());
    EXPECT_EQ(unheard.exitCode(), 1);
    EXPECT_EQ(**XPExtendedAttributes::read(path, name), QByteArray(3000, 'x'))
        << "nobody could read what would have been lost";
    const MurnctlResult cleared = run({"tag", "--clear", "--force", "damaged"});
    EXPECT_EQ(cleared.status, 0) << cleared.err.constData();
    EXPECT_TRUE(cleared.out.contains(QByteArray(3000, 'x').toHex()));
    EXPECT_TRUE(tagsOf(QStringLiteral("damaged")).isEmpty());
}

TEST_F(MurnctlFiles, CutsTagsWhereTheWindowDoes)
{
    EXPECT_EQ(run({"tag", "--add", "one, two,,\tthree ", "a"}).status, 0);
    EXPECT_EQ(tagsOf(QStringLiteral("a")),
              QStringList({QStringLiteral("one"), QStringLiteral("two"), QStringLiteral("three")}));
    EXPECT_EQ(run({"tag", "--set", "one,two", "b"}).status, 0);
    EXPECT_EQ(run({"tag", "--remove", "TWO,one", "a"}).status, 0);
    EXPECT_EQ(tagsOf(QStringLiteral("a")), QStringList(QStringLiteral("three")));
    // As another program may have set it.
    const QStringList whole = {QStringLiteral("one,two"), QStringLiteral("one")};
    EXPECT_FALSE(Karvex::setUserTags(whole, b));
    EXPECT_EQ(run({"tag", "--remove", "One,Two", "b"}).status, 0);
    EXPECT_EQ(tagsOf(QStringLiteral("b")), QStringList(QStringLiteral("one")));
}

TEST_F(MurnctlFiles, CountsAnEditAsAChangeOfTheFileWhereTheSettingSaysSo)
{
    UserDefaults &defaults = UserDefaults::standard();
    const QString key = QStringLiteral("KPSetModifiyTimeOnTagsChanging");
    const timespec old[2] = {{1'000'000, 0}, {1'000'000, 0}};
    const QByteArray path = XPPath::encode(a);
    const auto isTouchedBy = [&](const QByteArrayList &words) {
        EXPECT_EQ(::utimensat(AT_FDCWD, path.constData(), old, 0), 0);
        EXPECT_EQ(run(words).status, 0);
        return XPFileInfo::read(a)->modified / 1'000'000'000 != 1'000'000;
    };
    EXPECT_FALSE(isTouchedBy({"tag", "--add", "x", "a"}));
    defaults.setValue(key, PropertyValue::boolean(true));
    EXPECT_FALSE(defaults.synchronise());
    EXPECT_TRUE(isTouchedBy({"tag", "--add", "y", "a"}));
    EXPECT_FALSE(isTouchedBy({"tag", "--add", "y", "a"})) << "nothing changed";
    EXPECT_TRUE(isTouchedBy({"tag", "--remove", "x", "a"}));
    EXPECT_TRUE(isTouchedBy({"tag", "--clear", "a"}));
    EXPECT_TRUE(isTouchedBy({"rate", "3", "a"}));
    defaults.remove(key);
    EXPECT_FALSE(defaults.synchronise());
}

TEST_F(MurnctlFiles, TakesNamesAsBytes)
{
    const QByteArray raw = "raw\xff\xc3(\n\"\\";
    folder.file(XPPath::decode(raw));
    folder.file(QStringLiteral("-dash"));
    EXPECT_EQ(run({"tag", "--add", "Odd", "--", raw, "-dash"}).status, 0);
    EXPECT_EQ(run({"tags", raw, "a"}).out, raw + "\tOdd\na\n");
    const MurnctlResult json = run({"tags", "--json", raw, raw, "a"});
    ASSERT_TRUE(json.json().isObject()) << json.out.constData();
    EXPECT_EQ(json.json().object().size(), 2);
    EXPECT_TRUE(json.out.contains("\"raw\\udcff\\udcc3(\\u000a\\\"\\\\\": [\"Odd\"]"));
    const MurnctlResult missing = run({"tags", "no\nsuch\xff"});
    EXPECT_EQ(missing.err, "murnctl: $'no\\nsuch\\xff': No such file or directory\n");
}

TEST_F(MurnctlFiles, RatesInSteps)
{
    EXPECT_EQ(run({"rate", "3.5", "a", "b"}).status, 0);
    EXPECT_EQ(*Karvex::getRating(a), 3.5);
    EXPECT_EQ(run({"rate", "0", "a"}).status, 0);
    EXPECT_EQ(*Karvex::getRating(a), 0);
    EXPECT_EQ(*Karvex::getRating(b), 3.5);
}

TEST_F(MurnctlFiles, KeepsTheTagsOfRunsAtTheSameTime)
{
    for (int round = 0; round < 10; ++round) {
        std::vector<std::unique_ptr<Murnctl>> runs;
        for (int i = 0; i < 4; ++i) {
            const QByteArray tag = QByteArray::number(round * 4 + i);
            runs.push_back(
                std::make_unique<Murnctl>(QByteArrayList{"tag", "--add", tag, "a"}, folder.path()));
        }
        for (const auto &each : runs)
            EXPECT_EQ(each->wait(), 0) << each->err.constData();
    }
    EXPECT_EQ(tagsOf(QStringLiteral("a")).size(), 40);
    EXPECT_GE(run({"tags", "--recent"}).lines().size(), 40);
}

TEST_F(MurnctlFiles, FailsWhenItsOutputCannotBeWritten)
{
    ASSERT_EQ(run({"tag", "--add", "x", "a"}).status, 0);
    const QString command = QStringLiteral(MURNCTL " tags a > /dev/full");
    QProcess shell;
    shell.setWorkingDirectory(folder.path());
    shell.start(QStringLiteral("sh"), {QStringLiteral("-c"), command});
    ASSERT_TRUE(shell.waitForFinished());
    EXPECT_EQ(shell.exitCode(), 1);
    EXPECT_EQ(shell.readAllStandardError(), "murnctl: standard output: No space left on device\n");
}

TEST_F(MurnctlFiles, CompletesCommandsOptionsAndRecentTags)
{
    ASSERT_EQ(run({"tag", "--add", "Tax return", "a"}).status, 0);
    const auto complete = [this](const QByteArray &words) {
        QProcess shell;
        shell.setWorkingDirectory(folder.path());
        shell.start(QStringLiteral("bash"),
                    {QStringLiteral("-c"),
                     QStringLiteral(". '" MURNCTL_COMPLETION "'; compopt() { :; }; "
                                    "COMP_WORDS=(") +
                         QString::fromUtf8(words) +
                         QStringLiteral("); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _murnctl; "
                                        "printf '%s\\n' \"${COMPREPLY[@]}\"")});
        EXPECT_TRUE(shell.waitForFinished());
        EXPECT_EQ(shell.readAllStandardError(), "");
        return shell.readAllStandardOutput();
    };
    EXPECT_EQ(complete("murnctl ta"), "tags\ntag\ntag-rename\ntag-delete\n");
    EXPECT_EQ(complete("murnctl find --not-ta"), "--not-tag\n");
    EXPECT_EQ(complete("murnctl index re"), "rebuild\nresume\nremove\n");
    EXPECT_EQ(complete("'" MURNCTL "' index remove /"), run({"index", "roots"}).out);
    EXPECT_EQ(complete("'" MURNCTL "' tag --add Tax"), "Tax\\ return\n");
    EXPECT_EQ(complete("murnctl tags a"), "a\n");
}

TEST_F(MurnctlFiles, TellsTheTypesOfFilesAndExtensions)
{
    (void)folder.file(QStringLiteral("x.pdf"));
    (void)folder.file(QStringLiteral("odd\n.PNG"));
    EXPECT_EQ(run({"types", "x.pdf"}).out, "com.adobe.pdf\tPDF document\n");
    EXPECT_EQ(run({"types", "x.pdf", "."}).out,
              "x.pdf\tcom.adobe.pdf\tPDF document\n.\tpublic.folder\tFolder\n");
    EXPECT_TRUE(
        run({"types", "--tree", "--extension", ".png"}).out.contains("  is public.image\t"));
    EXPECT_TRUE(run({"types", "--all", "--extension", "ts"}).out.contains("  or "));

    EXPECT_TRUE(run({"types", "--groups"}).out.startsWith("on\tPDF\tcom.adobe.pdf\n"));
    EXPECT_FALSE(run({"types", "--groups", "--json"}).json().array().isEmpty());

    const MurnctlResult result = run({"types", "--json", "--all", "x.pdf", "gone", "odd\n.PNG"});
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(result.err.startsWith("murnctl: gone: "));
    const QJsonArray answers = result.json().array();
    ASSERT_EQ(answers.size(), 2);
    EXPECT_EQ(answers[1][QStringLiteral("type")].toString(), QStringLiteral("public.png"));
    EXPECT_TRUE(
        answers[1][QStringLiteral("typeTree")].toArray().contains(QStringLiteral("public.item")));
}

TEST_F(MurnctlFiles, ShowsTheRecordsOfFiles)
{
    const QString path = folder.file(QStringLiteral("scan.pdf"), "12345");
    ASSERT_FALSE(Karvex::setUserTags(
        PropertyValue(QStringList{QStringLiteral("Tax"), QStringLiteral("2024")}), path));
    ASSERT_FALSE(Karvex::setRating(2.5, path));
    ASSERT_FALSE(Karvex::setXAttrMetaData(PropertyValue::boolean(true), Karvex::managedKey, path));
    ASSERT_FALSE(Karvex::setXAttrMetaData(PropertyValue(QStringList{QStringLiteral("rent")}),
                                          QStringLiteral("kMDItemKeywords"), path));
    ASSERT_EQ(::symlink("scan.pdf", folder.path(QStringLiteral("link")).toUtf8().constData()), 0);
    (void)damagedFile();
    const MurnctlResult result =
        run({"info", "--json", "scan.pdf", "gone", "link", "damaged", "./scan.pdf", "."});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err.count('\n'), 2) << result.err.constData();
    const QJsonArray answers = result.json().array();
    ASSERT_EQ(answers.size(), 5);
    const QJsonObject scan = answers[0].toObject();
    const auto expect = [&](const char *key, const QJsonValue &value) {
        EXPECT_EQ(scan[QLatin1String(key)], value) << key;
    };
    expect("path", path);
    expect("name", QStringLiteral("scan.pdf"));
    expect("type", QStringLiteral("com.adobe.pdf"));
    expect("size", 5);
    expect("sizeGroup", QStringLiteral("KPGroupNameLessThan10k"));
    expect("tags", QJsonArray{QStringLiteral("Tax"), QStringLiteral("2024")});
    expect("rating", 2.5);
    expect("stars", 3);
    expect("managed", true);
    expect("keywords", QJsonArray{QStringLiteral("rent")});
    EXPECT_TRUE(scan[QStringLiteral("modified")].toString().endsWith(u'Z'));
    EXPECT_FALSE(scan[QStringLiteral("parentFolderForDisplay")].toString().isEmpty());
    EXPECT_EQ(answers[1][QStringLiteral("type")], QStringLiteral("com.apple.alias-file"));
    EXPECT_TRUE(answers[2][QStringLiteral("tags")].isNull()) << "not read is not none";
    EXPECT_EQ(answers[3].toObject(), scan);
    EXPECT_EQ(answers[4][QStringLiteral("sizeGroup")], QStringLiteral("KPGroupNameFolder"));

    const QByteArray text = run({"info", "scan.pdf", "a"}).out;
    EXPECT_TRUE(text.contains("\nType:     com.adobe.pdf (PDF document)\nSize:     5 bytes\n"));
    EXPECT_TRUE(text.contains("\nTags:     Tax, 2024\nRating:   2.5\nKeywords: rent\n"));
    EXPECT_TRUE(text.contains("\n\nPath:     ")) << "between two files";
}

TEST_F(MurnctlFiles, ShowsAndWritesComments)
{
    EXPECT_EQ(run({"comment", "--write", "two\nlines", "a", "b"}).status, 0);
    EXPECT_EQ(run({"comment", "a"}).out, "two\nlines\n");
    EXPECT_EQ(run({"comment", "--print0", "a", "b"}).out,
              QByteArray("a\0two\nlines\0b\0two\nlines\0", 24));
    EXPECT_EQ(run({"comment", "--write", "", "b"}).status, 0);
    EXPECT_EQ(run({"comment", "--json", "a", "b"}).out,
              "{\n  \"a\": \"two\\u000alines\",\n  \"b\": \"\"\n}\n");
    // What cannot be read stays.
    const QString name = Karvex::spotlightKey(Karvex::commentKey);
    ASSERT_FALSE(XPExtendedAttributes::write(b, name, "bplist00garbage"));
    EXPECT_EQ(run({"comment", "--write", "new", "b"}).status, 1);
    EXPECT_EQ(XPExtendedAttributes::read(b, name).valueOr({}), QByteArray("bplist00garbage"));
}

#include "KPCommandLine.h"

#include "TestHome.h"
#include "XPPath.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

TEST(CommandLine, TakesFoldersByTheirBytes)
{
    const TestFolder folder;
    const QString odd = folder.path(XPPath::decode(QByteArrayView("b\xff")));
    ASSERT_EQ(mkdir(XPPath::encode(odd).constData(), 0700), 0);
    const auto line = KPCommandLine::parse(
        {"murn", "--folder", XPPath::encode(folder.path()), "--folder=" + XPPath::encode(odd)});
    ASSERT_TRUE(line) << line.error().message.toStdString();
    EXPECT_EQ(line->folders, (QStringList{folder.path(), odd}));
}

TEST(CommandLine, TakesFilesAndAddressesInTheirOrder)
{
    const TestFolder folder;
    const QString odd = folder.file(QStringLiteral("-dash"));
    const auto line = KPCommandLine::parse(
        {"murn", "MURN://tags/a b", "file:///no/such", "--", XPPath::encode(odd)});
    ASSERT_TRUE(line) << line.error().message.toStdString();
    EXPECT_EQ(line->urls,
              (QStringList{QStringLiteral("MURN://tags/a b"), QStringLiteral("file:///no/such"),
                           QStringLiteral("file://") + odd}));
    EXPECT_FALSE(line->searchText);

    EXPECT_EQ(KPCommandLine::parse({"murn", "--search=-x"})->searchText, QStringLiteral("-x"));
    EXPECT_EQ(KPCommandLine::parse({"murn", "--search-selection"})->searchText, QString());
}

TEST(CommandLine, RefusesWhatItCannotDo)
{
    const TestFolder folder;
    const QByteArray file = XPPath::encode(folder.file(QStringLiteral("file\n")));
    const struct
    {
        QByteArrayList arguments;
        const char *said = "";
    } cases[] = {
        {{"--folder", file}, "file\\n"},      {{"--folder", "/no/such\x1b[31m"}, "/no/such\\"},
        {{"--folder", ""}, "folder"},         {{"--folder"}, "folder"},
        {{"--unknown"}, "unknown"},           {{"/no/such"}, "/no/such"},
        {{"--color-scheme", "pink"}, "pink"},
    };
    for (const auto &each : cases) {
        const auto line = KPCommandLine::parse(QByteArrayList{"murn"} + each.arguments);
        ASSERT_FALSE(line) << each.said;
        EXPECT_TRUE(line.error().message.contains(QLatin1String(each.said)))
            << line.error().message.toStdString();
        EXPECT_FALSE(line.error().message.contains(u'\x1b'));
    }
}

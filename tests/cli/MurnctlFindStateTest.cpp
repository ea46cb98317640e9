// murnctl find: the search state that options and files make.
#include "Murnctl.h"

#include "TestHome.h"
#include "XPPath.h"
#include "XPPropertyList.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <gtest/gtest.h>

using Value = PropertyValue;

static QString key(const char *name)
{
    return QStringLiteral("SaveStateKey_") + QLatin1String(name);
}

namespace {

class MurnctlFindState : public testing::Test
{
protected:
    MurnctlResult find(const QByteArrayList &words) const
    {
        return murnctl(QByteArrayList{"find"} + words, folder.path());
    }
    // The state that is printed, with "." for the folder and without the keys' beginnings.
    QByteArray printed(const QByteArrayList &words) const
    {
        const MurnctlResult result = find(QByteArrayList{"--print-state"} + words);
        EXPECT_EQ(result.status, 0) << result.err.constData();
        EXPECT_TRUE(result.json().isObject()) << result.out.constData();
        QByteArray text = result.out.simplified();
        return text.replace("SaveStateKey_", "").replace(folder.path().toUtf8(), ".");
    }
    QByteArray file(const char *name, const QByteArray &bytes) const
    {
        return XPPath::encode(folder.file(QString::fromUtf8(name), bytes));
    }

    const TestFolder folder;
};

} // namespace

TEST_F(MurnctlFindState, IsMadeOfOptions)
{
    folder.file(QStringLiteral("sub/file"));
    const struct
    {
        QByteArrayList words;
        QByteArray state;
    } cases[] = {
        {{}, R"({})"},
        {{"two", "words"},
         R"({ "SearchString_Contents": false, "SearchString_FileNames": true, )"
         R"("SearchString_MetaData": false, "SearchStrings": ["two words"] })"},
        {{"--contents", "--metadata", "word"},
         R"({ "SearchString_Contents": true, "SearchString_FileNames": true, )"
         R"("SearchString_MetaData": true, "SearchStrings": ["word"] })"},
        {{"--contents"}, R"({})"},
        {{"--tag", "b", "--tag", "a", "--not-tag=c"},
         R"({ "ExcludeTags": ["c"], "WithTags": ["a", "b"] })"},
        {{"--type", "com.adobe.pdf", "--not-type", "tree_public.image"},
         R"({ "FileUTIs": ["com.adobe.pdf"], "FileUTIsToExclude": ["tree_public.image"] })"},
        {{"--in", ".", "--in", "sub/..", "--not-in", "sub"},
         R"({ "ConstraintFolders": [".", "."], "ExcludeFolders": ["./sub"] })"},
        {{"--in", "missing"}, R"({ "ConstraintFolders": ["./missing"] })"},
        {{"--date", "KPCrumbTrailLastYear"}, R"({ "DateSearch": "KPCrumbTrailLastYear" })"},
        {{"--date", "LAST7days"}, R"({ "DateSearch": "KPCrumbTrailLast7Days" })"},
        {{"--rating", ">=3"}, R"({ "RatingSearch": ">= 3" })"},
        {{"--rating", " <=  3.50"}, R"({ "RatingSearch": "<= 3.5" })"},
        {{"--rating", "!=*"}, R"({ "RatingSearch": "!= *" })"},
        {{"--rating", "unrated"}, R"({ "RatingSearch": "!= *" })"},
        {{"--tagged", "--managed"},
         R"({ "ShowManagedDocuments": true, "ShowTaggedDocuments": true })"},
        {{"--untagged", "--not-tag", "x"},
         R"({ "DocumentsWithNoTagsOnly": true, "ExcludeTags": ["x"] })"},
        {{"--list-folder", "sub"},
         R"({ "ConstraintFolders": ["./sub"], "FinderListingMode": true })"},
        {{"--list-folder", "sub", "--deep"},
         R"({ "ConstraintFolders": ["./sub"], "FileListGoDeep": true, "FinderListingMode": true })"},
    };
    for (const auto &each : cases)
        EXPECT_EQ(printed(each.words), each.state) << each.words.join(' ').constData();
}

TEST_F(MurnctlFindState, RefusesOptionsThatSayNothing)
{
    const struct
    {
        QByteArrayList words;
        QByteArray says;
    } cases[] = {
        {{"--date", "tomorrow"}, "yearBeforeLastYear"},
        {{"--rating", "4"}, "\">= N\""},
        {{"--rating", "> 3"}, "unrated"},
        {{"--rating", ">= 6"}, "up to 5"},
        {{"--type", ""}, "--type"},
        {{"--not-type", "tree_"}, "--not-type"},
        {{"--tagged", "--untagged"}, "exclude each other"},
        {{"--tag", "a", "--untagged"}, "exclude each other"},
        {{"--in", ".", "--list-folder", "."}, "exclude each other"},
        {{"--explain", "--print-state"}, "exclude each other"},
        {{"--list-folder", ".", "--list-folder", ".."}, "one folder"},
        {{"--deep"}, "--list-folder"},
        {{"--not-in", ""}, "--not-in"},
    };
    for (const auto &each : cases) {
        const MurnctlResult result = find(each.words);
        EXPECT_EQ(result.status, 2) << each.words.join(' ').constData();
        EXPECT_TRUE(result.err.contains(each.says)) << result.err.constData();
        EXPECT_EQ(result.out, "");
    }
}

TEST_F(MurnctlFindState, ExplainsItself)
{
    const QByteArray path = folder.path().toUtf8();
    EXPECT_EQ(find({"--explain", "--in", ".", "--tag", "a"}).out,
              "((((kMDItemKXUserTags == \"a\"cd) || (kMDItemKeywords == \"a\"cd)) || "
              "((kMDItemKXUserTags == \"a/*\"cd) || (kMDItemKeywords == \"a/*\"cd))) && "
              "(kMDItemSupportFileType != MDSystemFile))\n" +
                  path + '\n');
    // Nothing is asked of the index for a folder alone.
    EXPECT_EQ(find({"--explain", "--list-folder", "."}).out, '\n' + path + '\n');
    const QByteArrayList lines = find({"--explain", "--rating", "unrated"}).out.split('\n');
    EXPECT_EQ(lines.value(0),
              "((kMDItemStarRating != *) && (kMDItemSupportFileType != MDSystemFile))");
    EXPECT_GT(lines.size(), 1) << "all that is indexed";
    const QJsonObject json = find({"--explain", "--json", "--in", "."}).json().object();
    EXPECT_EQ(json[QLatin1String("query")].toString(),
              QLatin1String("((kMDItemFSName == *) && (kMDItemSupportFileType != "
                            "MDSystemFile))"));
    EXPECT_EQ(json[QLatin1String("scope")].toArray().size(), 1);
}

TEST_F(MurnctlFindState, IsReadInEachForm)
{
    const QString odd = XPPath::decode("/tmp/odd\xff");
    const Value::Dictionary state = {
        {key("WithTags"), QStringList{QStringLiteral("Tag")}},
        {key("ExcludeFolders"), Value::Array{XPPath::encode(odd), QStringLiteral("/tmp")}},
        {key("FinderListingMode"), Value::boolean(true)},
        {key("DaysBeforeNow_RelativeStart"), Value::integer(7)},
        {QStringLiteral("Other"), Value::Array{Value::integer(-3), Value::real(0.5),
                                               Value(Value::Date{0}), Value(QByteArray("x\xfe"))}}};
    const QByteArray expected =
        R"({ "Other": [-3, 0.5, "2001-01-01T00:00:00.000Z", "x\udcfe"], )"
        R"("DateSearch": "KPCrumbTrailLast7Days", )"
        R"("ExcludeFolders": ["/tmp/odd\udcff", "/tmp"], "FinderListingMode": true, )"
        R"("WithTags": ["Tag"] })";
    const QByteArray binary = file("binary", *XPPropertyList::writeBinary(state));
    const QByteArray xml = file("xml", *XPPropertyList::writeXml(state));
    EXPECT_EQ(printed({"--state", binary}), expected);
    EXPECT_EQ(printed({"--state", xml}), expected);
    // What is printed is read again, and is the same then.
    const QByteArray json = file("json", find({"--print-state", "--state", binary}).out);
    EXPECT_EQ(printed({"--state", json}), expected);
    EXPECT_EQ(printed({"--state", file("marked", "\xEF\xBB\xBF {}")}), "{}");
}

TEST_F(MurnctlFindState, KeepsOfAFileWhatOptionsDoNotTouch)
{
    const QByteArray one = file("one", R"({"SaveStateKey_SearchStrings": ["in file"],
        "SaveStateKey_SearchString_Contents": true, "SaveStateKey_SearchString_MetaData": false,
        "SaveStateKey_SearchString_FileNames": false, "SaveStateKey_RatingSearch": ">= 2",
        "SaveStateKey_SearchReadOnlyKeywords": false, "New": 1})");
    const auto expected = [](const char *text, const char *flags, const char *rating) {
        return QByteArray(R"({ "New": 1, "RatingSearch": ")") + rating +
               R"(", "SearchReadOnlyKeywords": false, )" + flags + R"(, "SearchStrings": [")" +
               text + R"("] })";
    };
    const char *const flags = R"("SearchString_Contents": true, "SearchString_FileNames": false, )"
                              R"("SearchString_MetaData": false)";
    EXPECT_EQ(printed({"--state", one}), expected("in file", flags, ">= 2"));
    EXPECT_EQ(printed({"--state", one, "word"}), expected("word", flags, ">= 2"));
    EXPECT_EQ(printed({"--state", one, "--rating", "<= 1"}), expected("in file", flags, "<= 1"));
    EXPECT_EQ(printed({"--state", one, "--metadata"}),
              expected("in file",
                       R"("SearchString_Contents": true, "SearchString_FileNames": false, )"
                       R"("SearchString_MetaData": true)",
                       ">= 2"));
    EXPECT_EQ(printed({"--state", one, "--names-only"}),
              expected("in file",
                       R"("SearchString_Contents": false, "SearchString_FileNames": true, )"
                       R"("SearchString_MetaData": false)",
                       ">= 2"));
    const QByteArray two = file("two", R"({"SaveStateKey_WithTags": ["A"]})");
    const QByteArray three = file("three", R"({"SaveStateKey_WithTags": ["b", "a"],
        "SaveStateKey_RatingSearch": ">= 4"})");
    EXPECT_EQ(printed({"--state", two, "--state", three, "--not-tag", "c"}),
              R"({ "ExcludeTags": ["c"], "RatingSearch": ">= 4", "WithTags": ["A", "b"] })");
}

TEST_F(MurnctlFindState, SaysWhatIsWrongWithAFile)
{
    QFile large(folder.path(QStringLiteral("large")));
    ASSERT_TRUE(large.open(QIODevice::WriteOnly) && large.resize(qint64{1} << 30));
    const struct
    {
        QByteArray name;
        QByteArray says;
    } cases[] = {
        {"missing", "No such file"},
        {folder.path().toUtf8(), ""},
        {"large", "large"},
        {file("empty", ""), "neither"},
        {file("text", "some text"), "neither"},
        {file("array", "[1]"), "neither"},
        {file("open", R"({"SaveStateKey_WithTags": [)"), "no valid JSON"},
        {file("bytes", "{\"a\": \"\xff\"}"), "no valid JSON"},
        {file("two", "{} {}"), "no valid JSON"},
        {file("plist", "bplist00x"), "search state"},
        {file("xml", "<plist><array/></plist>"), "no dictionary"},
        {file("deep", "{\"a\":" + QByteArray(100'000, '[')), "no valid JSON"},
    };
    for (const auto &each : cases) {
        const MurnctlResult result = find({"--print-state", "--state", each.name});
        EXPECT_EQ(result.status, 1) << each.name.constData();
        EXPECT_TRUE(result.err.startsWith("murnctl: " + each.name + ": ") &&
                    result.err.contains(each.says))
            << result.err.constData();
        EXPECT_EQ(result.out, "");
    }
    // A value of the wrong kind is left out, with a word.
    const QByteArray wrong = file("wrong", R"({"SaveStateKey_WithTags": 5, "Other": {}})");
    EXPECT_EQ(printed({"--state", wrong}), R"({ "Other": {} })");
    EXPECT_TRUE(find({"--print-state", "--state", wrong}).err.contains("SaveStateKey_WithTags"));
}

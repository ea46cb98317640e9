#include "IndexRecents.h"
#include "IndexCatalog.h"
#include "IndexSetup.h"
#include "IndexTestKept.h"
#include "TestHome.h"
#include "XPPath.h"

TEST(IndexRecents, ReadsTheDesktopsList)
{
    const struct
    {
        const char *name;
        const char *bookmark;
        const char *path; // null: none
        double time;
    } rows[] = {
        {"visited",
         R"(<bookmark href="file:///a%20b/%C3%A4.txt" modified="2020-01-01T00:00:00Z" visited="2020-01-01T00:00:10.5Z"/>)",
         "/a b/\xC3\xA4.txt", 1577836810.5},
        {"modified later",
         R"(<bookmark href="file:///x" modified="2020-01-01T00:00:20Z" visited="2020-01-01T00:00:10Z"/>)",
         "/x", 1577836820},
        {"no utf-8", R"(<bookmark href="file:///%FF" visited="2020-01-01T00:00:00Z"/>)", "/\xFF",
         1577836800},
        {"elsewhere", R"(<bookmark href="https://example.org/x" visited="2020-01-01T00:00:00Z"/>)",
         nullptr, 0},
        {"a zero byte", R"(<bookmark href="file:///a%00b" visited="2020-01-01T00:00:00Z"/>)",
         nullptr, 0},
        {"no time", R"(<bookmark href="file:///x" visited="yesterday"/>)", nullptr, 0},
    };
    for (const auto &row : rows) {
        const auto times = IndexRecents::parse(QByteArray("<xbel>") + row.bookmark + "</xbel>");
        ASSERT_TRUE(times) << row.name;
        EXPECT_EQ(times->size(), row.path ? 1 : 0) << row.name;
        if (row.path) {
            EXPECT_EQ(times->value(row.path), row.time) << row.name;
        }
    }
    EXPECT_FALSE(IndexRecents::parse("<xbel><bookmark"));
    EXPECT_FALSE(IndexRecents::parse("<!DOCTYPE xbel [<!ENTITY a \"b\">]><xbel/>"));
}

TEST(IndexRecents, BecomeTheDateOfLastUse)
{
    const TestFolder store;
    const TestFolder tree;
    const QString known = tree.file(QStringLiteral("known.txt"));
    const QString late = tree.path(QStringLiteral("late.txt"));
    IndexSetup setup;
    setup.path = store.path(QStringLiteral("index.sqlite"));
    setup.roots = {tree.path()};
    setup.recents = store.path(QStringLiteral("recently-used.xbel"));
    const auto list = [&](const QStringList &files) {
        QByteArray text = "<xbel>";
        for (const QString &file : files)
            text += "<bookmark href=\"file://" + XPPath::encode(file) +
                    "\" visited=\"2020-01-01T00:00:00Z\"/>";
        (void)store.file(QStringLiteral("recently-used.xbel"), text + "</xbel>");
    };
    auto index = MetadataIndex::open(setup);
    const auto used = [&](const QString &file) {
        const IndexCatalog &catalog = index->source().catalog();
        const IndexCatalog::Reading reading(catalog);
        const IndexSlot slot = catalog.slotOf(catalog.itemAtPath(XPPath::encode(file)));
        return slot != IndexCatalog::noSlot &&
               catalog.attribute(slot, QStringLiteral("kMDItemLastUsedDate"))
                       .date()
                       .secondsSince1970() == 1577836800;
    };
    ASSERT_FALSE(index->sync(false));
    list({known, late});
    EXPECT_TRUE(holdsSoon([&] { return used(known); }));
    (void)tree.file(QStringLiteral("late.txt"));
    EXPECT_TRUE(holdsSoon([&] { return used(late); }));
    list({late});
    EXPECT_TRUE(holdsSoon([&] { return !used(known); }));
    // Emptied while nobody watched.
    index.reset();
    list({});
    index = MetadataIndex::open(setup);
    EXPECT_TRUE(holdsSoon([&] { return index->status()->items > 0 && !used(late); }));
}

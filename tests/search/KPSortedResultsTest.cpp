#include "KPSortedResults.h"

#include "IndexCatalog.h"
#include "IndexSource.h"
#include "IndexText.h"
#include "KPDocCache.h"
#include "KPDocMetaData.h"
#include "XPPath.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QRandomGenerator>
#include <gtest/gtest.h>
#include <sys/stat.h>

using Field = KPSortKey::Field;
using Names = QStringList;

namespace {

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

// Facts of a file that is not there.
struct Facts
{
    qint64 size = 1;
    qint64 modified = 1'700'000'000;
    quint32 mode = S_IFREG | 0644;
};

KPDoc *doc(const QString &path, const Facts &facts = {})
{
    XPFileInfo info;
    info.mode = facts.mode;
    info.size = facts.size;
    info.modified = facts.modified * 1'000'000'000;
    info.birth = info.modified;
    return KPDocCache::docAtPath(KPPool::pooledString(path), &info);
}

KPDoc *named(const char *name, const Facts &facts = {})
{
    return doc(text("/sorted/") + text(name), facts);
}

KPResultsDifference everything(const KPDocArray &docs)
{
    KPResultsDifference difference;
    difference.isReset = true;
    difference.added = docs;
    return difference;
}

KPSortOrder order(const char *keys, const char *group = nullptr)
{
    KPSortOrder order;
    order.keys = *KPSortOrder::keysFromText(text(keys));
    if (group)
        order.group = KPSortKey::fromText(text(group));
    return order;
}

Names namesOf(const KPDocArray &docs)
{
    Names names;
    for (const KPDoc *each : docs)
        names.append(each->fsName());
    return names;
}

Names sorted(const char *keys, const KPDocArray &docs)
{
    return namesOf(*KPSortedResults(order(keys)).apply(everything(docs)).docs);
}

// "KEY:count" of each group.
Names groupsOf(const KPResultsArrangement &arrangement)
{
    Names groups;
    for (const auto &run : arrangement.groups->runs)
        groups.append(run.group->key + u':' + QString::number(run.count));
    return groups;
}

Names grouped(const char *group, const KPDocArray &docs)
{
    return groupsOf(KPSortedResults(order("name", group)).apply(everything(docs)));
}

} // namespace

TEST(SortOrder, IsReadFromText)
{
    EXPECT_EQ(KPSortOrder::keysFromText(text("-Rating, name")),
              (QList<KPSortKey>{{Field::Rating, false}, {Field::Name, true}}));
    for (const char *bad : {"", "nothing", "name,", "name,-name", "--name"})
        EXPECT_EQ(KPSortOrder::keysFromText(text(bad)), std::nullopt) << bad;
    for (const QString &name : KPSortKey::names())
        EXPECT_EQ(KPSortKey::fromText(u'-' + name)->toText(), u'-' + name);
}

TEST(SortedResults, AreSortedAsPeopleRead)
{
    const KPDocArray docs = {named("page 10"), named("Page 9"), named("zebra"),  named("Äpfel"),
                             named("apfel 2"), named("straße"), named("strasse")};
    EXPECT_EQ(sorted("name", docs),
              (Names{text("Äpfel"), text("apfel 2"), text("Page 9"), text("page 10"),
                     text("strasse"), text("straße"), text("zebra")}));
    EXPECT_EQ(sorted("-name", docs).first(), text("zebra"));
    // Names that nothing tells apart to people follow each other by their bytes.
    const KPDocArray alike = {named("B"), named("b"),
                              doc(text("/sorted/") + XPPath::decode("\xff")),
                              doc(text("/sorted/") + XPPath::decode("\xfe"))};
    EXPECT_EQ(sorted("name", alike), sorted("name", {alike[3], alike[1], alike[2], alike[0]}));
}

TEST(SortedResults, TakeSeveralKeys)
{
    const KPDocArray docs = {named("a.txt", {5, 300}), named("b.pdf", {5, 200}),
                             named("c.txt", {7, 100}), named("d.pdf", {7, 400}),
                             doc(text("/other/e.txt"), {0, -100})};
    const std::pair<const char *, const char *> cases[] = {
        {"size,-modified", "e.txt a.txt b.pdf d.pdf c.txt"},
        {"-size,modified", "c.txt d.pdf b.pdf a.txt e.txt"},
        {"size", "e.txt a.txt b.pdf c.txt d.pdf"},
        {"modified", "e.txt c.txt b.pdf a.txt d.pdf"},
        {"-size,-name", "d.pdf c.txt b.pdf a.txt e.txt"},
        {"folder,-name", "e.txt d.pdf c.txt b.pdf a.txt"},
    };
    for (const auto &[keys, names] : cases)
        EXPECT_EQ(sorted(keys, docs).join(u' '), text(names)) << keys;
    const Names byType = sorted("type,-modified", docs);
    EXPECT_TRUE(byType.join(u' ').contains(u"d.pdf b.pdf"));
    EXPECT_TRUE(byType.join(u' ').contains(u"a.txt c.txt e.txt"));
}

TEST(SortedResults, AreGrouped)
{
    const KPDocArray letters = {named("Äpfel"), named("apfel"), named("7 things"), named("_x"),
                                named("zoo"),   named(".dot"),  named("Жук")};
    EXPECT_EQ(grouped("name", letters),
              (Names{text("KPGroupNameDigits:1"), text("A:2"), text("D:1"), text("Z:1"),
                     text("Ж:1"), text("KPGroupNameOtherCharacters:1")}));
    const KPDocArray sizes = {named("s0", {0}),
                              named("s1", {9'999}),
                              named("s2", {10'000}),
                              named("s3", {20'000'000}),
                              named("s4", {1'000'000'000}),
                              named("folder", {4096, 1, S_IFDIR | 0755})};
    EXPECT_EQ(grouped("-size", sizes),
              (Names{text("KPGroupNameMoreThan1GB:1"), text("KPGroupNameLessThan50MB:1"),
                     text("KPGroupNameLessThan100k:1"), text("KPGroupNameLessThan10k:1"),
                     text("KPGroupNameZeroLength:1"), text("KPGroupNameFolder:1")}));
    const auto byFolder =
        KPSortedResults(order("name", "folder"))
            .apply(everything({doc(text("/g/b/1")), doc(text("/g/a/2")), doc(text("/g/b/3"))}));
    EXPECT_EQ(groupsOf(byFolder), (Names{text("/g/a:1"), text("/g/b:2")}));
    EXPECT_EQ(byFolder.docs->back()->cachedGroup(), byFolder.groups->runs.back().group);
    const auto byType =
        KPSortedResults(order("name", "type")).apply(everything({named("x.pdf"), named("y.pdf")}));
    EXPECT_EQ(groupsOf(byType), Names{text("com.adobe.pdf:2")});
    EXPECT_FALSE(byType.groups->runs.front().group->name.isEmpty());
}

// At midnight what was today is yesterday.
TEST(SortedResults, AreGroupedByTheDay)
{
    QDateTime now(QDate(2026, 1, 3), QTime(10, 0));
    const auto at = [](int year, int month, int day) {
        return Facts{1, QDateTime(QDate(year, month, day), QTime(12, 0)).toSecsSinceEpoch()};
    };
    const KPDocArray docs = {named("later", at(2026, 1, 9)),
                             named("today", at(2026, 1, 3)),
                             named("before", at(2026, 1, 2)),
                             named("week", at(2025, 12, 29)),
                             named("month", at(2025, 12, 6)),
                             named("year", at(2025, 3, 1)),
                             named("two", at(2024, 3, 1)),
                             named("old", at(2001, 1, 1)),
                             named("none", {1, 0})};
    KPSortedResults results(order("name", "-modified"), [&] { return now; });
    EXPECT_EQ(groupsOf(results.apply(everything(docs))),
              (Names{text("KPGroupNameLater:1"), text("KPGroupNameToday:1"),
                     text("KPGroupNameYesterday:1"), text("KPGroupNamePast7Days:1"),
                     text("KPGroupNamePast30Days:1"), text("KPGroupNameLastYear:1"),
                     text("KPGroupNameYearBeforeLastYear:1"), text("KPGroupNameOlder:1"),
                     text("KPGroupNameNoDate:1")}));
    now = now.addDays(1);
    EXPECT_EQ(groupsOf(results.apply({})).value(1), text("KPGroupNameYesterday:1"));
}

TEST(SortedResults, KeepUpByDifferences)
{
    QRandomGenerator random(5); // NOLINT: the same edits each time
    const auto facts = [&] { return Facts{random.bounded(5), 1'700'000'000 + random.bounded(3)}; };
    for (const char *group : {"", "name", "-size"}) {
        const KPSortOrder wanted = order("-modified,size", *group == '\0' ? nullptr : group);
        KPSortedResults results(wanted);
        KPDocArray shown;
        for (int i = 0; i < 300; ++i)
            shown.push_back(doc(QStringLiteral("/kept/%1/%2").arg(i % 7).arg(i), facts()));
        int next = 300;
        KPResultsArrangement arranged = results.apply(everything(shown));
        for (int round = 0; round < 200; ++round) {
            KPResultsDifference difference;
            for (int i = random.bounded(4); i > 0; --i) {
                difference.added.push_back(doc(QStringLiteral("/kept/%1").arg(next++), facts()));
                shown.push_back(difference.added.back());
            }
            for (int i = random.bounded(4); i > 0; --i) {
                const auto at = random.bounded(static_cast<int>(shown.size()));
                KPDoc *each = shown[static_cast<size_t>(at)];
                const bool isNew = std::find(difference.added.begin(), difference.added.end(),
                                             each) != difference.added.end();
                const auto told = [&](const auto &other) { return other.doc == each; };
                if (isNew ||
                    std::any_of(difference.changed.begin(), difference.changed.end(), told))
                    continue;
                const KPPooledString path = each->pooledPath();
                if (random.bounded(2) == 0) {
                    difference.removed.push_back({each, path});
                    shown.erase(shown.begin() + at);
                } else {
                    (void)doc(path.toString(), facts());
                    difference.changed.push_back({each, path});
                }
            }
            const KPResultsArrangement before = arranged;
            const size_t count = before.docs->size();
            arranged = results.apply(difference);
            ASSERT_EQ(before.docs->size(), count) << "what was given stays as it is";
            const auto anew = KPSortedResults(wanted).apply(everything(shown));
            ASSERT_EQ(namesOf(*arranged.docs), namesOf(*anew.docs)) << round;
            if (anew.groups) {
                ASSERT_EQ(groupsOf(arranged), groupsOf(anew)) << round;
            }
        }
    }
}

namespace {

class EmptySource : public IndexSource
{
public:
    const IndexCatalog &catalog() const override { return m_catalog; }
    const IndexText *text() const override { return nullptr; }
    int addListener(Listener) override { return 1; }
    void removeListener(int) override {}
    void reimport(const QByteArray &) override {}
    bool waitUntilLoaded(const std::function<bool()> &) const override { return true; }

private:
    IndexCatalog m_catalog;
};

} // namespace

TEST(SortedResults, KnowTags)
{
    xpGuiThread.assertHere();
    EmptySource source;
    KPDoc::startMetaDataSearching(source);
    const auto tag = [](KPDoc *each, const QStringList &tags) {
        const auto value = KPDocMetaData::makeTagNames(PropertyValue(tags));
        const QDeadlineTimer deadline(10'000);
        while (each->tagNamesOfTypeUserEntered().size() != tags.size() && !deadline.hasExpired()) {
            KPDocMetaData::setValue(KPDocMetaData::UserTags, each->pooledPath(), value);
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        }
        return each;
    };
    const KPDocArray docs = {named("none"), tag(named("work"), {text("Work"), text("a")}),
                             tag(named("also"), {text("work"), text("b")}),
                             tag(named("bank"), {text("bank")})};
    EXPECT_EQ(sorted("tags", docs).join(u' '), text("bank work also none"));
    EXPECT_EQ(grouped("tags", docs),
              (Names{text("user:bank:1"), text("user:work:2"), text("KPGroupNameNoTags:1")}));
    KPDoc::stopMetaDataSearching();
}

// Counts that are kept by differences, against what is on the disk in the end.
#include "KPRowCounts.h"

#include "FollowedSearch.h"
#include "IndexedFolder.h"
#include "XPPath.h"

#include <filesystem>
#include <thread>

namespace fs = std::filesystem;

static bool comesTo(const KPRowCounts &counts, const char *row, qsizetype count)
{
    return FollowedSearch::waitFor([&] { return counts.count(QLatin1String(row)) == count; });
}

static fs::path onDisk(const QString &path)
{
    return XPPath::encode(path).toStdString();
}

TEST(RowCounts, FollowWhatComesAndGoesAndBecomesADocument)
{
    IndexedFolder folder;
    const QString path = folder.file(QStringLiteral("a.txt"));
    KPRowCounts counts(folder.index());
    const auto words =
        folder.state()->searchStateWithNewSearchString(QStringLiteral("bill"), false, false, true);
    counts.setRows({{QStringLiteral("all"), folder.state()}, {QStringLiteral("bill"), words}});
    ASSERT_TRUE(comesTo(counts, "all", 1));
    const QString bill = folder.file(QStringLiteral("bill.txt"));
    EXPECT_TRUE(comesTo(counts, "all", 2) && comesTo(counts, "bill", 1));
    // One that is hidden is no document.
    const QString hidden = folder.path(QStringLiteral(".bill.txt"));
    fs::rename(onDisk(bill), onDisk(hidden));
    EXPECT_TRUE(comesTo(counts, "all", 1) && comesTo(counts, "bill", 0));
    fs::rename(onDisk(hidden), onDisk(bill));
    EXPECT_TRUE(comesTo(counts, "all", 2) && comesTo(counts, "bill", 1));
    fs::remove(onDisk(path));
    fs::remove(onDisk(bill));
    EXPECT_TRUE(comesTo(counts, "all", 0) && comesTo(counts, "bill", 0));
}

TEST(RowCounts, MissNothingThatComesWhileTheyBegin)
{
    IndexedFolder folder;
    IndexSource &index = folder.index();
    constexpr int files = 200;
    std::thread maker([&folder] {
        for (int i = 0; i < files; ++i)
            folder.file(QStringLiteral("doc %1.txt").arg(i));
    });
    for (int i = 0; i < 20; ++i) {
        const KPRowCounts counts(index);
        QCoreApplication::processEvents();
    }
    KPRowCounts counts(index);
    KPRowCounts::Rows rows;
    for (const char *word : {"doc", "doc 1", "doc 11", "txt"}) {
        rows.insert(QLatin1String(word), folder.state()->searchStateWithNewSearchString(
                                             QLatin1String(word), false, false, true));
        counts.setRows(rows); // each row begins at another moment
        QCoreApplication::processEvents();
    }
    maker.join();
    EXPECT_TRUE(comesTo(counts, "doc", files));
    EXPECT_TRUE(comesTo(counts, "txt", files));
}

#include "KPBadgeCache.h"

#include "TestHome.h"

#include <QDir>
#include <QFont>
#include <QGuiApplication>
#include <gtest/gtest.h>

static QStringList filesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::Files);
}

TEST(BadgeCache, DrawsEachBadgeOnceAndKeepsIt)
{
    const TestFolder folder;
    const QString writable = folder.path(QStringLiteral("badges"));
    KPBadgeCache cache;
    cache.setFolders({}, writable);
    const QImage small = cache.numberBadge(7, 60);
    const QImage large = cache.numberBadge(12345, 60);
    EXPECT_EQ(small.size(), QSize(60, 60));
    EXPECT_GT(large.width(), 90);
    EXPECT_FALSE(cache.tagBadge(QStringLiteral("Rechnung"), 20).isNull());
    EXPECT_EQ(filesIn(writable).filter(QStringLiteral("number-7-60.png")).size(), 1);
    EXPECT_EQ(filesIn(writable).size(), 3);

    // Another run takes the file: it shows what was put there.
    QImage marked(60, 60, QImage::Format_RGB32);
    marked.fill(Qt::green);
    KPBadgeCache next;
    const QString readOnly = folder.path(QStringLiteral("shipped"));
    ASSERT_TRUE(QDir().mkpath(readOnly));
    ASSERT_TRUE(marked.save(readOnly + QStringLiteral("/number-7-60.png")));
    next.setFolders(readOnly, writable);
    EXPECT_EQ(next.numberBadge(7, 60).pixelColor(30, 30), QColor(Qt::green));
    EXPECT_EQ(next.numberBadge(12345, 60).convertToFormat(large.format()), large);
}

TEST(BadgeCache, DrawsAgainWhatIsDamagedOrOfAnotherFont)
{
    const TestFolder folder;
    folder.file(QStringLiteral("number-1-20.png"), "rubbish");
    KPBadgeCache cache;
    cache.setFolders({}, folder.path());
    const QImage good = cache.numberBadge(1, 20);
    EXPECT_FALSE(good.isNull());
    const QFont font = QGuiApplication::font();
    QFont other = font;
    other.setItalic(!font.italic());
    QGuiApplication::setFont(other);
    KPBadgeCache next;
    next.setFolders({}, folder.path());
    EXPECT_FALSE(next.numberBadge(1, 20).isNull());
    QGuiApplication::setFont(font);
    EXPECT_EQ(filesIn(folder.path()).size(), 1);
    // Where nothing can be kept, badges are drawn all the same.
    next.setFolders({}, QStringLiteral("/proc/none"));
    EXPECT_EQ(next.numberBadge(1, 20), good);
    EXPECT_TRUE(next.numberBadge(1, 0).isNull());
}

TEST(BadgeCache, DoesNotGrowForEver)
{
    const TestFolder folder;
    for (int number = 0; number <= KPBadgeCache::maximumFiles; ++number)
        folder.file(QStringLiteral("number-%1-20.png").arg(number));
    folder.file(QStringLiteral("mine.txt"));
    KPBadgeCache cache;
    cache.setFolders({}, folder.path());
    EXPECT_EQ(filesIn(folder.path()), QStringList{QStringLiteral("mine.txt")});
}

#include "KPPool.h"

#include <gtest/gtest.h>
#include <latch>
#include <thread>

static QString numbered(int i)
{
    return QStringLiteral("/home/ann/Documents/naïve %1.pdf").arg(i);
}

// Interned before main(), by a constructor that may run before those of the pool's own file.
static const KPPooledString early = KPPool::pooledString(u"interned early");

TEST(KPPool, EqualTextsAreOneObjectAndOthersAreNot)
{
    QString text = QStringLiteral("Straße \U0001F4C4");
    const KPPooledString pooled = KPPool::pooledString(text);
    text[0] = u's'; // the pool has its own copy
    EXPECT_EQ(pooled.toString(), QStringLiteral("Straße \U0001F4C4"));
    EXPECT_EQ(pooled.data()[pooled.size()], QChar(u'\0'));
    EXPECT_EQ(pooled, KPPool::pooledString(u"Straße \U0001F4C4"));
    EXPECT_NE(pooled, KPPool::pooledString(text));
    EXPECT_NE(KPPool::pooledString(u"e\u0301"), KPPool::pooledString(u"\u00e9"));
    EXPECT_EQ(early, KPPool::pooledString(u"interned early"));

    const QString withNul = QStringLiteral("a") + QChar(u'\0') + QChar(u'b');
    EXPECT_NE(KPPool::pooledString(withNul), KPPool::pooledString(u"a"));
    const QString undecodable = QStringLiteral("caf") + QChar(char16_t{0xDCE9});
    EXPECT_EQ(KPPool::pooledString(undecodable).toString(), undecodable);
}

TEST(KPPool, TheEmptyStringIsTheDefaultOne)
{
    bool found = false;
    EXPECT_EQ(KPPool::existingString(u"", &found), KPPooledString());
    EXPECT_TRUE(found);
    EXPECT_EQ(KPPool::pooledString(QString()), KPPooledString());
    EXPECT_EQ(*KPPooledString().data(), QChar(u'\0'));
}

TEST(KPPool, LookingForAStringAddsNone)
{
    const qsizetype before = KPPool::count();
    bool found = true;
    EXPECT_TRUE(KPPool::existingString(u"never interned", &found).isEmpty());
    EXPECT_FALSE(found);
    EXPECT_EQ(KPPool::count(), before);
    const KPPooledString pooled = KPPool::pooledString(u"now interned");
    EXPECT_EQ(KPPool::existingString(u"now interned", &found), pooled);
    EXPECT_TRUE(found);
    EXPECT_EQ(KPPool::count(), before + 1);
}

TEST(KPPool, StringsLongerThanABlockKeepTheRestOfTheBlock)
{
    const QString longText(1'000'000, u'x');
    const qsizetype before = KPPool::memoryUsed();
    EXPECT_EQ(KPPool::pooledString(longText).toString(), longText);
    EXPECT_EQ(KPPool::pooledString(longText), KPPool::pooledString(QString(longText)));
    EXPECT_LT(KPPool::memoryUsed(), before + 2 * longText.size() + 8192);
}

// Every thread interns the same strings in another order, while tables grow under the readers.
TEST(KPPool, ThreadsThatInternTheSameStringsGetTheSameObjects)
{
    constexpr int threadCount = 4;
    constexpr int count = 40'000;
    const qsizetype before = KPPool::count();
    std::vector<std::vector<KPPooledString>> results(threadCount);
    std::latch start(threadCount);
    {
        std::vector<std::jthread> threads;
        threads.reserve(threadCount);
        for (int t = 0; t < threadCount; ++t) {
            threads.emplace_back([&, t] {
                std::vector<KPPooledString> mine(count);
                start.arrive_and_wait();
                for (int n = 0; n < count; ++n) {
                    const int i = t % 2 == 0 ? n : count - 1 - n;
                    mine[static_cast<size_t>(i)] = KPPool::pooledString(numbered(i));
                    bool found = false;
                    (void)KPPool::existingString(numbered(i), &found);
                    if (!found)
                        ADD_FAILURE() << "lost " << i;
                }
                results[static_cast<size_t>(t)] = std::move(mine);
            });
        }
    }
    for (const auto &result : results)
        EXPECT_EQ(result, results.front());
    EXPECT_EQ(KPPool::count(), before + count);
    for (int i = 0; i < count; i += 97)
        EXPECT_EQ(results[0][static_cast<size_t>(i)].toString(), numbered(i));
}

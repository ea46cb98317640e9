#include "KarvexPrefs.h"

#include "TestChild.h"
#include "UserDefaults.h"
#include "XPAtomicFile.h"
#include "XPPath.h"
#include "XPPropertyList.h"

#include <gtest/gtest.h>
#include <unistd.h>

// Each test in a domain of its own, as a domain's object lives as long as the process.
static void useDomain(const char *name)
{
    KarvexPrefs::setPrefsFile(QStringLiteral("com.brindle.murn.test.") + QLatin1String(name));
}

static QStringList numbered(const QString &prefix, int count)
{
    QStringList tags;
    for (int i = 0; i < count; ++i)
        tags.append(prefix + QString::number(i));
    return tags;
}

TEST(KarvexPrefs, NewTagsComeFirstOnceByLowerCaseInTheirNewestSpelling)
{
    useDomain("order");
    const auto update = [](const QStringList &old, const QStringList &now) {
        EXPECT_EQ(KarvexPrefs::updatePrefsRecentTags(old, now), std::nullopt);
        return KarvexPrefs::recentTags();
    };
    using List = QStringList;
    const QString a = QStringLiteral("a");
    const QString b = QStringLiteral("b");
    const QString c = QStringLiteral("c");
    const QString capitalA = QStringLiteral("A");
    EXPECT_EQ(KarvexPrefs::recentTags(), List());
    EXPECT_EQ(update({}, {a, b, capitalA}), List({a, b}));
    EXPECT_EQ(update({a, b}, {b, c}), List({c, a, b}));
    EXPECT_EQ(update({a}, {capitalA}), List({capitalA, c, b})); // "not in the old" is exact
    EXPECT_EQ(update({a, b}, {b}), List({capitalA, c, b}));
    EXPECT_EQ(KarvexPrefs::removeTagsFromRecents({a, QStringLiteral("C")}), std::nullopt);
    EXPECT_EQ(KarvexPrefs::recentTags(), List{b});
}

TEST(KarvexPrefs, TheListHoldsFourteenHundredAndOne)
{
    useDomain("length");
    const QStringList many = numbered(QStringLiteral("t"), 1400);
    ASSERT_EQ(KarvexPrefs::updatePrefsRecentTags({}, many), std::nullopt);
    EXPECT_EQ(KarvexPrefs::recentTags(), many);
    for (const QString &next : {QStringLiteral("x"), QStringLiteral("y")})
        ASSERT_EQ(KarvexPrefs::updatePrefsRecentTags({}, {next}), std::nullopt);
    const QStringList recent = KarvexPrefs::recentTags();
    EXPECT_EQ(recent.size(), 1401);
    EXPECT_EQ(recent.first(), QStringLiteral("y"));
    EXPECT_EQ(recent.last(), QStringLiteral("t1398"));
}

TEST(KarvexPrefs, TheSharedDomainIsUsedWhereItsFileIs)
{
    const auto usesShared = [] {
        KarvexPrefs::chooseDomain();
        EXPECT_EQ(KarvexPrefs::updatePrefsRecentTags({}, {QStringLiteral("t")}), std::nullopt);
        const auto &shared = UserDefaults::forDomain(KarvexPrefs::sharedDomain);
        return !shared.value(KarvexPrefs::recentTagsKey).isNull();
    };
    EXPECT_FALSE(usesShared());
    EXPECT_EQ(UserDefaults::standard().value(KarvexPrefs::recentTagsKey).strings(),
              QStringList{QStringLiteral("t")});
    const QString path = UserDefaults::pathForDomain(KarvexPrefs::sharedDomain);
    const PropertyValue::Dictionary others = {{QStringLiteral("k"), QStringLiteral("of others")}};
    ASSERT_EQ(XPAtomicFile::write(path, XPPropertyList::writeXml(others).value()), std::nullopt);
    EXPECT_TRUE(usesShared());
    const auto saved = XPPropertyList::read(XPAtomicFile::read(path).value());
    ASSERT_TRUE(saved);
    EXPECT_EQ(saved->dictionary().value(QStringLiteral("k")), others.first());
    ::unlink(XPPath::encode(path).constData());
}

TEST(KarvexPrefs, NoProcessLosesWhatAnotherEntered)
{
    useDomain("processes");
    constexpr int rounds = 50;
    const auto enter = [](const QString &prefix) {
        for (const QString &tag : numbered(prefix, rounds))
            ASSERT_EQ(KarvexPrefs::updatePrefsRecentTags({}, {tag}), std::nullopt);
    };
    const pid_t children[] = {startChild([&] { enter(QStringLiteral("a")); }),
                              startChild([&] { enter(QStringLiteral("b")); })};
    for (const pid_t child : children)
        EXPECT_EQ(waitForChild(child), 0);
    ASSERT_EQ(KarvexPrefs::synchPrefs(), std::nullopt);
    EXPECT_EQ(KarvexPrefs::recentTags().size(), 2 * rounds);
}

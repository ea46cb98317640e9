#include "KPLaunchSettings.h"

#include "UserDefaults.h"
#include "XPFactorySettings.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

UserDefaults &settings()
{
    return UserDefaults::standard();
}

bool isOn(const char *key)
{
    return settings().boolValue(QString::fromLatin1(key));
}

void set(const char *key, bool on)
{
    settings().setValue(QString::fromLatin1(key), PropertyValue::boolean(on));
}

} // namespace

TEST(LaunchSettings, AreFitForASession)
{
    for (const char *key : {"KPShowLoupe", "KPShowBookmarksPanel"})
        set(key, true);
    for (const char *key : {"KPCloudUserEntered", "KPCloudKeywords"})
        set(key, false);
    KPLaunchSettings::setupDefaults();
    EXPECT_FALSE(isOn("KPShowLoupe"));
    EXPECT_FALSE(isOn("KPShowBookmarksPanel"));
    EXPECT_TRUE(isOn("KPCloudUserEntered")); // the cloud has a source
    EXPECT_TRUE(settings().stringValue(QStringLiteral("KPCustomWords")).contains(u"invoice\n"));

    // What the user chose stays.
    set("KPCloudUserEntered", false);
    set("KPCloudKeywords", true);
    settings().setValue(QStringLiteral("KPCustomWords"), QString());
    KPLaunchSettings::setupDefaults();
    EXPECT_FALSE(isOn("KPCloudUserEntered"));
    EXPECT_TRUE(settings().value(QStringLiteral("KPCustomWords")).isString());
    EXPECT_TRUE(settings().stringValue(QStringLiteral("KPCustomWords")).isEmpty());
}

TEST(LaunchSettings, TellTheFirstLaunchUntilAnOrderlyEnd)
{
    KPLaunchSettings::setupDefaults();
    settings().remove(QStringLiteral("KPVirginLaunch"));
    for (int launch = 0; launch < 2; ++launch) { // the first one crashes
        EXPECT_TRUE(KPLaunchSettings::isFirstLaunch());
        KPLaunchSettings::markRunning();
        EXPECT_TRUE(isOn("KPIsRunning"));
    }
    settings().remove(QStringLiteral("KPCustomWords"));
    KPLaunchSettings::markEnded();
    EXPECT_FALSE(isOn("KPIsRunning"));
    EXPECT_FALSE(KPLaunchSettings::isFirstLaunch());
    EXPECT_TRUE(settings().value(QStringLiteral("KPCustomWords")).isString());
}

TEST(LaunchSettings, CountWhateverIsStored)
{
    const QString key = QStringLiteral("launchCount");
    const struct
    {
        PropertyValue stored;
        qint64 count = 0;
    } cases[] = {
        {{}, 1},
        {PropertyValue::integer(2), 3},
        {QStringLiteral("many"), 1},
        {PropertyValue::integer(-5), 1},
        {PropertyValue::integer(std::numeric_limits<qint64>::max()), 1'000'000'001},
    };
    for (const auto &each : cases) {
        settings().setValue(key, each.stored);
        EXPECT_EQ(KPLaunchSettings::countLaunch(), each.count);
    }
}

TEST(LaunchSettings, GiveTheColoursOfTheFactoryBack)
{
    KPLaunchSettings::setupDefaults();
    const QString key = QStringLiteral("KPLibraryTextColour");
    settings().setValue(key, QStringLiteral("pink"));
    set("XPDrawCloudItemsBlack", true);
    KPLaunchSettings::revertColours();
    EXPECT_EQ(settings().value(key), XPFactorySettings::values().value(key));
    EXPECT_FALSE(isOn("XPDrawCloudItemsBlack"));
}

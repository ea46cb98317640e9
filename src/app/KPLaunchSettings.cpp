#include "KPLaunchSettings.h"

#include "UserDefaults.h"
#include "XPFactorySettings.h"
#include "XPLog.h"

static const QString cloudUserKey = QStringLiteral("KPCloudUserEntered");
static const QString runningKey = QStringLiteral("KPIsRunning");
static const QString firstLaunchKey = QStringLiteral("KPVirginLaunch");
static const QString launchesKey = QStringLiteral("launchCount");
static const QString endsKey = QStringLiteral("KPNumTimesLaunched");
static const char *const colourKeys[] = {"KPLibraryBackgroundColour", "KPLibraryTextColour"};

static UserDefaults &settings()
{
    return UserDefaults::standard();
}

static void set(const QString &key, bool on)
{
    settings().setValue(key, PropertyValue::boolean(on));
}

static void flush()
{
    if (const auto error = settings().synchronise())
        qCWarning(xpLog).noquote() << error->message;
}

void KPLaunchSettings::setupDefaults()
{
    XPFactorySettings::registerAll();
    set(QStringLiteral("KPShowBookmarksPanel"), false);
    if (!settings().boolValue(cloudUserKey) &&
        !settings().boolValue(QStringLiteral("KPCloudKeywords")))
        set(cloudUserKey, true);
    set(QStringLiteral("KPShowLoupe"), false);
}

const PropertyValue::Dictionary &KPLaunchSettings::colourDefaultsDictionary()
{
    static const PropertyValue::Dictionary colours = [] {
        PropertyValue::Dictionary dictionary;
        for (const char *key : colourKeys) {
            const QString name = QString::fromLatin1(key);
            dictionary.insert(name, XPFactorySettings::values().value(name));
        }
        return dictionary;
    }();
    return colours;
}

void KPLaunchSettings::revertColours()
{
    const auto &colours = colourDefaultsDictionary();
    for (auto each = colours.begin(); each != colours.end(); ++each)
        settings().setValue(each.key(), each.value());
    set(QStringLiteral("XPDrawCloudItemsBlack"), false);
}

bool KPLaunchSettings::isFirstLaunch()
{
    return settings().boolValue(firstLaunchKey);
}

void KPLaunchSettings::markRunning()
{
    set(runningKey, true);
    flush();
}

static qint64 countUp(const QString &key)
{
    // A number that somebody else set may be the largest that there is.
    const qint64 count = std::clamp<qint64>(settings().integerValue(key), 0, 1'000'000'000) + 1;
    settings().setValue(key, PropertyValue::integer(count));
    return count;
}

qint64 KPLaunchSettings::countLaunch()
{
    return countUp(launchesKey);
}

void KPLaunchSettings::countEnd()
{
    countUp(endsKey);
}

void KPLaunchSettings::markEnded()
{
    for (const QString &key : {runningKey, firstLaunchKey, QStringLiteral("KPVirginLaunchMurnKX"),
                               QStringLiteral("KPVirginLaunchZelKX")})
        set(key, false);
    flush();
}

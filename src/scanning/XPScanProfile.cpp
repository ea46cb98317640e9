#include "XPScanProfile.h"

#include "UserDefaults.h"
#include "XPImageCaptureCoreDevice.h"

const QString XPScanProfile::profilesKey = QStringLiteral("KPScanProfiles");
const QString XPScanProfile::modeKey = QStringLiteral("KPScanMode");
const QString XPScanProfile::resolutionKey = QStringLiteral("KPScanDPI");
const QString XPScanProfile::cleansKey = QStringLiteral("KPScanCleanUp");
const QString XPScanProfile::turnsUprightKey = QStringLiteral("KPScanTurnUpright");
const QString XPScanProfile::leavesOutBlankKey = QStringLiteral("KPScanLeaveOutBlank");
const QString XPScanProfile::separatesKey = QStringLiteral("KPScanSeparateByBlank");
const QString XPScanProfile::recognisesTextKey = QStringLiteral("KPScanRecogniseText");

using Device = XPImageCaptureCoreDevice;

namespace {

// As they are kept in a profile, and the setting of each.
struct Switch
{
    const char *name;
    bool XPScanProfile::*member;
    const QString &setting;
};

const Switch switches[] = {
    {"duplex", &XPScanProfile::duplex, Device::duplexKey},
    {"cleanUp", &XPScanProfile::cleans, XPScanProfile::cleansKey},
    {"turnUpright", &XPScanProfile::turnsUpright, XPScanProfile::turnsUprightKey},
    {"leaveOutBlank", &XPScanProfile::leavesOutBlank, XPScanProfile::leavesOutBlankKey},
    {"separate", &XPScanProfile::separates, XPScanProfile::separatesKey},
    {"recogniseText", &XPScanProfile::recognisesText, XPScanProfile::recognisesTextKey},
};

const QString unitName = QStringLiteral("source");
const QString modeName = QStringLiteral("mode");
const QString resolutionName = QStringLiteral("resolution");
const QString paperName = QStringLiteral("paper");
const QString pagesName = QStringLiteral("pages");

UserDefaults &defaults()
{
    return UserDefaults::standard();
}

PropertyValue::Dictionary kept()
{
    return defaults().value(XPScanProfile::profilesKey).dictionary();
}

std::optional<XPError> keep(const PropertyValue::Dictionary &profiles)
{
    defaults().setValue(XPScanProfile::profilesKey, profiles);
    return defaults().synchronise();
}

std::optional<int> number(const PropertyValue::Dictionary &profile, const QString &name)
{
    return profile.contains(name)
               ? std::optional(static_cast<int>(profile.value(name).integerValue()))
               : std::nullopt;
}

} // namespace

QStringList XPScanProfile::names()
{
    QStringList names = kept().keys();
    names.sort(Qt::CaseInsensitive);
    return names;
}

std::optional<XPScanProfile> XPScanProfile::named(const QString &name)
{
    const PropertyValue::Dictionary profiles = kept();
    if (!profiles.contains(name))
        return {};
    const PropertyValue::Dictionary saved = profiles.value(name).dictionary();
    XPScanProfile profile;
    profile.unit = number(saved, unitName);
    profile.paper = number(saved, paperName);
    profile.resolution = number(saved, resolutionName).value_or(profile.resolution);
    profile.pages = number(saved, pagesName).value_or(profile.pages);
    if (const QString mode = saved.value(modeName).string(); !mode.isEmpty())
        profile.mode = mode;
    for (const Switch &each : switches)
        profile.*each.member = saved.value(QLatin1String(each.name)).boolValue();
    return profile;
}

std::optional<XPError> XPScanProfile::save(const QString &name) const
{
    PropertyValue::Dictionary saved{{modeName, mode},
                                    {resolutionName, PropertyValue::integer(resolution)},
                                    {pagesName, PropertyValue::integer(pages)}};
    for (const Switch &each : switches)
        saved.insert(QLatin1String(each.name), PropertyValue::boolean(this->*each.member));
    if (unit)
        saved.insert(unitName, PropertyValue::integer(*unit));
    if (paper)
        saved.insert(paperName, PropertyValue::integer(*paper));
    PropertyValue::Dictionary profiles = kept();
    profiles.insert(name, saved);
    return keep(profiles);
}

std::optional<XPError> XPScanProfile::remove(const QString &name)
{
    PropertyValue::Dictionary profiles = kept();
    profiles.remove(name);
    return keep(profiles);
}

XPScanProfile XPScanProfile::ofSettings()
{
    XPScanProfile profile;
    profile.mode = defaults().stringValue(modeKey);
    profile.resolution = static_cast<int>(defaults().integerValue(resolutionKey));
    profile.paper = static_cast<int>(defaults().integerValue(Device::selectedPaperKey));
    for (const Switch &each : switches)
        profile.*each.member = defaults().boolValue(each.setting);
    return profile;
}

void XPScanProfile::useForSettings() const
{
    defaults().setValue(modeKey, mode);
    defaults().setValue(resolutionKey, PropertyValue::integer(resolution));
    if (paper)
        defaults().setValue(Device::selectedPaperKey, PropertyValue::integer(*paper));
    for (const Switch &each : switches)
        defaults().setValue(each.setting, PropertyValue::boolean(this->*each.member));
}

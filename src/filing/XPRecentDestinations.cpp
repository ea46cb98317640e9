#include "XPRecentDestinations.h"

#include "UserDefaults.h"
#include "XPPath.h"

#include <algorithm>
#include <utility>
#include <vector>

const QString XPRecentDestinations::key = QStringLiteral("recentDestinationPaths");
const QString XPRecentDestinations::maximumKey = QStringLiteral("maxDestinationsToRemember");

static double lastUse(const PropertyValue &entry)
{
    return entry.dictionary().value(QStringLiteral("date")).date().secondsSince2001;
}

// A path that is no text is kept as its bytes.
static QString pathOf(const PropertyValue &entry)
{
    const PropertyValue path = entry.dictionary().value(QStringLiteral("path"));
    return path.isString() ? path.string() : XPPath::decode(path.data());
}

QStringList XPRecentDestinations::paths()
{
    std::vector<std::pair<double, QString>> found;
    const PropertyValue stored = UserDefaults::standard().value(key);
    for (const PropertyValue &entry : stored.dictionary()) {
        if (const QString path = pathOf(entry); !path.isEmpty())
            found.emplace_back(-lastUse(entry), path);
    }
    std::sort(found.begin(), found.end());
    QStringList paths;
    for (const auto &each : found)
        paths.append(each.second);
    return paths;
}

void XPRecentDestinations::updatePrefsForRecentDestinations(const QString &path)
{
    const bool isText = path.isValidUtf16();
    PropertyValue::Dictionary destinations = UserDefaults::standard().value(key).dictionary();
    destinations.insert(isText ? path : XPPath::printable(path),
                        PropertyValue::Dictionary{
                            {QStringLiteral("path"),
                             isText ? PropertyValue(path) : PropertyValue(XPPath::encode(path))},
                            {QStringLiteral("date"), PropertyValue::Date::now()}});
    UserDefaults::standard().setValue(key, removeExtraDestinations(destinations));
}

PropertyValue::Dictionary
XPRecentDestinations::removeExtraDestinations(PropertyValue::Dictionary destinations)
{
    constexpr qint64 usualMaximum = 10;
    const qint64 wanted = UserDefaults::standard().integerValue(maximumKey);
    const qint64 maximum = wanted > 0 ? wanted : usualMaximum;
    while (destinations.size() > maximum) {
        auto oldest = destinations.end();
        for (auto it = destinations.begin(); it != destinations.end(); ++it) {
            if (!it.key().isEmpty() &&
                (oldest == destinations.end() || lastUse(*it) < lastUse(*oldest)))
                oldest = it;
        }
        if (oldest == destinations.end())
            break;
        destinations.erase(oldest);
    }
    return destinations;
}

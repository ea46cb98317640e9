#include "KPRecentLocations.h"

#include "UserDefaults.h"

#include <algorithm>

const QString KPRecentLocations::key = QStringLiteral("KPRecentLocations");
const QString KPRecentLocations::numberKey = QStringLiteral("KPNumberOfRecentLocations");

static qsizetype mostLocations()
{
    return std::clamp<qsizetype>(
        UserDefaults::standard().integerValue(KPRecentLocations::numberKey), 0, 1000);
}

KPRecentLocations::KPRecentLocations()
{
    const qsizetype most = mostLocations();
    const PropertyValue stored = UserDefaults::standard().value(key);
    for (const PropertyValue &entry : stored.array()) {
        const auto location =
            std::dynamic_pointer_cast<KPLocationItem>(KPBaseItem::unarchived(entry.dictionary()));
        if (location && !location->folders().isEmpty() && m_locations.size() < most)
            m_locations.append(location);
    }
}

bool KPRecentLocations::add(const Location &location)
{
    if (!location || location->isEverywhereItem() ||
        (!m_locations.isEmpty() && m_locations.first()->isEqual(*location)))
        return false;
    m_locations.removeIf([&](const Location &known) { return known->isEqual(*location); });
    m_locations.prepend(location);
    m_locations.resize(std::min(m_locations.size(), mostLocations()));
    save();
    return true;
}

void KPRecentLocations::clear()
{
    m_locations.clear();
    save();
}

void KPRecentLocations::save() const
{
    PropertyValue::Array saved;
    for (const Location &location : m_locations)
        saved.append(location->archive());
    UserDefaults::standard().setValue(key, saved);
}

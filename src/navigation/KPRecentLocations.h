#pragma once

#include "KPLocationItem.h"

// The locations that were searched last, newest first, in the setting "KPRecentLocations". As many
// as "KPNumberOfRecentLocations" says; everywhere is none, as it is always at hand.
// Threads: main.
class KPRecentLocations
{
public:
    using Location = KPLocationItem::Location;

    KPRecentLocations(); // as the settings have them
    const QList<Location> &locations() const { return m_locations; }
    // False: it is the newest already, or none to remember.
    bool add(const Location &location);
    void clear();

    static const QString key;       // "KPRecentLocations"
    static const QString numberKey; // "KPNumberOfRecentLocations"

private:
    void save() const;

    QList<Location> m_locations;
};

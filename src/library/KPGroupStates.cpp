#include "KPGroupStates.h"

#include "UserDefaults.h"

static const QString statesKey = QStringLiteral("KPGroupStates");
static const QString defaultKey = QStringLiteral("KPDefaultGroupState");

// Each order has groups of its own; which way it goes is no difference.
static QString nameOf(const KPSortKey &key, const KPResultGroup &group)
{
    return KPSortKey{key.field, true}.toText() + group.key;
}

bool KPGroupStates::isOpen(const KPSortKey &key, const KPResultGroup &group)
{
    const UserDefaults &defaults = UserDefaults::standard();
    const PropertyValue own = defaults.value(statesKey).dictionary().value(nameOf(key, group));
    return own.isNull() ? defaults.boolValue(defaultKey) : own.boolValue();
}

void KPGroupStates::flip(const KPSortKey &key, const KPResultGroup &group)
{
    UserDefaults &defaults = UserDefaults::standard();
    PropertyValue::Dictionary states = defaults.value(statesKey).dictionary();
    states.insert(nameOf(key, group), PropertyValue::boolean(!isOpen(key, group)));
    defaults.setValue(statesKey, states);
}

void KPGroupStates::flipAll(const KPSortKey &key, const KPResultGroup &group)
{
    UserDefaults &defaults = UserDefaults::standard();
    const PropertyValue flipped = PropertyValue::boolean(!isOpen(key, group));
    PropertyValue::Dictionary states = defaults.value(statesKey).dictionary();
    for (PropertyValue &state : states)
        state = flipped;
    defaults.setValue(statesKey, states);
    defaults.setValue(defaultKey, flipped);
}

#pragma once

#include "KPResultGroups.h"

// Which groups of the results are open: the settings "KPGroupStates", by what they are grouped by
// and what the group is, and "KPDefaultGroupState" for all others.
// Threads: main.
namespace KPGroupStates {

bool isOpen(const KPSortKey &key, const KPResultGroup &group);
void flip(const KPSortKey &key, const KPResultGroup &group);
// All groups that are remembered, and those that are not, as this one is after flipping it.
void flipAll(const KPSortKey &key, const KPResultGroup &group);

} // namespace KPGroupStates

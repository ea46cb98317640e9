#include "KPNavigator.h"

KPNavigator::~KPNavigator() = default;

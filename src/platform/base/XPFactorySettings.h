#pragma once

#include "PropertyValue.h"

// The settings' factory values, one table for every program of ours. Any thread.
namespace XPFactorySettings {

const PropertyValue::Dictionary &values();

// Registers them with UserDefaults::standard(). Call once at start-up.
void registerAll();

} // namespace XPFactorySettings

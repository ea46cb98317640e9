#pragma once

#include "PropertyValue.h"

// The settings' factory values, one table for every program of ours.
//
// A colour is an array of four reals between 0 and 1: red, green, blue and alpha (sRGB). A
// folder is a path in which "~" stands for the home folder. Any thread.
namespace XPFactorySettings {

const PropertyValue::Dictionary &values();

// Registers them with UserDefaults::standard(), and has the log follow "KPDebugLogging". Call
// once at start-up, on the main thread.
void registerAll();

} // namespace XPFactorySettings

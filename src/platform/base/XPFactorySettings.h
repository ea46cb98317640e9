#pragma once

#include "XPSetting.h"

#include <QList>

// The table of the program's settings: what each may hold, what it holds from the factory, and
// where people meet it. Both the preferences and `murnctl defaults` are made of it.
//
// Any thread.
namespace XPFactorySettings {

// In the order of the pages, and in that of the groups on each.
const QList<XPSetting> &all();
// Null: none of ours.
const XPSetting *find(const QString &key);

// The factory values of those that have one.
const PropertyValue::Dictionary &values();

// Registers them with UserDefaults::standard(), and has the log follow "KPDebugLogging". Call
// once at start-up, on the main thread.
void registerAll();

} // namespace XPFactorySettings

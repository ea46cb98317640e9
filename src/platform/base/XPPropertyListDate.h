#pragma once

#include "PropertyValue.h"

#include <optional>

// Dates as an XML property list spells them: ISO 8601 in UTC, "2001-01-01T00:00:00Z", years 0000
// to 9999. Any thread.
namespace XPPropertyListDate {

// Takes a fraction of a second too, which few writers produce.
std::optional<PropertyValue::Date> fromText(QStringView text);

// Whole seconds, cut towards the past. Nothing when the year does not have four digits.
std::optional<QByteArray> toText(PropertyValue::Date date);

} // namespace XPPropertyListDate

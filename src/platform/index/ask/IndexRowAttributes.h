#pragma once

#include "IndexCatalog.h"

// The attributes of a row by the names that queries use: those that stand on the file or were
// found in it, and those that the index computes of its facts (names, sizes, dates, types).
// Threads: those that hold a Reading.
namespace IndexRowAttributes {

// Null when absent. Dates are dates, counts integers.
PropertyValue value(const IndexCatalog &catalog, IndexSlot slot, const QString &name);

} // namespace IndexRowAttributes

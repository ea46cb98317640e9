#pragma once

#include "IndexSource.h"

#include <QString>

// Whether the documents of a folder can be found through the index.
// Threads: any; looks at the settings, the catalog and the mount table, never at the disk.
namespace KPIndexCoverage {
enum class Kind {
    Indexed,
    NoRoot,  // no indexed folder holds it
    LeftOut, // one does, but a rule leaves it out
};
Kind of(const IndexSource &source, const QString &folder);

// In words, for a list of problems; empty: it is indexed.
QString problem(const IndexSource &source, const QString &folder);
} // namespace KPIndexCoverage

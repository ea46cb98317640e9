#pragma once

#include "IndexSource.h"
#include "KPPool.h"

#include <optional>

class MDItem;

// For each item of the index the path at which it was last seen here, process-wide: so that a
// rename or a removal can be matched to what is kept by path.
// Threads: any. No file calls.
namespace XPItemPaths {

// What is known of a source's items lasts until as many ended as began. begin() is true for the
// first.
bool begin(const IndexSource &source);
void end(const IndexSource &source);

void set(const IndexSource &source, IndexItem item, KPPooledString path);
// Sets it unless there is one; returns the one that was there.
std::optional<KPPooledString> setIfNone(const IndexSource &source, IndexItem item,
                                        KPPooledString path);
std::optional<KPPooledString> find(const IndexSource &source, IndexItem item);
void remove(const IndexSource &source, IndexItem item);
qsizetype count();

} // namespace XPItemPaths

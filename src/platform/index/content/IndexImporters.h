#pragma once

#include "IndexImporter.h"

#include <functional>
#include <memory>
#include <vector>

// Who imports what. A program installs the factories of its importers before it opens the index;
// each index then makes importers of its own. The one for plain text is always there.
// Threads: any.
namespace IndexImporters {

using Importers = std::vector<std::unique_ptr<IndexImporter>>;
using Factory = std::function<std::unique_ptr<IndexImporter>()>;

void install(Factory factory);
// In the order in which they are asked: the first that accepts a type has it. Those installed,
// the last one first; then the built-in one.
Importers make();

} // namespace IndexImporters

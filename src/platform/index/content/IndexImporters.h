#pragma once

#include "IndexImporter.h"

#include <functional>
#include <memory>
#include <vector>

// Who imports what. A program installs the factories of its importers before it opens the index;
// each index then makes importers of its own.
// Threads: any.
namespace IndexImporters {

using Importers = std::vector<std::unique_ptr<IndexImporter>>;
// `idle`: at idle priority; otherwise somebody waits for the contents.
using Factory = std::function<std::unique_ptr<IndexImporter>(bool idle)>;

void install(Factory factory);
// In the order in which they are asked: the first that accepts a type has it. The last one
// installed comes first.
Importers make(bool idle);

} // namespace IndexImporters

#pragma once

#include "KPCommandOutput.h"

// `murnctl tags --all`: the tags of all indexed files. Threads: main.
namespace KPAllTags {

int print(const KPCommandLine &line, KPCommandOutput &output); // the exit status

} // namespace KPAllTags

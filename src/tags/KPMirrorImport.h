#pragma once

#include "KarvexMirror.h"

class IndexSource;

// Brings the desktop's own tags, ratings and comments and ours in line on all files that the index
// holds: what only one side has, both get. Threads: any but main; blocking file calls.
namespace KPMirrorImport {

struct File
{
    QString path;
    KarvexMirror::Outcome outcome;
    std::optional<XPError> error = {};
};

// Tells of each file that is looked at, and what was done there, or with `isDryRun` would be.
// `report` answers whether to go on. False: it did not.
bool run(IndexSource &source, bool isDryRun, const std::function<bool(const File &file)> &report);

} // namespace KPMirrorImport

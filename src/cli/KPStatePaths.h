#pragma once

#include "KPIndexSession.h"
#include "KPSearchState.h"

// What commands do with search states besides printing their documents. Threads: main.
namespace KPStatePaths {

// What fulfils all states of the files; the empty one without a file. Null: one could not be read.
KPSearchState::Ptr stateOfFiles(const QStringList &paths, KPCommandOutput &output);

// Words in contents and attributes are found once the files were imported. Keywords, which count
// as tags, may be missing until then: a search for a tag does not wait for every file to be read.
bool needsContents(const KPSearchState &state);

// The paths of a state's documents, as they are found; brings the index up to date first. Nothing:
// interrupted.
std::optional<QStringList> find(const KPSearchState::Ptr &state, KPIndexSession &session,
                                KPCommandOutput &output);

} // namespace KPStatePaths

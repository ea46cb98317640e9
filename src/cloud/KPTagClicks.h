#pragma once

#include "KPSearchState.h"

// What a click on a tag, wherever one is shown, makes of a search. Tags of files and keywords are
// looked for by their name, file types by their identifier. A null state counts as a blank one.
// Threads: any; values.
namespace KPTagClicks {

bool isSelected(const KPSearchState::Ptr &state, const KPTagName *tag);
bool isExcluded(const KPSearchState::Ptr &state, const KPTagName *tag);
KPSearchState::Ptr showWith(const KPSearchState::Ptr &state, KPTagName *tag);
KPSearchState::Ptr showWithout(const KPSearchState::Ptr &state, KPTagName *tag);
KPSearchState::Ptr clear(const KPSearchState::Ptr &state, KPTagName *tag);
// Narrows by the tag, or removes it when it is part of the search; `excludes`: narrows to the
// documents without it.
KPSearchState::Ptr click(const KPSearchState::Ptr &state, KPTagName *tag, bool excludes);

} // namespace KPTagClicks

#pragma once

class KPDocsView;

// The grid for assistive programs: a list whose children are the documents, each with its name
// first, then tags, rating and "n of m". Children are made when they are asked for.
// Threads: main.
namespace KPDocsViewAccessible {

void install(); // once is enough; more do nothing
void tellSelection(KPDocsView &view);
// Rows are others: whoever looked at them looks again.
void tellArranged(KPDocsView &view);

} // namespace KPDocsViewAccessible

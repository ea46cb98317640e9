#pragma once

#include "IndexCatalog.h"
#include "MDPredicate.h"

// The comparisons that look at rows: names, paths, columns and attribute values. Each gives the
// matching rows among `within` (null: all), != as ==. Under the caller's Reading; any thread.
namespace IndexEvaluatorRows {

RowSet named(const IndexCatalog &catalog, const MDPredicate &predicate, const RowSet &within);
RowSet atPath(const IndexCatalog &catalog, const MDPredicate &predicate, const RowSet &within);
// Sizes and times, which stand in columns. What a document says of its own time (when its content
// was created) goes before the column of its file.
bool isColumn(const QString &attribute);
// All of these comparisons with one column, in one pass.
RowSet inColumn(const IndexCatalog &catalog, const std::vector<const MDPredicate *> &comparisons,
                const RowSet &within);
RowSet withAttribute(const IndexCatalog &catalog, const MDPredicate &predicate,
                     const RowSet &within);
// The texts of all attributes.
RowSet withAnyText(const IndexCatalog &catalog, const MDPredicate &predicate, const RowSet &within);

RowSet shared(Roaring &&rows);
// The rows of any of the sets.
RowSet united(const std::vector<const IndexPosting *> &sets, const RowSet &within = {});
RowSet intersected(const RowSet &rows, const RowSet &within);

} // namespace IndexEvaluatorRows

#pragma once

#include "KPSearchRequest.h"

// A search request in the words of the index's query language (MDQueryParser).
//
// Whatever the user typed is quoted, so that it only ever stands for itself. What could not be
// read of a file is unknown, not absent: it fulfils no criterion, "no such tag" included.
// Threads: any.
namespace KPRequestQuery {
// Matches the request's documents, and other things that are neither folders nor documents.
QString text(const KPSearchRequest &request);
// Matches what may be missing from the results, as the tags or the rating that the request asks
// about cannot be read. Empty: nothing is.
QString unreadableText(const KPSearchRequest &request);
} // namespace KPRequestQuery

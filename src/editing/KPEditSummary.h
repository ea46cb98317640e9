#pragma once

#include "KPEditWorker.h"

// What failed, in words for one message. Threads: any; values.
namespace KPEditSummary {

// Why a file's tags could not be changed, for people.
QString reason(const XPError &error);

// "3 of 10 documents could not be changed"
QString title(const KPEditReport &report);
// The first files with their reasons, one a line, and how many more there are. Plain text.
QString details(const KPEditReport &report);

} // namespace KPEditSummary

#pragma once

#include "MDPredicate.h"
#include "XPError.h"

// Reads query text: comparisons `attribute op value` with == != < > <= >=, joined by && || ! and
// parentheses (&& binds tighter), InRange(attribute, low, high), and $time functions.
//
// Values are quoted strings with the modifiers c d w behind the closing quote and the wildcards
// * and ?, a backslash taking the next character as it is; bare words (which may hold . and -),
// numbers, a lone * (present); $time.now, .today(n), .yesterday(n), .this_week(n),
// .this_month(n), .this_year(n), .iso(text). Blanks between tokens may be missing.
// `$time` is read once, when the text is parsed: `now` is the moment it stands for.
// Fails with Kind::Malformed and `offset`, the first unit that cannot be read; nesting deeper than
// 200 and texts longer than 1,000,000 units are refused. Any thread.
class MDQueryParser
{
public:
    static XPResult<MDPredicatePtr> parse(const QString &text, double nowSince1970);
    static XPResult<MDPredicatePtr> parse(const QString &text); // now
};

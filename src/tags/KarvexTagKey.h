#pragma once

#include "XPText.h"

// What makes two spellings one tag in a stored list: equal in lower case. Decomposed first, as
// other writers store tags composed, and lists from other places may hold either.
inline QString karvexTagKey(const QString &tag)
{
    return lowerCase(decomposed(tag));
}

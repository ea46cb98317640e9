#include "KPShownDocument.h"

#include "KPDocCache.h"

static KPDoc *recordOf(const KPFoundDocument &found)
{
    return KPDocCache::docAtPath(found.path, &found.info);
}

KPShownDocument::KPShownDocument(const KPFoundDocument &found)
    : doc(recordOf(found)), path(KPPool::pooledString(found.path).toString()), tags(found.tags),
      rating(found.rating), error(found.error)
{
}

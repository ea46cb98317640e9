#pragma once

#include "KPTagName.h"
#include "XPAttributeValue.h"
#include "XPError.h"

#include <functional>

class IndexSource;

// The attribute caches that records read from: user tags, ratings, keywords, web addresses,
// comments and the keywords of XMP packets, which count while the setting "KPShowXMPKeywords" is
// on.
//
// KPDoc::startMetaDataSearching() starts them: tags at once, ratings after 2 seconds, keywords
// after 5, the others when first asked for. Until then what fill() and setValue() brought is
// known, after stopMetaDataSearching() nothing. Stopping waits for readers, each of which is in a
// cache for one look. Threads: any.
namespace KPDocMetaData {

enum Attribute { UserTags, Rating, Keywords, Urls, Comment, XmpKeywords, attributeCount };

// Null: no value, or not known yet.
XPAttributeValuePtr value(Attribute attribute, KPPooledString path);
// Why the file has a value that cannot be read; nothing: it can, or has none, or is not known yet.
std::optional<XPError> errorAt(Attribute attribute, KPPooledString path);
// The path's tags of the caches of tags.
KPTagName::Tags tags(Attribute attribute, KPPooledString path);
// Keywords inside the document, of all the kinds that are to be shown.
KPTagName::Tags readOnlyTags(KPPooledString path);
bool showsXmpKeywords();
// A value that this program wrote.
void setValue(Attribute attribute, KPPooledString path, const XPAttributeValuePtr &value);
// A value that came with the results of a query (Known::Kept: an older one stays, its cache hears
// of changes by itself), or that was read from the file just now (Known::Replaced). Nobody is
// told. The answer is what is held from now on, or would be if the cache were started.
enum class Known { Kept, Replaced };
XPAttributeValuePtr fill(Attribute attribute, KPPooledString path,
                         const XPResult<PropertyValue> &raw, Known known);
// The attribute's key.
const QString &key(Attribute attribute);
// For a program without caches: what fill() brings is held from now on, and nothing else is.
void holdFilledValues();
// Every cache looks the path up again when it is next asked.
void unCacheDataAtPath(KPPooledString path);
// Has a cache look at these files soon.
void updateCacheForFilePaths(Attribute attribute, const QStringList &paths);

// Everything that a cache knows.
QList<std::pair<KPPooledString, XPAttributeValuePtr>> values(Attribute attribute);

// What the index holds of a file; null when it is not indexed.
PropertyValue indexed(const QString &path, const QString &key);
bool isIndexed(const QString &path);

// For a program without caches: indexed() and indexedPaths() ask this index, which must outlive
// them, until KPDoc::stopMetaDataSearching().
void useIndex(IndexSource &source);

// The indexed files that match a query text and whose raw value of the attribute `accept` takes.
using Accept = std::function<bool(const PropertyValue &raw)>;
QStringList indexedPaths(const QString &query, const QString &attribute, const Accept &accept);

// Raw values as the caches hold them: tags, and the others as they are. Null for none; what is not
// of the kind that the attribute holds is unreadable (XPAttributeCache).
XPAttributeValuePtr makeTagNames(const PropertyValue &raw);
XPAttributeValuePtr makeKeywordTagNames(const PropertyValue &raw);
XPAttributeValuePtr makeRating(const PropertyValue &raw);
XPAttributeValuePtr makeUrls(const PropertyValue &raw);
XPAttributeValuePtr makeComment(const PropertyValue &raw);

} // namespace KPDocMetaData

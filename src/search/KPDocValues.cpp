#include "KPDocValues.h"

#include "Karvex.h"

#include <cmath>

KPDocValues KPDocValues::ofRow(const IndexCatalog &catalog, IndexSlot slot)
{
    KPDocValues values;
    const auto entries = catalog.values(slot);
    if (entries.empty())
        return values;
    for (size_t i = 0; i < values.raw.size(); ++i) {
        const auto number =
            catalog.attributeNumber(KPDocMetaData::key(static_cast<KPDocMetaData::Attribute>(i)));
        if (!number)
            continue;
        for (const IndexValues::Entry &entry : entries) {
            if (entry.name == *number) {
                values.raw[i] = entry.decoded(catalog.texts());
                break;
            }
        }
    }
    return values;
}

KPDocValues KPDocValues::ofFile(const QString &path)
{
    KPDocValues values;
    for (size_t i = 0; i < values.raw.size(); ++i)
        values.raw[i] = Karvex::getXAttrMetaData(
            KPDocMetaData::key(static_cast<KPDocMetaData::Attribute>(i)), path);
    return values;
}

bool KPDocValues::hasUnreadableTags() const
{
    const auto &tags = raw[KPDocMetaData::UserTags];
    return !tags || !(tags->isNull() || tags->isArrayOfStrings());
}

QString KPDocValues::problem() const
{
    if (hasUnreadableTags())
        return qtTrId("KPTagsNotReadable");
    const auto &stars = raw[KPDocMetaData::Rating];
    if (!stars || !(stars->isNull() || std::isfinite(stars->doubleValue(std::nan("")))))
        return qtTrId("KPRatingNotReadable");
    return {};
}

QStringList KPDocValues::tags() const
{
    return raw[KPDocMetaData::UserTags].valueOr({}).strings();
}

double KPDocValues::rating() const
{
    const double stars = raw[KPDocMetaData::Rating].valueOr({}).doubleValue();
    return std::isfinite(stars) ? stars : 0;
}

KPResultCounts::Values KPDocValues::fill(KPPooledString path, KPDocMetaData::Known known) const
{
    KPResultCounts::Values counted;
    for (size_t i = 0; i < raw.size(); ++i) {
        const auto attribute = static_cast<KPDocMetaData::Attribute>(i);
        const XPAttributeValuePtr held = KPDocMetaData::fill(attribute, path, raw[i], known);
        const auto *tags = XPAttributeOf<KPTagName::Tags>::in(held);
        if (tags != nullptr && attribute == KPDocMetaData::UserTags)
            counted.userTags = *tags;
        else if (tags != nullptr && attribute == KPDocMetaData::Keywords)
            counted.keywords = *tags;
        else if (tags != nullptr && attribute == KPDocMetaData::XmpKeywords &&
                 KPDocMetaData::showsXmpKeywords())
            counted.keywords = KPTagName::removeDuplicates(counted.keywords + *tags);
    }
    return counted;
}

#include "KPDocValues.h"

#include "Karvex.h"

#include <cmath>

static const std::array<QString, KPDocMetaData::attributeCount> &keys()
{
    static const auto all = [] {
        std::array<QString, KPDocMetaData::attributeCount> names;
        for (size_t i = 0; i < names.size(); ++i)
            names[i] = KPDocMetaData::key(static_cast<KPDocMetaData::Attribute>(i));
        return names;
    }();
    return all;
}

KPDocValues KPDocValues::ofRow(const IndexLook::Row &row)
{
    KPDocValues values;
    std::vector<PropertyValue> stored = row.stored(keys());
    std::move(stored.begin(), stored.end(), values.raw.begin());
    return values;
}

KPDocValues KPDocValues::ofFile(const QString &path)
{
    KPDocValues values;
    for (size_t i = 0; i < values.raw.size(); ++i)
        values.raw[i] = Karvex::getXAttrMetaData(keys()[i], path);
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

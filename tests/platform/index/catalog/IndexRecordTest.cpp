#include "IndexCatalog.h"
#include "XPPath.h"

#include <QIODevice>
#include <gtest/gtest.h>
#include <limits>

using Attributes = IndexRecord::Attributes;

static PropertyValue nested(int depth)
{
    PropertyValue value = QStringLiteral("deep");
    for (int i = 0; i < depth; ++i)
        value = i % 2 ? PropertyValue(PropertyValue::Dictionary{{QStringLiteral("in"), value}})
                      : PropertyValue(PropertyValue::Array{value});
    return value;
}

// Whatever the reader of property lists takes may stand on a file.
static const Attributes odd{
    {QStringLiteral("tags"), QStringList{QStringLiteral("good"), QString(QChar(0xD800))}},
    {QStringLiteral("half"), QString(QChar(0xDC00))},
    {QStringLiteral("halfInside"),
     PropertyValue::Dictionary{{QString(QChar(0xD83D)), QString(QChar(0xD83D))}}},
    {QStringLiteral("deepest"), nested(XPPropertyList::Limits().depth)},
    {XPPath::decode("name\xFF"), QStringLiteral("beside")},
    {QString(), QStringLiteral("nameless")},
    {QStringLiteral("plain"), PropertyValue::real(4)},
};

static IndexBatch batchWith(const Attributes &attributes)
{
    IndexBatch batch;
    IndexChange &root = batch.emplace_back();
    root.record.item = 1;
    root.record.name = "/r";
    root.record.type = QStringLiteral("public.folder");
    IndexChange &file = batch.emplace_back();
    file.record.item = 2;
    file.record.parent = 1;
    file.record.name = "f";
    file.record.type = QStringLiteral("public.text");
    file.record.attributes = attributes;
    return batch;
}

TEST(IndexRecord, TravelsWithWhateverStandsOnTheFile)
{
    const IndexBatch batch = batchWith(odd);
    const auto read = decodeIndexBatch(encodeIndexBatch(batch));
    ASSERT_TRUE(read);
    EXPECT_EQ(*read, batch);

    IndexCatalog catalog;
    catalog.apply(batch);
    const IndexCatalog::Reading reading(catalog);
    EXPECT_EQ(catalog.record(catalog.slotOf(2)).attributes, odd);
}

TEST(IndexRecord, LosesOnlyWhatCannotBeKept)
{
    Attributes attributes = odd;
    attributes.insert(QStringLiteral("tooDeep"), nested(XPPropertyList::Limits().depth + 1));
    attributes.insert(QStringLiteral("noTime"),
                      PropertyValue::Date{std::numeric_limits<double>::quiet_NaN()});
    const auto read = decodeIndexBatch(encodeIndexBatch(batchWith(attributes)));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->back().record.attributes, odd);
}

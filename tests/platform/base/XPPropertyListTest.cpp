#include "XPPropertyList.h"
#include "RandomProperty.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <limits>
#include <plist/plist.h>

// What both formats promise, and the same trees as another reader and writer see them.

namespace {

using Kind = PropertyValue::Kind;

struct Format
{
    const char *name;
    XPResult<QByteArray> (*write)(const PropertyValue &, const XPPropertyList::Limits &);
    void (*oracleWrite)(plist_t, char **, uint32_t *);
};

plist_t toOracle(const PropertyValue &value)
{
    switch (value.kind()) {
    case Kind::Bool:
        return plist_new_bool(value.boolValue());
    case Kind::Integer:
        return plist_new_uint(static_cast<uint64_t>(value.integerValue()));
    case Kind::Real:
        return plist_new_real(value.doubleValue());
    case Kind::Date:
        return plist_new_date(static_cast<int32_t>(value.date().secondsSince2001), 0);
    case Kind::Data:
        return plist_new_data(value.data().constData(), static_cast<uint64_t>(value.data().size()));
    case Kind::String:
        return plist_new_string(value.string().toUtf8().constData());
    case Kind::Array: {
        const plist_t array = plist_new_array();
        for (const PropertyValue &element : value.array())
            plist_array_append_item(array, toOracle(element));
        return array;
    }
    default: {
        const plist_t dictionary = plist_new_dict();
        for (auto it = value.dictionary().begin(); it != value.dictionary().end(); ++it)
            plist_dict_set_item(dictionary, it.key().toUtf8().constData(), toOracle(it.value()));
        return dictionary;
    }
    }
}

PropertyValue fromOracle(plist_t node);

PropertyValue dictionaryFromOracle(plist_t node)
{
    PropertyValue::Dictionary dictionary;
    plist_dict_iter iterator = nullptr;
    plist_dict_new_iter(node, &iterator);
    for (;;) {
        char *key = nullptr;
        plist_t item = nullptr;
        plist_dict_next_item(node, iterator, &key, &item);
        if (!item)
            break;
        dictionary.insert(QString::fromUtf8(key), fromOracle(item));
        std::free(key);
    }
    std::free(iterator);
    return dictionary;
}

PropertyValue fromOracle(plist_t node)
{
    char *bytes = nullptr;
    uint64_t size = 0;
    switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
        uint8_t value = 0;
        plist_get_bool_val(node, &value);
        return PropertyValue::boolean(value != 0);
    }
    case PLIST_UINT:
        plist_get_uint_val(node, &size);
        return PropertyValue::integer(static_cast<qint64>(size));
    case PLIST_REAL: {
        double value = 0;
        plist_get_real_val(node, &value);
        return PropertyValue::real(value);
    }
    case PLIST_DATE: {
        int32_t seconds = 0;
        int32_t microseconds = 0;
        plist_get_date_val(node, &seconds, &microseconds);
        return PropertyValue::Date{seconds + microseconds / 1e6};
    }
    case PLIST_DATA: {
        plist_get_data_val(node, &bytes, &size);
        QByteArray data(bytes, static_cast<qsizetype>(size));
        std::free(bytes);
        return data;
    }
    case PLIST_STRING: {
        plist_get_string_val(node, &bytes);
        QString text = QString::fromUtf8(bytes);
        std::free(bytes);
        return text;
    }
    case PLIST_ARRAY: {
        PropertyValue::Array array;
        for (uint32_t i = 0; i < plist_array_get_size(node); ++i)
            array.append(fromOracle(plist_array_get_item(node, i)));
        return array;
    }
    case PLIST_DICT:
        return dictionaryFromOracle(node);
    default:
        return {};
    }
}

PropertyValue readByOracle(const QByteArray &bytes)
{
    plist_t node = nullptr;
    plist_from_memory(bytes.constData(), static_cast<uint32_t>(bytes.size()), &node);
    PropertyValue value = node ? fromOracle(node) : PropertyValue();
    plist_free(node);
    return value;
}

QByteArray writtenByOracle(const PropertyValue &value, const Format &format)
{
    const plist_t node = toOracle(value);
    char *bytes = nullptr;
    uint32_t size = 0;
    format.oracleWrite(node, &bytes, &size);
    QByteArray result(bytes, static_cast<qsizetype>(size));
    std::free(bytes);
    plist_free(node);
    return result;
}

PropertyValue nested(int depth)
{
    PropertyValue value = PropertyValue::Array{};
    for (int i = 1; i < depth; ++i)
        value = i % 2 ? PropertyValue(PropertyValue::Array{value})
                      : PropertyValue(PropertyValue::Dictionary{{QStringLiteral("k"), value}});
    return value;
}

} // namespace

class PropertyListFormat : public testing::TestWithParam<Format>
{
protected:
    static XPResult<QByteArray> write(const PropertyValue &value,
                                      const XPPropertyList::Limits &limits = {})
    {
        return GetParam().write(value, limits);
    }
};

TEST_P(PropertyListFormat, RandomTreesComeBackAndTheOracleAgrees)
{
    for (unsigned seed = 0; seed < 800; ++seed) {
        SCOPED_TRACE(seed);
        const PropertyValue value = RandomProperty(seed).value();
        const auto bytes = write(value);
        ASSERT_TRUE(bytes) << bytes.error().message.toStdString();
        const auto back = XPPropertyList::read(*bytes);
        ASSERT_TRUE(back) << back.error().message.toStdString();
        ASSERT_EQ(*back, value);
        ASSERT_EQ(*write(*back), *bytes);
        ASSERT_EQ(readByOracle(*bytes), value) << bytes->constData();
        const QByteArray theirs = writtenByOracle(value, GetParam());
        const auto read = XPPropertyList::read(theirs);
        ASSERT_TRUE(read) << read.error().message.toStdString() << theirs.constData();
        ASSERT_EQ(*read, value) << theirs.constData();
    }
}

TEST_P(PropertyListFormat, RefusesWhatHasNoForm)
{
    PropertyValue doubling = PropertyValue::boolean(true);
    for (int i = 0; i < 26; ++i)
        doubling = PropertyValue::Array{doubling, doubling};
    const PropertyValue broken = QString(QChar(0xDC80));
    const struct
    {
        PropertyValue value;
        XPError::Kind kind = XPError::Kind::InvalidArgument;
    } rows[] = {
        {{}},
        {PropertyValue::Array{{}}},
        {broken},
        {PropertyValue::Dictionary{{broken.string(), broken}}},
        {PropertyValue::Date{std::numeric_limits<double>::infinity()}},
        {PropertyValue::Date{std::nan("")}},
        {nested(65)},
        {doubling, XPError::Kind::TooLarge},
    };
    for (const auto &row : rows) {
        const auto bytes = write(row.value);
        ASSERT_FALSE(bytes);
        EXPECT_EQ(bytes.error().kind, row.kind);
    }
    EXPECT_EQ(write(QString(1000, u'a'), {.bytes = 999}).error().kind, XPError::Kind::TooLarge);
}

TEST_P(PropertyListFormat, LimitsHoldOnBothSides)
{
    const auto deepest = write(nested(64));
    ASSERT_TRUE(deepest);
    EXPECT_EQ(*XPPropertyList::read(*deepest), nested(64));
    const XPPropertyList::Limits limits[] = {
        {.bytes = deepest->size() - 1}, {.depth = 63}, {.objects = 63}};
    for (const auto &limit : limits)
        EXPECT_EQ(XPPropertyList::read(*deepest, limit).error().kind, XPError::Kind::TooLarge);
}

TEST_P(PropertyListFormat, EveryTruncationAndFlippedByteIsSurvived)
{
    for (unsigned seed = 0; seed < 60; ++seed) {
        const auto bytes = write(RandomProperty(seed).value(2));
        for (qsizetype i = 0; i < bytes->size(); ++i) {
            // The last byte of the XML form is a line feed that nobody needs.
            if (i < bytes->size() - 1) {
                EXPECT_FALSE(XPPropertyList::read(QByteArrayView(*bytes).first(i)));
            }
            QByteArray damaged = *bytes;
            damaged[i] = static_cast<char>(damaged[i] ^ (1 << seed % 8));
            const auto value = XPPropertyList::read(damaged);
            EXPECT_TRUE(value || value.error().offset.has_value());
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Both, PropertyListFormat,
                         testing::Values(Format{"Binary", XPPropertyList::writeBinary,
                                                plist_to_bin},
                                         Format{"Xml", XPPropertyList::writeXml, plist_to_xml}),
                         [](const auto &row) { return row.param.name; });

TEST(PropertyValue, ReadsNumbersOfOtherWritersAlike)
{
    EXPECT_EQ(PropertyValue::real(-2.9).integerValue(), -2);
    EXPECT_EQ(PropertyValue::real(1e300).integerValue(), std::numeric_limits<qint64>::max());
    EXPECT_EQ(PropertyValue::real(-1e300).integerValue(), std::numeric_limits<qint64>::min());
    EXPECT_EQ(PropertyValue::real(std::nan("")).integerValue(), 0);
    EXPECT_EQ(PropertyValue::boolean(true).doubleValue(), 1);
    EXPECT_TRUE(PropertyValue::real(0.5).boolValue());
    EXPECT_TRUE(PropertyValue(QStringLiteral("no")).boolValue(true));
    EXPECT_NE(PropertyValue::boolean(true), PropertyValue::integer(1));
    EXPECT_NE(PropertyValue::integer(1), PropertyValue::real(1));
    EXPECT_FALSE(PropertyValue(PropertyValue::Array{PropertyValue::integer(1)}).isArrayOfStrings());
}

#include "XPPropertyList.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

using Kind = PropertyValue::Kind;

namespace {

// A binary property list put together by hand, sound or not.
struct Parts
{
    std::vector<QByteArray> objects;
    quint64 top = 0;
    int referenceSize = 1;
    int offsetSize = 1;
};

QByteArray bigEndian(quint64 value, int size)
{
    QByteArray bytes;
    for (int shift = 8 * (size - 1); shift >= 0; shift -= 8)
        bytes.append(char(shift < 64 ? value >> shift : 0));
    return bytes;
}

QByteArray assemble(const Parts &parts)
{
    QByteArray bytes("bplist00");
    QByteArray table;
    for (const QByteArray &object : parts.objects) {
        table += bigEndian(quint64(bytes.size()), parts.offsetSize);
        bytes += object;
    }
    const quint64 tableOffset = quint64(bytes.size());
    return bytes + table + QByteArray(6, '\0') + char(parts.offsetSize) +
           char(parts.referenceSize) + bigEndian(parts.objects.size(), 8) +
           bigEndian(parts.top, 8) + bigEndian(tableOffset, 8);
}

QByteArray hex(const char *text)
{
    return QByteArray::fromHex(text);
}

struct Good
{
    const char *name;
    Parts parts;
    PropertyValue value;
};

struct Bad
{
    const char *name;
    Parts parts;
    XPError::Kind kind = XPError::Kind::Malformed;
};

PropertyValue text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

} // namespace

class BinaryPropertyListAccepts : public testing::TestWithParam<Good>
{
};

TEST_P(BinaryPropertyListAccepts, WhatOtherWritersProduce)
{
    const auto value = XPPropertyList::readBinary(assemble(GetParam().parts));
    ASSERT_TRUE(value) << value.error().message.toStdString();
    EXPECT_EQ(*value, GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, BinaryPropertyListAccepts,
    testing::Values(
        Good{"OneByteIsUnsigned", {{hex("10ff")}}, PropertyValue::integer(255)},
        Good{"TwoBytesAreUnsigned", {{hex("11ffff")}}, PropertyValue::integer(65535)},
        Good{"FourBytesAreUnsigned", {{hex("12ffffffff")}}, PropertyValue::integer(4294967295)},
        Good{"EightBytesAreSigned", {{hex("13ffffffffffffffff")}}, PropertyValue::integer(-1)},
        Good{"SixteenBytesPositive",
             {{hex("1400000000000000007fffffffffffffff")}},
             PropertyValue::integer(std::numeric_limits<qint64>::max())},
        Good{"SixteenBytesNegative",
             {{hex("14ffffffffffffffff8000000000000000")}},
             PropertyValue::integer(std::numeric_limits<qint64>::min())},
        Good{"FloatReal", {{hex("2240200000")}}, PropertyValue::real(2.5)},
        Good{"DoubleReal", {{hex("238000000000000000")}}, PropertyValue::real(-0.0)},
        Good{"NotANumber", {{hex("227fc00000")}}, PropertyValue::real(std::nan(""))},
        Good{"Date", {{hex("33bfe0000000000000")}}, PropertyValue::Date{-0.5}},
        Good{"LongCount", {{hex("5f1000")}}, text("")},
        Good{"EightByteCount", {{hex("5f13000000000000000261 62")}}, text("ab")},
        Good{"Utf16", {{hex("6200e9d83d")}}, QStringLiteral("\u00e9") + QChar(0xD83D)},
        Good{"Data", {{hex("4200ff")}}, QByteArray("\0\xff", 2)},
        Good{"TopIsNotFirst", {{hex("5161"), hex("a100")}, 1}, PropertyValue::Array{text("a")}},
        Good{"SharedAndRepeatedStrings",
             {{hex("a3010102"), hex("5161"), hex("5161")}},
             PropertyValue::Array{text("a"), text("a"), text("a")}},
        Good{"WideNumbers",
             {{hex("a1") + bigEndian(1, 3), hex("09")}, 0, 3, 5},
             PropertyValue::Array{PropertyValue::boolean(true)}},
        Good{"WidestNumbers",
             {{hex("d1") + bigEndian(1, 8) + bigEndian(2, 8), hex("50"), hex("08")}, 0, 8, 8},
             PropertyValue::Dictionary{{QString(), PropertyValue::boolean(false)}}}),
    [](const auto &row) { return row.param.name; });

class BinaryPropertyListRefuses : public testing::TestWithParam<Bad>
{
};

TEST_P(BinaryPropertyListRefuses, SayingWhere)
{
    const auto value = XPPropertyList::readBinary(assemble(GetParam().parts));
    ASSERT_FALSE(value);
    EXPECT_EQ(value.error().kind, GetParam().kind);
    EXPECT_TRUE(value.error().offset.has_value());
}

// Twenty-six arrays, each holding the next one twice: 2^26 values in a few bytes.
static Parts doublingArrays()
{
    Parts parts;
    for (int i = 1; i <= 26; ++i)
        parts.objects.push_back(hex("a2") + char(i) + char(i));
    parts.objects.push_back(hex("09"));
    return parts;
}

static Parts nestedArrays(int depth)
{
    Parts parts;
    for (int i = 1; i < depth; ++i)
        parts.objects.push_back(hex("a1") + char(i));
    parts.objects.push_back(hex("a0"));
    return parts;
}

// The deepest allowed chain read first, so that it is known, then referenced from too deep.
static Parts nestedThroughASharedObject()
{
    Parts parts = nestedArrays(64);
    parts.objects.push_back(hex("a101"));   // 64: one level above the known chain
    parts.objects.push_back(hex("a140"));   // 65
    parts.objects.push_back(hex("a20141")); // 66: the chain by itself, then two levels deeper
    parts.top = 66;
    return parts;
}

INSTANTIATE_TEST_SUITE_P(
    Faults, BinaryPropertyListRefuses,
    testing::Values(
        Bad{"CycleOfOneArray", {{hex("a100")}}},
        Bad{"CycleOfTwoArrays", {{hex("a101"), hex("a100")}}},
        Bad{"CycleThroughADictionaryValue", {{hex("d10102"), hex("5161"), hex("a100")}}},
        Bad{"CycleAsADictionaryKey", {{hex("d10001"), hex("09")}}},
        Bad{"CycleBesideASoundBranch", {{hex("a301 02 02"), hex("a0"), hex("a20102")}}},
        Bad{"CycleBelowTheTop",
            {{hex("a101"), hex("a102"), hex("d20304 0505"), hex("5161"), hex("5162"),
              hex("a101")}}},
        Bad{"Null", {{hex("00")}}}, Bad{"Fill", {{hex("0f")}}}, Bad{"Uid", {{hex("8001")}}},
        Bad{"Set", {{hex("c100"), hex("09")}}}, Bad{"ReferenceOutside", {{hex("a101")}}},
        Bad{"TopOutside", {{hex("09")}, 1}}, Bad{"NoObjects", {}},
        Bad{"KeyThatIsNoString", {{hex("d10101"), hex("09")}}},
        Bad{"KeyTwice", {{hex("d2010102 02"), hex("5161"), hex("09")}}},
        Bad{"KeyTwiceInOtherForms", {{hex("d2010203 03"), hex("5161"), hex("610061"), hex("09")}}},
        Bad{"IntegerOf65Bits", {{hex("14000000000000000080000000 00000000")}}},
        Bad{"IntegerOf32Bytes", {{hex("15") + QByteArray(32, '\0')}}},
        Bad{"RealOfTwoBytes", {{hex("210000")}}}, Bad{"DateOfFourBytes", {{hex("3200000000")}}},
        Bad{"DateThatIsNoTime", {{hex("337ff8000000000000")}}},
        Bad{"AsciiWithOtherBytes", {{hex("51e9")}}}, Bad{"StringBeyondTheObjects", {{hex("5361")}}},
        Bad{"Utf16BeyondTheObjects", {{hex("620061")}}},
        Bad{"CountThatIsNoNumber", {{hex("5f5161")}}},
        Bad{"CountThatOverflows", {{hex("af1380000000000000 01")}}},
        Bad{"CountCutOff", {{hex("5f")}}}, Bad{"IntegerCutOff", {{hex("1300")}}},
        Bad{"ReferenceSizeZero", {{hex("a0")}, 0, 0}},
        Bad{"OffsetSizeNine", {{hex("a0")}, 0, 1, 9}},
        Bad{"TooDeep", nestedArrays(65), XPError::Kind::TooLarge},
        Bad{"TooDeepWhenShared", nestedThroughASharedObject(), XPError::Kind::TooLarge},
        Bad{"Exponential", doublingArrays(), XPError::Kind::TooLarge}),
    [](const auto &row) { return row.param.name; });

TEST(BinaryPropertyList, DepthUpToTheLimitIsRead)
{
    EXPECT_TRUE(XPPropertyList::readBinary(assemble(nestedArrays(64))));
}

TEST(BinaryPropertyList, WritesTheShortestFormOfTheFormat)
{
    const PropertyValue value =
        PropertyValue::Array{text("a"), PropertyValue::integer(-2), text("\u00e9"), text("a")};
    const auto bytes = XPPropertyList::writeBinary(value);
    ASSERT_TRUE(bytes);
    const Parts parts{{hex("a401020301"), hex("5161"), hex("13fffffffffffffffe"), hex("6100e9")}};
    EXPECT_EQ(bytes->toHex(), assemble(parts).toHex());
    EXPECT_EQ(*XPPropertyList::readBinary(*bytes), value);
}

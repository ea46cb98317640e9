#include "XPPropertyList.h"

#include <QStringEncoder>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace {

struct Good
{
    const char *name;
    QByteArray xml;
    PropertyValue value;
};

struct Bad
{
    const char *name;
    QByteArray xml;
    XPError::Kind kind = XPError::Kind::Malformed;
};

QByteArray plist(const QByteArray &value)
{
    return "<plist version=\"1.0\">" + value + "</plist>";
}

QByteArray encoded(QStringConverter::Encoding encoding)
{
    QStringEncoder encoder(encoding, QStringConverter::Flag::WriteBom);
    return encoder(QStringLiteral("<?xml version='1.0' encoding='UTF-16'?>"
                                  "<plist><string>\u00e9</string></plist>"));
}

PropertyValue text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

} // namespace

class XmlPropertyListAccepts : public testing::TestWithParam<Good>
{
};

TEST_P(XmlPropertyListAccepts, WhatOtherWritersProduce)
{
    const auto value = XPPropertyList::read(GetParam().xml);
    ASSERT_TRUE(value) << value.error().message.toStdString();
    EXPECT_EQ(*value, GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, XmlPropertyListAccepts,
    testing::Values(
        Good{"ByteOrderMarkDocumentTypeAndComments",
             "\xef\xbb\xbf<?xml version=\"1.0\" encoding=\"utf-8\"?>\r\n<!-- a > b [ -->\n"
             "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"http://x/[\">\n"
             "<plist><!-- c --> <array> <?p i?>\n<true/><false></false> </array> </plist>\n<!-- d "
             "-->",
             PropertyValue::Array{PropertyValue::boolean(true), PropertyValue::boolean(false)}},
        Good{"TextInPieces", plist("<string> a<!-- x -->&lt;<![CDATA[<b>]]>&#233;&#13; </string>"),
             text(" a<<b>\u00e9\r ")},
        Good{"SelfClosing", plist("<array><string/><array/><dict/><data/></array>"),
             PropertyValue::Array{text(""), PropertyValue::Array{}, PropertyValue::Dictionary{},
                                  QByteArray()}},
        Good{"DictionaryWithEmptyKey", plist("<dict><key/><string>v</string></dict>"),
             PropertyValue::Dictionary{{QString(), text("v")}}},
        Good{"IntegerPadded", plist("<integer>\n +12 </integer>"), PropertyValue::integer(12)},
        Good{"IntegerHex", plist("<integer>0xFf</integer>"), PropertyValue::integer(255)},
        Good{"IntegerSmallest", plist("<integer>-9223372036854775808</integer>"),
             PropertyValue::integer(std::numeric_limits<qint64>::min())},
        Good{"IntegerHexNegative", plist("<integer>-0x8000000000000000</integer>"),
             PropertyValue::integer(std::numeric_limits<qint64>::min())},
        Good{"RealExponent", plist("<real>-1.5E+2</real>"), PropertyValue::real(-150)},
        Good{"RealWhole", plist("<real>+4</real>"), PropertyValue::real(4)},
        Good{"RealNan", plist("<real>nan</real>"), PropertyValue::real(std::nan(""))},
        Good{"RealInfinity", plist("<real>+Infinity</real>"),
             PropertyValue::real(std::numeric_limits<double>::infinity())},
        Good{"RealMinusInf", plist("<real>-inf</real>"),
             PropertyValue::real(-std::numeric_limits<double>::infinity())},
        Good{"Date", plist("<date> 2000-12-31T23:59:59Z </date>"), PropertyValue::Date{-1}},
        Good{"DateWithFraction", plist("<date>2001-01-01T00:00:01.25Z</date>"),
             PropertyValue::Date{1.25}},
        Good{"DateOfALeapDay", plist("<date>2004-02-29T00:00:00Z</date>"),
             PropertyValue::Date{99705600}},
        Good{"DataInLines", plist("<data>\n\tAA\n\tEC/w= =\n</data>").replace("= =", "=="),
             QByteArray("\0\1\2\xff", 4)},
        Good{"Utf16", encoded(QStringConverter::Utf16BE), text("\u00e9")},
        Good{"Utf16LittleEndian", encoded(QStringConverter::Utf16LE), text("\u00e9")}),
    [](const auto &row) { return row.param.name; });

class XmlPropertyListRefuses : public testing::TestWithParam<Bad>
{
};

TEST_P(XmlPropertyListRefuses, SayingWhere)
{
    const auto value = XPPropertyList::read(GetParam().xml);
    ASSERT_FALSE(value);
    EXPECT_EQ(value.error().kind, GetParam().kind);
    ASSERT_TRUE(value.error().offset.has_value());
    EXPECT_LE(*value.error().offset, GetParam().xml.size());
}

INSTANTIATE_TEST_SUITE_P(
    Faults, XmlPropertyListRefuses,
    testing::Values(
        Bad{"Empty", ""}, Bad{"Garbage", "\x01\x02\x03"}, Bad{"OldStyle", "(a, b)"},
        Bad{"AnotherDocument", "<html/>"}, Bad{"NoValue", "<plist/>"},
        Bad{"TwoValues", plist("<true/><true/>")}, Bad{"TextBeside", plist("<true/>x")},
        Bad{"CutOff", "<plist><array><true/>"}, Bad{"TextAfter", plist("<true/>") + "x"},
        Bad{"UnknownElement", plist("<set/>")}, Bad{"NamespacedElement", plist("<a:true/>")},
        Bad{"NestedText", plist("<string>a<true/></string>")},
        Bad{"BooleanWithText", plist("<true>x</true>")},
        Bad{"KeyWithoutValue", plist("<dict><key>a</key></dict>")},
        Bad{"ValueWithoutKey", plist("<dict><true/></dict>")},
        Bad{"KeyAfterKey", plist("<dict><key>a</key><key>b</key></dict>")},
        Bad{"KeyTwice", plist("<dict><key>a</key><true/><key>a</key><true/></dict>")},
        Bad{"KeyInArray", plist("<array><key>a</key></array>")},
        Bad{"IntegerEmpty", plist("<integer/>")},
        Bad{"IntegerWithTail", plist("<integer>1x</integer>")},
        Bad{"IntegerTooLong", plist("<integer>9223372036854775808</integer>")},
        Bad{"IntegerTwoSigns", plist("<integer>0x-1</integer>")},
        Bad{"RealEmpty", plist("<real> </real>")}, Bad{"RealComma", plist("<real>1,5</real>")},
        Bad{"RealTooLarge", plist("<real>1e999</real>")},
        Bad{"DateWithoutZone", plist("<date>2001-01-01T00:00:00</date>")},
        Bad{"DateImpossible", plist("<date>2001-02-29T00:00:00Z</date>")},
        Bad{"DateOfHour24", plist("<date>2001-02-28T24:00:00Z</date>")},
        Bad{"DataOfOtherCharacters", plist("<data>A*==</data>")},
        Bad{"DataCutOff", plist("<data>AAE</data>")},
        Bad{"EntityFromOutside", "<!DOCTYPE plist SYSTEM \"x\">" + plist("<string>a&b;</string>")},
        Bad{"EntityOfItsOwn", "<!DOCTYPE plist [<!ENTITY a 'b'>]>" + plist("<string>&a;</string>")},
        Bad{"DeclarationsBehindAQuotedEnd",
            "<!DOCTYPE plist SYSTEM \">\" [<!ENTITY % a 'b'>%a;]>" + plist("<true/>")},
        Bad{"VeryManyAttributes",
            "<plist" + QByteArray(" a='>'").repeated(200) + "><true/></plist>"},
        Bad{"BrokenUtf8", plist("<string>\xc3</string>")},
        Bad{"OtherEncoding", "<?xml version='1.0' encoding='ISO-8859-1'?>" + plist("<true/>")},
        Bad{"ControlCharacter", plist("<string>&#1;</string>")}),
    [](const auto &row) { return row.param.name; });

TEST(XmlPropertyList, TellsByteOffsetsBehindOtherThanAscii)
{
    const QByteArray before = "<plist><array><string>\u00e9\U0001f600</string>";
    const auto value = XPPropertyList::read(before + "<bad/></array></plist>");
    ASSERT_FALSE(value);
    EXPECT_EQ(value.error().offset, before.size() + qsizetype(strlen("<bad/>")));
}

TEST(XmlPropertyList, WritesTheFormThatPeopleKnow)
{
    const PropertyValue value = PropertyValue::Dictionary{
        {QStringLiteral("b"), PropertyValue::Array{text("\r<&>"), PropertyValue::real(0.1)}},
        {QStringLiteral("a"), PropertyValue::Date{-0.5}}};
    const auto xml = XPPropertyList::writeXml(value);
    ASSERT_TRUE(xml);
    EXPECT_TRUE(xml->endsWith("<plist version=\"1.0\">\n<dict>\n"
                              "\t<key>a</key>\n\t<date>2000-12-31T23:59:59Z</date>\n"
                              "\t<key>b</key>\n\t<array>\n\t\t<string>&#13;&lt;&amp;&gt;</string>\n"
                              "\t\t<real>0.1</real>\n\t</array>\n</dict>\n</plist>\n"))
        << xml->constData();
    EXPECT_TRUE(XPPropertyList::writeXml(PropertyValue::Date{-1e-20})->contains("T23:59:59Z"));
    EXPECT_EQ(XPPropertyList::writeXml(text("a\x01")).error().kind, XPError::Kind::InvalidArgument);
    EXPECT_EQ(XPPropertyList::writeXml(PropertyValue::Date{1e15}).error().kind,
              XPError::Kind::InvalidArgument);
}

#include "KPDocTitles.h"

#include "KPDocCache.h"
#include "TestHome.h"
#include "XPPropertyList.h"

#include <gtest/gtest.h>

namespace {

struct Message
{
    const char *name;
    const char *bytes;
    const char *subject;
};

class MessageTitle : public testing::TestWithParam<Message>
{
};

QByteArray propertyList(const PropertyValue::Dictionary &dictionary)
{
    return XPPropertyList::writeBinary(dictionary).valueOr({});
}

} // namespace

TEST_P(MessageTitle, IsTheSubject)
{
    EXPECT_EQ(KPDocTitles::subjectIn(GetParam().bytes), QString::fromUtf8(GetParam().subject));
}

INSTANTIATE_TEST_SUITE_P(
    Rows, MessageTitle,
    testing::Values(
        Message{"Plain", "From: a\r\nSubject: Hello\r\n\r\nSubject: body", "Hello"},
        Message{"WithLength", "1234   \nsubject:Hi\n\n", "Hi"},
        Message{"Folded", "Subject: one\r\n two\r\n\tthree\r\nTo: x\r\n", "one two three"},
        Message{"InTheBodyOnly", "From: a\n\nSubject: no", ""}, //
        Message{"Q", "Subject: =?ISO-8859-1?Q?Caf=E9_au_lait?=", "Caf\u00e9 au lait"},
        Message{"B", "Subject: Re: =?utf-8?B?w7xiZXI=?= alles", "Re: \u00fcber alles"},
        Message{"SplitCharacter",
                "Subject: =?utf-8?Q?=C3?=\n =?utf-8?Q?=A9t=C3=A9?=", "\u00e9t\u00e9"},
        Message{"TwoCharsets", "Subject: =?utf-8?Q?=C3=A9?= =?koi8-r?B?8A==?=", "\u00e9\u041f"},
        Message{"Language", "Subject: =?us-ascii*en?q?hi?=", "hi"},
        Message{"RawUtf8", "Subject: \xC3\xA9t\xC3\xA9", "\u00e9t\u00e9"},
        Message{"RawLatin", "Subject: \xE9t\xE9", "\u00e9t\u00e9"},
        Message{"UnknownCharset", "Subject: a =?x-none?Q?b?=", "a"},
        Message{"Controls", "Subject: a\x1b[1mb =?utf-8?Q?c=0Ad=00?=", "a [1mb c d"},
        Message{"Broken", "Subject: =?utf-8?Q?unfinished", "=?utf-8?Q?unfinished"},
        Message{"NoHeader", "", ""}, Message{"NoLineEnd", "12", ""}),
    [](const auto &row) { return std::string(row.param.name); });

TEST(DocTitles, ComeFromTheFilesThemselves)
{
    const TestFolder folder;
    const auto doc = [&](const char *name, const QByteArray &bytes) {
        return KPDocCache::docAtPath(folder.file(QLatin1String(name), bytes));
    };
    KPDoc *message = doc("a.emlx", "19\nSubject: Hello\n\nBody\n");
    EXPECT_TRUE(message->isEmailMessage());
    EXPECT_EQ(message->documentTitle(), u"a.emlx");
    message->setTitleFromEmailMessage();
    EXPECT_EQ(message->documentTitle(), u"Hello");
    message->dataChanged();
    EXPECT_EQ(message->documentTitle(), u"a.emlx");
    KPDoc *silent = doc("b.emlx", "From: x\n\n");
    silent->setTitleFromEmailMessage();
    EXPECT_EQ(silent->documentTitle(), u"(no subject)");

    KPDoc *card = doc("a.abcdp", propertyList({{QStringLiteral("First"), QStringLiteral("Ann")},
                                               {QStringLiteral("Last"), QStringLiteral("Lee")}}));
    card->setTitleFromAddressBookCard();
    EXPECT_EQ(card->documentTitle(), u"Ann Lee");
    KPDoc *noCard = doc("b.abcdp", "garbage");
    noCard->setTitleFromAddressBookCard();
    EXPECT_EQ(noCard->documentTitle(), u"An Address Card");

    KPDoc *bookmark =
        doc("a.webbookmark", propertyList({{QStringLiteral("Name"), QStringLiteral("Example")}}));
    bookmark->setTitleFromBookmark();
    EXPECT_EQ(bookmark->documentTitle(), u"Example");
    EXPECT_TRUE(bookmark->canChangeTitle());
    EXPECT_FALSE(doc("scans/a.pdf", "x")->canChangeTitle());
}

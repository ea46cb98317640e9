#include "KPOpenedUrl.h"

#include "XPPath.h"

#include <gtest/gtest.h>

using File = KPOpenedUrl::File;
using WithTags = KPOpenedUrl::WithTags;
using WithText = KPOpenedUrl::WithText;

TEST(OpenedUrl, SaysWhatIsAskedFor)
{
    const struct
    {
        const char16_t *url;
        KPOpenedUrl::Wish wish;
    } cases[] = {
        {u"murn://tags/a/b", WithTags{{QStringLiteral("a"), QStringLiteral("b")}}},
        {u"MURN://Tags/Über%20uns//x?q#f",
         WithTags{{QStringLiteral("Über uns"), QStringLiteral("x")}}},
        {u"murn://tags", WithTags{}},
        {u"murn://search/some%20text", WithText{QStringLiteral("some text")}},
        {u"murn://anything/--delete", WithText{QStringLiteral("--delete")}},
        {u"murn://search/../../etc", WithText{QStringLiteral("../../etc")}},
        {u"murn:///x", WithText{QStringLiteral("x")}},
        {u"file:///a%20b", File{QStringLiteral("/a b")}},
        {u"FILE:/a", File{QStringLiteral("/a")}},
        {u"file://localhost/a/%2e%2e/b", File{QStringLiteral("/a/../b")}},
        {u"file:///a%ff", File{XPPath::decode(QByteArrayView("/a\xff"))}},
        {u"HTTPS://example.org/a?b#c",
         KPOpenedUrl::Capture{QStringLiteral("HTTPS://example.org/a?b#c")}},
        {u"file:///a%23b#c", File{QStringLiteral("/a#b")}},
    };
    for (const auto &each : cases) {
        const QString url = QString::fromUtf16(each.url);
        const auto wish = KPOpenedUrl::parse(url);
        ASSERT_TRUE(wish) << url.toStdString();
        EXPECT_EQ(*wish, each.wish) << url.toStdString();
    }
}

TEST(OpenedUrl, RefusesTheRest)
{
    const QString megabyte = QStringLiteral("murn://search/") + QString(1 << 20, u'x');
    const QString nul = QStringLiteral("file:///a") + QChar(u'\0');
    for (const QString &url :
         {QString(), QStringLiteral("murn:"), QStringLiteral("ftp://example.org/"),
          QStringLiteral("javascript:1"), QStringLiteral("/etc/passwd"), QStringLiteral("file:"),
          QStringLiteral("file://other.host/a"), QStringLiteral("file:a"),
          QStringLiteral("file:///a%00b"), QStringLiteral("murn://search/%00"),
          QStringLiteral("murn://search/%4"), QStringLiteral("murn://search/%zz"), nul, megabyte})
        EXPECT_FALSE(KPOpenedUrl::parse(url)) << url.left(40).toStdString();
}

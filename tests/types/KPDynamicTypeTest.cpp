#include "KPDynamicType.h"
#include "KPFileType.h"

#include "XPPath.h"

#include <gtest/gtest.h>
#include <random>

// Identifiers that are in circulation, made by other programs.
TEST(KPDynamicType, HasThePubliclyKnownForm)
{
    EXPECT_EQ(KPDynamicType::forExtension(QStringLiteral("md")),
              QStringLiteral("dyn.ah62d4rv4ge8043a"));
    EXPECT_EQ(KPDynamicType::forExtension(QStringLiteral("scala")),
              QStringLiteral("dyn.ah62d4rv4ge81g25brvuu"));
    const auto pasteboard = KPDynamicType::decode(
        u"dyn.ah62d4rv4gu8yc6durvwwa3xmrvw1gkdusm1044pxqyuha2pxsvw0e55bsmwca7d3sbwu");
    ASSERT_TRUE(pasteboard);
    EXPECT_EQ(pasteboard->tagClass, QStringLiteral("com.apple.nspboard-type"));
    EXPECT_EQ(pasteboard->tag, QStringLiteral("Apple files promise pasteboard type"));
    EXPECT_EQ(KPDynamicType::osTypeOf(u"dyn.ah62d4rv4gk81g7d3ru"), QStringLiteral("styl"));
}

TEST(KPDynamicType, DecodesBackToAnyExtension)
{
    std::mt19937 random(11);
    QStringList extensions{QStringLiteral("a b"),      QStringLiteral("tar.gz"),
                           QStringLiteral("FoO"),      QStringLiteral("a:b=c,d\\e?f\\"),
                           QStringLiteral("?"),        QStringLiteral("\U0001F600"),
                           QString(300, u'x'),         QString(300, u'\u00fc'),
                           XPPath::decode("\xff\xc3"), QStringLiteral("1"),
                           QStringLiteral("0=6")};
    for (int round = 0; round < 5000; ++round) {
        QByteArray bytes;
        for (size_t left = 1 + random() % 20; left > 0; --left)
            bytes.append(static_cast<char>(1 + random() % 255));
        extensions.append(XPPath::decode(bytes));
    }
    for (const QString &extension : extensions) {
        const QString identifier = KPDynamicType::forExtension(extension);
        ASSERT_TRUE(identifier.startsWith(u"dyn.a"));
        ASSERT_EQ(KPDynamicType::extensionOf(identifier), extension) << qPrintable(identifier);
        ASSERT_EQ(KPDynamicType::decode(identifier)->conformsTo,
                  QStringList{QStringLiteral("public.data")});
    }
}

TEST(KPDynamicType, RefusesWhatIsNotOfTheForm)
{
    EXPECT_EQ(KPDynamicType::forExtension({}), QString());
    EXPECT_EQ(KPDynamicType::forExtension(QString(QChar(char16_t{0xD800}))), QString());
    // "dyn.agq8u" and the like: valid digits, no text of the form inside.
    for (const QStringView text : {u"dyn.", u"dyn.a", u"dyn.b", u"dyn.ai", u"dyn.a\u0161",
                                   u"dyn.agq8u", u"com.adobe.pdf", u"", u"dyn.ah62d4rv4g"})
        EXPECT_FALSE(KPDynamicType::decode(text)) << qPrintable(text.toString());
}

// Letter case is no difference between files' types, so FOO and foo share one.
TEST(KPDynamicType, OneTypePerExtensionWhateverItsCase)
{
    EXPECT_EQ(KPFileType::preferredUTIForExtension(QStringLiteral("XqZ")),
              KPFileType::preferredUTIForExtension(QStringLiteral("xqz")));
    const QString type = KPFileType::preferredUTIForExtension(QStringLiteral("xqz"));
    EXPECT_EQ(KPFileType::fileExtensionForUTI(type), QStringLiteral("xqz"));
    EXPECT_EQ(KPFileType::allUTIsForExtension(QStringLiteral("xqz"), false), QStringList{type});
    EXPECT_TRUE(KPFileType::allUTIsForExtension(QStringLiteral("xqz"), true).isEmpty());
    EXPECT_TRUE(KPFileType::allUTIsForExtension({}, false).isEmpty());
}

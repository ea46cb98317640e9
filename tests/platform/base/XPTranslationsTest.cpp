#include "XPTranslations.h"

#include <gtest/gtest.h>

// Qt answers an unknown id with the id itself: that the window would show it is the fault.
TEST(Translations, FollowTheLocaleAndFallBackToEnglish)
{
    XPTranslations::install(QLocale(QLocale::Icelandic));
    EXPECT_EQ(qtTrId("KPExtensionTypeTemplate"), QStringLiteral("%1 file"));
    EXPECT_EQ(qtTrId("KPStars", 1), QStringLiteral("1 star"));
    XPTranslations::install(QLocale(QLocale::German, QLocale::Austria));
    EXPECT_EQ(qtTrId("KPExtensionTypeTemplate"), QStringLiteral("%1-Datei"));
    EXPECT_EQ(qtTrId("KPStars", 2), QStringLiteral("2 Sterne"));
}

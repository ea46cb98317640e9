#include "XPTranslations.h"

#include <gtest/gtest.h>

// Qt answers an unknown id with the id itself: that the window would show it is the fault.
TEST(Translations, FallBackToEnglishInALanguageThatWeDoNotHave)
{
    XPTranslations::install(QLocale(QLocale::Icelandic));
    EXPECT_EQ(qtTrId("KPExtensionTypeTemplate"), QStringLiteral("%1 file"));
}

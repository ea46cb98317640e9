#include "KPElidedName.h"

#include <QFontMetrics>
#include <QStringList>
#include <gtest/gtest.h>

TEST(ElidedName, KeepsBothEndsWithinTheWidth)
{
    const QFontMetrics metrics((QFont()));
    for (const QString &name :
         {QStringLiteral("A very long name of a quarterly report v12.pdf"),
          QString::fromUtf8("דוח רבעוני מאוד ארוך של החברה לשנת 2024.pdf"),
          QStringLiteral("no extension but a rather long name all the same"),
          QStringLiteral("Beratungsunterlagen.anUnusuallyLongExtension"),
          QString(QStringLiteral("e\u0301")).repeated(60) + QStringLiteral(".txt")}) {
        for (const int width : {20, 60, 90, 120, 200}) {
            const QString cut = kpElidedName(name, metrics, width);
            EXPECT_TRUE(metrics.horizontalAdvance(cut) <= width || cut.size() <= 6)
                << cut.toStdString();
            EXPECT_EQ(cut.count(QChar(0x2026)), 1);
            const QStringList parts = cut.split(QChar(0x2026));
            EXPECT_TRUE(name.startsWith(parts.first()) && name.endsWith(parts.last()));
            if (width >= 120) {
                EXPECT_TRUE(!parts.first().isEmpty() && !parts.last().isEmpty());
            }
            EXPECT_FALSE(parts.last().startsWith(QChar(0x301)))
                << "a letter was torn from its mark";
        }
        EXPECT_EQ(kpElidedName(name, metrics, 5000), name);
    }
    const QString report = QStringLiteral("A very long name of a quarterly report v12.pdf");
    EXPECT_TRUE(kpElidedName(report, metrics, 120).endsWith(u"v12.pdf"));
}

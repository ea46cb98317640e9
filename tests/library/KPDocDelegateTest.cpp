#include "KPDocDelegate.h"

#include <QFontMetrics>
#include <gtest/gtest.h>

TEST(Names, KeepTheirExtensionInSight)
{
    const QFontMetrics metrics((QFont()));
    const QString name = QStringLiteral("A very long name of a quarterly report v12.pdf");
    for (const int width : {90, 120, 200}) {
        const QString cut = KPDocDelegate::elidedName(name, metrics, width);
        EXPECT_TRUE(cut.endsWith(u"v12.pdf")) << cut.toStdString();
        EXPECT_LE(metrics.horizontalAdvance(cut), width + metrics.averageCharWidth());
    }
}

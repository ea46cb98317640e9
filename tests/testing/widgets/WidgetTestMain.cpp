#include "TestHome.h"
#include "XPTranslations.h"

#include <QApplication>
#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    usePrivateHome();
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    XPTranslations::install(QLocale(QLocale::English));
    return RUN_ALL_TESTS();
}

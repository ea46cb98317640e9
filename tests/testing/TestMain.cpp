#include "TestHome.h"

#include <QCoreApplication>
#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    usePrivateHome();
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}

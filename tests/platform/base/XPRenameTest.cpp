#include "XPRename.h"

#include "TestHome.h"
#include "XPFileInfo.h"
#include "XPPath.h"

#include <cerrno>
#include <gtest/gtest.h>
#include <thread>

TEST(Rename, ReplacesNothing)
{
    const TestFolder folder;
    const QString path = folder.file(QStringLiteral("a"), "mine");
    const QString taken = folder.file(QStringLiteral("b"), "other's");
    const QString odd = folder.path(XPPath::decode("odd \x80"));
    EXPECT_EQ(XPRename::toFreeName(path, taken)->code, EEXIST);
    EXPECT_EQ(XPFileInfo::read(taken)->size, 7);
    EXPECT_FALSE(XPRename::toFreeName(path, odd));
    EXPECT_EQ(XPFileInfo::read(odd)->size, 4);
    EXPECT_EQ(XPRename::toFreeName(path, taken + u'2')->kind, XPError::Kind::NotFound);
    (void)folder.file(QStringLiteral("folder/inside"));
    EXPECT_FALSE(XPRename::toFreeName(folder.path(QStringLiteral("folder")),
                                      folder.path(QStringLiteral("moved"))));
    EXPECT_TRUE(XPFileInfo::read(folder.path(QStringLiteral("moved/inside"))));
    EXPECT_EQ(XPRename::toFreeName(odd, {})->kind, XPError::Kind::InvalidArgument);
}

TEST(Rename, LetsOneOfSeveralHaveTheName)
{
    const TestFolder folder;
    std::atomic<int> renamed = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        const QString path = folder.file(QString::number(i));
        threads.emplace_back([&, path] {
            if (!XPRename::toFreeName(path, folder.path(QStringLiteral("name"))))
                ++renamed;
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(renamed, 1);
}

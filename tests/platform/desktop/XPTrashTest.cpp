#include "XPTrash.h"

#include "TestHome.h"
#include "XPFileInfo.h"
#include "XPFolders.h"
#include "XPPath.h"

#include <cstdio>
#include <gtest/gtest.h>

// The private home and the test's folder are on one file system: all goes to the home's trash.

TEST(Trash, TakesFilesOfAnyName)
{
    const TestFolder folder;
    for (const QByteArray &name : {QByteArray("a.pdf"), QByteArray("new\nline \xC3\xA9 %41"),
                                   QByteArray("undecodable \x80\xFF")}) {
        const QString path = folder.path(XPPath::decode(name));
        (void)folder.file(XPPath::decode(name), "bytes");
        const auto error = XPTrash::move(path);
        ASSERT_FALSE(error) << error->message.toStdString();
        EXPECT_FALSE(XPFileInfo::read(path));
        const QString there = XPFolders::trash() + QStringLiteral("/files/") + XPPath::decode(name);
        const auto info = XPFileInfo::read(there);
        ASSERT_TRUE(info) << name.toStdString();
        EXPECT_EQ(info->size, 5);
        if (name.contains('\x80')) { // which the private home could not be cleaned of
            const QByteArray trash = XPPath::encode(XPFolders::trash());
            std::remove(XPPath::encode(there).constData());
            EXPECT_EQ(std::remove((trash + "/info/" + name + ".trashinfo").constData()), 0);
        }
    }
    (void)folder.file(QStringLiteral("a.pdf"), "another");
    EXPECT_FALSE(XPTrash::move(folder.path(QStringLiteral("a.pdf"))));
    EXPECT_EQ(XPFileInfo::read(XPFolders::trash() + QStringLiteral("/files/a.pdf"))->size, 5)
        << "what was thrown away before is kept";
}

TEST(Trash, LeavesWhatItCannotTake)
{
    const TestFolder folder;
    const auto error = XPTrash::move(folder.path(QStringLiteral("none")));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->kind, XPError::Kind::NotFound);
    EXPECT_EQ(XPTrash::move(QStringLiteral("relative"))->kind, XPError::Kind::InvalidArgument);
    EXPECT_EQ(XPTrash::move({})->kind, XPError::Kind::InvalidArgument);
    // A file system that desktops keep no trash on: the kernel's own.
    EXPECT_TRUE(XPTrash::move(QStringLiteral("/proc/self/status")));
}

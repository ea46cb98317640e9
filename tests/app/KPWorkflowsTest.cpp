#include "KPWorkflows.h"

#include "TestHome.h"
#include "XPAtomicFile.h"
#include "XPFileInfo.h"
#include "XPFolders.h"
#include "XPPath.h"

#include <QDir>
#include <gtest/gtest.h>
#include <sys/stat.h>

TEST(Workflows, ReplaceAnOlderScriptAndKeepItInTheTrash)
{
    const TestFolder folder;
    const QString script = folder.file(QStringLiteral("new.sh"), "new");
    EXPECT_EQ(::chmod(XPPath::encode(script).constData(), 0755), 0);
    const QString target = folder.path(QStringLiteral("Tag with Murn"));
    EXPECT_FALSE(KPWorkflows::installOne(script, target));
    EXPECT_EQ(XPFileInfo::read(target)->mode & 0777U, 0755U);
    const auto before = XPFileInfo::read(target);
    EXPECT_FALSE(KPWorkflows::installOne(script, target));
    EXPECT_EQ(XPFileInfo::read(target)->changed, before->changed) << "the same: nothing is done";
    EXPECT_FALSE(XPAtomicFile::write(target, "older, or the user's"));
    EXPECT_FALSE(KPWorkflows::installOne(script, target));
    EXPECT_EQ(XPAtomicFile::read(target).valueOr({}), "new");
    EXPECT_TRUE(KPWorkflows::installOne(folder.path(QStringLiteral("gone")), target));
    EXPECT_EQ(XPAtomicFile::read(target).valueOr({}), "new");
}

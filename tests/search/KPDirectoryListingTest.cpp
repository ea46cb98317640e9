#include "KPDirectoryListing.h"

#include "TestHome.h"
#include "TestSystem.h"
#include "XPPath.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

namespace {

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

QStringList names(const KPDirectoryListing &listing)
{
    QStringList names;
    for (const auto &child : listing.children())
        names.append(child.name);
    return names;
}

} // namespace

TEST(DirectoryListing, SortsAsFileManagersDo)
{
    const TestFolder tree;
    const QString odd = XPPath::decode("odd\xff.txt");
    QDir().mkpath(tree.path(text("folder")));
    QDir().mkpath(tree.path(text("Thing.app")));
    for (const QString &name : {text("page 10"), text("page 9"), text("Äpfel"), text("apfel 2"),
                                text("zebra"), text(".hidden"), odd})
        tree.file(name, "12345");
    ASSERT_TRUE(QFile::link(tree.path(text("folder")), tree.path(text("link"))));
    auto listing = KPDirectoryListing::of(tree.path());
    ASSERT_TRUE(listing);
    KPDirectoryListing sorted = *listing;
    sorted.displayNameSortFinderStyle();
    EXPECT_EQ(names(sorted),
              (QStringList{text("Äpfel"), text("apfel 2"), text("folder"), text("link"), odd,
                           text("page 9"), text("page 10"), text("Thing.app"), text("zebra")}));
    for (const auto &child : sorted.children()) {
        EXPECT_EQ(child.isFolder, child.name == u"folder") << qPrintable(child.name);
        EXPECT_EQ(child.isPackage, child.name == u"Thing.app") << qPrintable(child.name);
        EXPECT_TRUE(XPFileInfo::read(sorted.pathOf(child)));
        EXPECT_TRUE(!child.info.isRegular() || child.info.size == 5);
    }
    EXPECT_EQ(names(*KPDirectoryListing::of(tree.path(), {false, true, {}})),
              QStringList{text("folder")});
    EXPECT_TRUE(
        names(*KPDirectoryListing::of(tree.path(), {true, false, {}})).contains(text(".hidden")));
}

TEST(DirectoryListing, SaysWhyThereIsNone)
{
    const TestFolder tree;
    const auto kindOf = [](const QString &folder, const KPDirectoryListing::Options &options) {
        const auto listing = KPDirectoryListing::of(folder, options);
        return listing ? std::optional<XPError::Kind>() : listing.error().kind;
    };
    EXPECT_EQ(kindOf(tree.path(text("gone")), {}), XPError::Kind::NotFound);
    EXPECT_NE(kindOf(tree.file(text("file")), {}), std::nullopt);
    EXPECT_EQ(kindOf(tree.path(), {false, false, [] { return true; }}), XPError::Kind::Cancelled);
    const int answer = asPlainUser(tree.path(), [&] {
        QDir().mkpath(tree.path(text("shut")));
        QFile::setPermissions(tree.path(text("shut")), {});
        return kindOf(tree.path(text("shut")), {}) == XPError::Kind::NotPermitted ? 0 : 1;
    });
    EXPECT_EQ(answer, 0) << "unreadable is not empty";
}

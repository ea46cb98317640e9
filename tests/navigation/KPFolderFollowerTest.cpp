#include "KPFolderFollower.h"

#include "FollowedSearch.h"
#include "KPBookmarks.h"
#include "KPLocationItem.h"
#include "KPRecentLocations.h"
#include "TestNavigator.h"
#include "UserDefaults.h"
#include "XPAtomicFile.h"
#include "XPFolders.h"
#include "XPPath.h"

#include <QDir>
#include <gtest/gtest.h>

TEST(FolderFollower, FindsFoldersOfSavedSearchesAndRecentPlaces)
{
    UserDefaults::standard().setValue(KPRecentLocations::numberKey, PropertyValue::integer(10));
    IndexedFolder folder;
    TestNavigator navigator{folder.index()};
    const auto inFolder = [&](const char *name) { return folder.path(QString::fromLatin1(name)); };
    for (const char *name : {"Letters/a.pdf", "Trips/b.pdf", "Other/c.pdf"})
        folder.file(QString::fromLatin1(name));
    KPBookmarks bookmarks;
    const auto lettersState = KPSearchState::blankSearchState()
                                  ->searchStateByAddingTag(QStringLiteral("work"))
                                  ->searchStateWithNewContstraintFolders({inFolder("Letters")});
    ASSERT_FALSE(bookmarks.insert({KPBookmark::search(QStringLiteral("Work"), *lettersState)}));
    const KPFolderFollower follower(*navigator.crumbs, bookmarks);
    navigator.crumbs->showLocation(KPLocationItem::withFolder(inFolder("Trips")));
    const QString remembered =
        XPFolders::ourApplicationSupport() + QStringLiteral("/folderBookmarks.plist");
    ASSERT_TRUE(FollowedSearch::waitFor([&] {
        const QByteArray bytes = XPAtomicFile::read(remembered).valueOr({});
        return bytes.contains("/Letters") && bytes.contains("/Trips");
    }));

    QDir().rename(inFolder("Letters"), inFolder("Post"));
    QDir().rename(inFolder("Trips"), inFolder("Journeys"));
    const auto shows = [&](const char *name) {
        return FollowedSearch::waitFor(
            [&] { return navigator.state()->constraintFolders() == QStringList{inFolder(name)}; });
    };
    navigator.crumbs->applyState(bookmarks.all().first().bookmark->searchState());
    EXPECT_TRUE(shows("Post"));
    EXPECT_TRUE(navigator.state()->hasSearchTag(QStringLiteral("work")));
    EXPECT_FALSE(navigator.wasRemembered) << "the history has the search that was asked for";
    EXPECT_EQ(navigator.crumbs->locationItem()->folders(), QStringList{inFolder("Post")});
    navigator.crumbs->showLocation(KPLocationItem::withFolder(inFolder("Trips")));
    EXPECT_TRUE(shows("Journeys"));

    // What is at the path is what is meant, and what is nowhere keeps its path.
    QDir().mkpath(inFolder("Letters"));
    navigator.crumbs->applyState(bookmarks.all().first().bookmark->searchState());
    navigator.crumbs->showLocation(KPLocationItem::withFolder(inFolder("Other")));
    EXPECT_TRUE(shows("Other"));
    ASSERT_TRUE(QDir(inFolder("Letters")).removeRecursively());
    ASSERT_TRUE(QDir(inFolder("Post")).removeRecursively());
    navigator.crumbs->applyState(bookmarks.all().first().bookmark->searchState());
    EXPECT_TRUE(shows("Letters"));
}

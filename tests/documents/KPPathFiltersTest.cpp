#include "KPPathFilters.h"

#include "XPFolders.h"
#include "XPPath.h"

#include <gtest/gtest.h>

namespace {

struct Row
{
    const char *name;
    const char *path; // "~", "DATA", "CACHE" and "CONFIG" in front: the user's folders
    bool shown;       // everything asked for
    bool queried;     // a metadata query
};

QByteArray expanded(QByteArray path)
{
    const auto replace = [&](const QByteArray &what, const QString &folder) {
        if (path.startsWith(what))
            path = XPPath::encode(folder) + path.mid(what.size());
    };
    replace("~", XPFolders::home());
    replace("DATA", XPFolders::applicationSupport());
    replace("CACHE", XPFolders::caches());
    replace("CONFIG", XPFolders::configuration());
    return path;
}

class PathFilters : public testing::TestWithParam<Row>
{
};

} // namespace

TEST_P(PathFilters, PassWhatALibraryShows)
{
    const QByteArray path = expanded(GetParam().path);
    EXPECT_EQ(KPPathFilters::passesExcludePaths(path), GetParam().shown);
    EXPECT_EQ(KPPathFilters::passesMDQueryExcludePaths(path), GetParam().queried);
    const auto both = KPPathFilters::passes(path);
    EXPECT_EQ(both.excludePaths, GetParam().shown);
    EXPECT_EQ(both.mdQueryExcludePaths, GetParam().queried);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, PathFilters,
    testing::Values(
        Row{"NoPath", "", false, false}, //
        Row{"Document", "~/Documents/a.pdf", true, true},
        Row{"OtherVolume", "/media/ann/disk/a.pdf", true, true},
        Row{"VolumesTrash", "/Volumes/disk/.Trashes/501/a.pdf", false, false},
        Row{"OldTrash", "~/.Trash/a.pdf", false, false}, Row{"TrashItself", "~/.Trash", true, true},
        Row{"HomeTrash", "DATA/Trash/files/a.pdf", false, false},
        Row{"UsersTrash", "/media/disk/.Trash-1000/files/a.pdf", false, false},
        Row{"SharedTrash", "/media/disk/.Trash/1000/files/a.pdf", false, false},
        Row{"NoTrash", "~/.Trash-can/a.pdf", true, true},
        Row{"Mail", "~/Library/Mail/a.emlx", true, true},
        Row{"Preferences", "~/Library/Preferences/a.plist", true, false},
        Row{"NamedLikeLibrary", "~/Library of papers/a.pdf", true, false},
        Row{"OthersLibrary", "/home/someone/Library/Preferences/a.plist", true, true},
        Row{"SystemLibrary", "/Library/Fonts/a.ttf", true, false},
        Row{"CachedMetadata", "/Library/Caches/Metadata/a", true, true},
        Row{"Cached", "~/Library/Caches/a", true, false},
        Row{"CachedMail", "/Library/Caches/x/Library/Mail/a", true, false},
        Row{"InboxOfOld", "~/Library/Application Support/Zel/Pending Documents/a", true, true},
        Row{"Cards", "~/Library/Application Support/AddressBook/Metadata/a.abcdp", true, true},
        Row{"OwnThumbnails", "/data/Zel/thumbnails/a.png", true, false},
        Row{"PhotoData", "/data/iPhoto Library/Data/a.jpg", true, false},
        Row{"Private", "/private/a", true, false}, //
        Row{"Programs", "/usr/share/doc/a.txt", true, false},
        Row{"CacheHere", "CACHE/thumbnails/normal/a.png", true, false},
        Row{"DataHere", "DATA/evolution/a", true, false},
        Row{"SettingsHere", "CONFIG/murn/a", true, false},
        Row{"InboxHere", "DATA/Zel/Pending Documents/a.pdf", true, true},
        Row{"NamedLikeData", "DATAbase/a.pdf", true, true}),
    [](const auto &row) { return std::string(row.param.name); });

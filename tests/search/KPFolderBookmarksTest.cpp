#include "KPFolderBookmarks.h"

#include "TestHome.h"
#include "XPAliasRecord.h"
#include "XPAtomicFile.h"
#include "XPPropertyList.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

namespace {

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

QByteArray field(quint16 tag, const QByteArray &bytes)
{
    const auto number = [](qsizetype value) {
        return QByteArray(1, static_cast<char>(value >> 8)) + static_cast<char>(value & 0xFF);
    };
    return number(tag) + number(bytes.size()) + bytes + QByteArray(bytes.size() % 2, '\0');
}

QByteArray alias(const QByteArray &fields)
{
    QByteArray head(150, '\0');
    head[7] = 2;
    return head + fields + QByteArray("\xff\xff\0\0", 4);
}

void write(const QString &path, const PropertyValue &value)
{
    const auto bytes = XPPropertyList::writeXml(value);
    ASSERT_TRUE(bytes);
    ASSERT_FALSE(XPAtomicFile::write(path, *bytes));
}

} // namespace

TEST(FolderAlias, NamesAPath)
{
    const struct
    {
        const char *name = nullptr;
        QByteArray record;
        const char *path = nullptr; // null: refused
    } cases[] = {
        {"on the disk", alias(field(18, "Users/ann/a") + field(19, "/")), "/Users/ann/a"},
        {"on a volume", alias(field(19, "/Volumes/x") + field(18, "b")), "/Volumes/x/b"},
        {"other fields", alias(field(2, "odd") + field(18, "c")), "/c"},
        {"no path", alias(field(19, "/")), nullptr},
        {"cut", alias(field(18, "Users/ann/a")).left(158), nullptr},
        {"a NUL", alias(field(18, QByteArray("a\0b", 3))), nullptr},
        {"another version", QByteArray(200, '\3'), nullptr},
        {"empty", {}, nullptr},
    };
    for (const auto &row : cases) {
        const auto path = XPAliasRecord::path(row.record);
        EXPECT_EQ(path.hasValue(), row.path != nullptr) << row.name;
        if (path && row.path) {
            EXPECT_EQ(*path, text(row.path)) << row.name;
        }
    }
}

TEST(FolderBookmarks, OutliveTheProcessAndAMoveElsewhere)
{
    const TestFolder tree;
    QDir().mkpath(tree.path(text("here/work")));
    QDir().mkpath(tree.path(text("there")));
    const QString work = tree.path(text("here/work"));
    const QString moved = tree.path(text("there/work"));
    EXPECT_EQ(KPFolderBookmarks(tree.path()).bookmarkedFolderArray({work}), QStringList{work});
    ASSERT_TRUE(QDir().rename(work, moved));
    KPFolderBookmarks bookmarks(tree.path());
    EXPECT_EQ(bookmarks.bookmarkedFolderArray({work}), QStringList{work}) << "kept, not found";
    EXPECT_EQ(bookmarks.previouslyResolvedBookmark(work), std::nullopt);
    bookmarks.setFinder([&](const QString &name) {
        EXPECT_EQ(name, text("work"));
        return QStringList{tree.path(), moved};
    });
    EXPECT_EQ(bookmarks.bookmarkedFolderArray({work}), QStringList{moved});
    EXPECT_EQ(bookmarks.previouslyResolvedBookmark(work), moved);
    // A new folder with the same name elsewhere is another folder.
    ASSERT_TRUE(QDir().rmdir(moved));
    QDir().mkpath(tree.path(text("there/work")));
    EXPECT_EQ(KPFolderBookmarks(tree.path()).resolvePathWithBookmark(work), std::nullopt);
}

TEST(FolderBookmarks, ReadTheOlderFileAndLeaveIt)
{
    const TestFolder tree;
    QDir().mkpath(tree.path(text("now")));
    const QString older = tree.path(text("folderAliases.plist"));
    write(older, PropertyValue::Dictionary{
                     {text("/was/here"), alias(field(18, tree.path(text("now")).toUtf8()))},
                     {text("/broken"), QByteArray("x")}});
    const auto before = XPAtomicFile::read(older);
    KPFolderBookmarks bookmarks(tree.path());
    EXPECT_EQ(bookmarks.bookmarkedFolderArray({text("/was/here"), text("/broken")}),
              (QStringList{tree.path(text("now")), text("/broken")}));
    EXPECT_EQ(XPAtomicFile::read(older).valueOr({}), before.valueOr({}));
}

TEST(FolderBookmarks, AreNeverWrittenOverWhatCannotBeRead)
{
    const TestFolder tree;
    const QString work = tree.path(text("work"));
    QDir().mkpath(work);
    const QString file = tree.path(text("folderBookmarks.plist"));
    ASSERT_FALSE(XPAtomicFile::write(file, "bplist00 and rubbish"));
    KPFolderBookmarks(tree.path()).bookmarkedFolderArray({work});
    EXPECT_EQ(XPAtomicFile::read(file + text(".damaged")).valueOr({}), "bplist00 and rubbish");
    EXPECT_TRUE(XPPropertyList::read(XPAtomicFile::read(file).valueOr({})));
    // A folder in its place cannot be read at all.
    ASSERT_TRUE(QFile::remove(file));
    QDir().mkpath(file + text("/kept"));
    KPFolderBookmarks(tree.path()).bookmarkedFolderArray({work});
    EXPECT_TRUE(QDir(file).exists(text("kept")));
}

#include "Murnctl.h"

#include "KPBookmark.h"
#include "TestHome.h"
#include "XPAtomicFile.h"
#include "XPFolders.h"
#include "XPPath.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonObject>
#include <gtest/gtest.h>

namespace {

class MurnctlBookmarks : public testing::Test
{
protected:
    MurnctlBookmarks()
    {
        folder.file(QStringLiteral("picture.png"), "\x89PNG\r\n\x1a\n");
        EXPECT_EQ(run({"index", "add", "."}).status, 0);
    }
    ~MurnctlBookmarks() override { run({"index", "remove", "."}); }
    MurnctlResult run(const QByteArrayList &words) const { return murnctl(words, folder.path()); }
    QJsonArray all() const { return run({"bookmarks", "--json"}).json().array(); }
    // Saves a search, as a user would do it.
    MurnctlResult save(const char *name, const QByteArrayList &criteria) const
    {
        const QString file =
            elsewhere.file(QStringLiteral("state.json"),
                           run(QByteArrayList{"find", "--print-state"} + criteria).out);
        return run({"bookmarks", "add", name, "--state", XPPath::encode(file)});
    }

    const TestFolder elsewhere;
    const TestFolder folder;
    const QString note = folder.file(QStringLiteral("note.txt"), "a note");
};

} // namespace

TEST_F(MurnctlBookmarks, AreSavedListedRunAndRemoved)
{
    EXPECT_EQ(run({"bookmarks"}).out, "");
    const QByteArrayList texts = {"--in", ".", "--type", "public.plain-text"};
    ASSERT_EQ(save("Äll the notes", texts).status, 0);
    ASSERT_EQ(save("tagged", {"--tag", "w\xC3\xB6rk", "--in", "."}).status, 0);
    const auto twice = save("ÄLL the notes", texts);
    EXPECT_EQ(twice.status, 1);
    EXPECT_TRUE(twice.err.contains("already")) << twice.err.constData();

    const QByteArrayList lines = run({"bookmarks", "list"}).out.split('\n');
    ASSERT_EQ(lines.size(), 3);
    EXPECT_TRUE(lines[0].startsWith("Äll the notes\t")) << lines[0].constData();
    EXPECT_TRUE(lines[1].contains("w\xC3\xB6rk")) << "the search in words";
    EXPECT_EQ(run({"bookmarks", "--print0"}).out, QByteArray("Äll the notes\0tagged\0", 22));

    EXPECT_EQ(run({"bookmarks", "run", "äll THE notes"}).out, XPPath::encode(note) + '\n');
    EXPECT_EQ(run({"bookmarks", "run", "--count", "Äll the notes"}).out, "1\n");
    EXPECT_EQ(run({"bookmarks", "run", "tagged"}).out, "");

    const QJsonObject first = all().first().toObject();
    EXPECT_EQ(run({"bookmarks", "remove", first[QStringLiteral("identifier")].toString().toUtf8()})
                  .status,
              0);
    EXPECT_EQ(all().size(), 1);
    const auto gone = run({"bookmarks", "run", "Äll the notes"});
    EXPECT_EQ(gone.status, 1);
    EXPECT_TRUE(gone.err.contains("no saved search")) << gone.err.constData();
}

TEST_F(MurnctlBookmarks, RefuseWhatIsMeantForAnother)
{
    for (const QByteArrayList &words : {QByteArrayList{"run"},
                                        {"run", " "},
                                        {"add", "x"},
                                        {"sing", "x"},
                                        {"remove", "x", "y"},
                                        {"list", "--yes"},
                                        {"list", "--count"},
                                        {"run", "x", "--state", "y"}})
        EXPECT_EQ(run(QByteArrayList{"bookmarks"} + words).status, 2) << words.join(' ').data();
}

// The window makes folders; a name is what the list prints.
TEST_F(MurnctlBookmarks, AreNamedWithTheirFolders)
{
    ASSERT_EQ(save("due", {"--tag", "a"}).status, 0);
    const QString file = XPFolders::ourApplicationSupport() + QStringLiteral("/bookmarks.plist");
    const auto contents = KPBookmarkFile::parse(*XPAtomicFile::read(file));
    ASSERT_TRUE(contents);
    KPBookmark root = contents->root;
    const KPBookmark due = root.children.first();
    KPBookmark other = due;
    other.identifier = QStringLiteral("other");
    root.children = {KPBookmark::folder(QStringLiteral("Work"), {due}), other};
    ASSERT_FALSE(XPAtomicFile::write(file, *KPBookmarkFile::bytes(root)));

    EXPECT_EQ(run({"bookmarks", "--print0"}).out, QByteArray("Work\0Work/due\0due", 17) + '\0');
    EXPECT_TRUE(run({"bookmarks"}).out.startsWith("Work/\t\n"));
    EXPECT_EQ(run({"bookmarks", "run", "work/DUE"}).status, 0);
    EXPECT_EQ(run({"bookmarks", "run", "Work"}).status, 1) << "a folder";
    const auto kept = run({"bookmarks", "remove", "Work/"});
    EXPECT_EQ(kept.status, 1);
    EXPECT_TRUE(kept.err.contains("--yes")) << kept.err.constData();
    EXPECT_EQ(run({"bookmarks", "remove", "--yes", "Work/"}).status, 0);
    EXPECT_EQ(run({"bookmarks", "--print0"}).out, QByteArray("due", 4));
}

// A damaged list is set aside and said, and what is saved then is not written over it.
TEST_F(MurnctlBookmarks, SayThatTheListIsDamaged)
{
    ASSERT_EQ(save("kept", {"--tag", "a"}).status, 0);
    const QString file = XPFolders::ourApplicationSupport() + QStringLiteral("/bookmarks.plist");
    const auto whole = XPAtomicFile::read(file);
    ASSERT_TRUE(whole) << file.toStdString();
    const QByteArray half = whole->first(whole->size() / 2);
    ASSERT_FALSE(XPAtomicFile::write(file, half));
    const auto listed = run({"bookmarks"});
    EXPECT_EQ(listed.out, "");
    EXPECT_TRUE(listed.err.contains("could not be read")) << listed.err.constData();
    ASSERT_EQ(save("new", {"--tag", "b"}).status, 0);
    const QDir support(XPPath::folder(file));
    bool isKept = false;
    for (const QString &name : support.entryList(QDir::Files | QDir::Hidden))
        isKept = isKept || *XPAtomicFile::read(support.filePath(name)) == half;
    EXPECT_TRUE(isKept) << "what is left of the old list";
    ASSERT_FALSE(XPAtomicFile::write(file, *whole));
    EXPECT_EQ(run({"bookmarks", "run", "kept"}).status, 0);
}

TEST_F(MurnctlBookmarks, FindTheTypesOfAGroupToo)
{
    const QByteArrayList images = {"find", "--in", ".", "--group-of-types", "images"};
    const auto found = run(images);
    EXPECT_EQ(found.out, XPPath::encode(folder.path(QStringLiteral("picture.png"))) + '\n')
        << found.err.constData();
    EXPECT_EQ(run(images + QByteArrayList{"--type", "public.plain-text", "--count"}).out, "2\n");
    const auto none = run({"find", "--group-of-types", "imagery"});
    EXPECT_EQ(none.status, 2);
    EXPECT_TRUE(none.err.contains("there are: ")) << none.err.constData();
}

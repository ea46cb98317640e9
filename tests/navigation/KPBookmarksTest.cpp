#include "KPBookmarks.h"

#include "KPBookmarkItems.h"
#include "KPDocPasteboard.h"
#include "KPLocationItem.h"
#include "KPSearchFolders.h"
#include "TestHome.h"
#include "TitledBookmark.h"
#include "XPAtomicFile.h"
#include "XPPath.h"
#include "XPTranslations.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QFile>
#include <QLocale>
#include <QMimeData>
#include <QThread>
#include <QTimer>
#include <gtest/gtest.h>

static KPSearchState::Ptr tagged(const char *tag)
{
    return KPSearchState::blankSearchState()->searchStateByAddingTag(QString::fromUtf8(tag));
}

static KPBookmark search(const char *title)
{
    return KPBookmark::search(QString::fromUtf8(title), *tagged(title));
}

// "a[b c[d]]e": titles, folders with what they hold.
static QString shape(const KPBookmark &above)
{
    QStringList titles;
    for (const KPBookmark &each : above.children)
        titles.append(each.isFolder ? each.title + u'[' + shape(each) + u']' : each.title);
    return titles.join(u' ');
}

class Bookmarks : public testing::Test
{
protected:
    QString id(const char *title, const KPBookmarks &list) const
    {
        const KPBookmark *found = titled(list, QString::fromUtf8(title));
        return found ? found->identifier : QString();
    }
    TestFolder m_folder;
    const QString m_file = m_folder.path(QStringLiteral("bookmarks.plist"));
};

// What another program does: the first search that is ever saved, the next, and all taken away.
TEST_F(Bookmarks, NoticesWhatOthersChange)
{
    KPBookmarks ours(m_file);
    KPBookmarks theirs(m_file);
    const auto becomes = [&](const char *wanted) {
        const QDeadlineTimer deadline(20'000);
        while (shape(ours.root()) != QLatin1String(wanted) && !deadline.hasExpired())
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        return shape(ours.root()) == QLatin1String(wanted);
    };
    ASSERT_FALSE(theirs.insert({search("a")}));
    EXPECT_TRUE(becomes("a"));
    ASSERT_FALSE(theirs.insert({search("b")}));
    EXPECT_TRUE(becomes("a b"));
    ASSERT_TRUE(QFile::remove(m_file));
    EXPECT_TRUE(becomes(""));
    ASSERT_FALSE(theirs.insert({search("c")}));
    EXPECT_TRUE(becomes("c"));
}

TEST_F(Bookmarks, KeepsWhatWasSavedWhateverItsNames)
{
    const QString odd = XPPath::decode("/tmp/\xFF\n\x01");
    KPBookmarks list(m_file);
    const auto state = tagged("Ünicode <&>")->searchStateWithNewContstraintFolders({odd});
    ASSERT_FALSE(list.insert({KPBookmark::folder(QStringLiteral("f"), {search("b")}),
                              KPBookmark::search(QStringLiteral("two\nlines"), *state)}));
    const KPBookmarks again(m_file);
    EXPECT_EQ(again.root(), list.root());
    EXPECT_EQ(shape(again.root()), QStringLiteral("f[b] two lines"));
    EXPECT_TRUE(again.root().children.last().searchState()->isEqualToSearchState(*state));
}

TEST_F(Bookmarks, AreMovedRenamedUpdatedAndRemoved)
{
    KPBookmarks list(m_file);
    ASSERT_FALSE(list.insert({search("a"), KPBookmark::folder(QStringLiteral("f"), {search("b")}),
                              search("c"), search("d")}));
    const QString f = id("f", list);
    ASSERT_FALSE(list.move({id("a", list), id("d", list)}, {f, 1}));
    EXPECT_EQ(shape(list.root()), QStringLiteral("f[b a d] c"));
    ASSERT_FALSE(list.move({id("b", list)}, {f, 3}));
    EXPECT_EQ(shape(list.root()), QStringLiteral("f[a d b] c"));
    EXPECT_EQ(list.move({f}, {f, 0})->kind, XPError::Kind::InvalidArgument);
    ASSERT_FALSE(list.rename(id("c", list), QStringLiteral("C2")));
    ASSERT_FALSE(list.setState(id("d", list), tagged("new")->searchStateDictionary()));
    EXPECT_TRUE(
        titled(list, QStringLiteral("d"))->searchState()->hasSearchTag(QStringLiteral("new")));
    ASSERT_FALSE(list.remove({f}));
    EXPECT_EQ(shape(list.root()), QStringLiteral("C2"));
    EXPECT_EQ(list.rename(f, QStringLiteral("x"))->kind, XPError::Kind::NotFound);
    EXPECT_EQ(list.insert({search("x")}, {f, 0})->kind, XPError::Kind::NotFound);
    EXPECT_EQ(shape(KPBookmarks(m_file).root()), QStringLiteral("C2"));
}

TEST_F(Bookmarks, OfSeveralProgramsAtOnceAllStay)
{
    constexpr int programs = 4;
    constexpr int each = 10;
    std::vector<std::unique_ptr<QThread>> threads;
    threads.reserve(programs);
    for (int program = 0; program < programs; ++program)
        threads.emplace_back(QThread::create([&, program] {
            KPBookmarks list(m_file);
            for (int i = 0; i < each; ++i)
                EXPECT_FALSE(
                    list.insert({search(qPrintable(QStringLiteral("%1-%2").arg(program).arg(i)))}));
        }));
    for (const auto &thread : threads)
        thread->start();
    for (const auto &thread : threads)
        thread->wait();
    EXPECT_EQ(KPBookmarks(m_file).root().children.size(), programs * each);
}

TEST_F(Bookmarks, FollowWhatAnotherProgramChanges)
{
    KPBookmarks list(m_file);
    ASSERT_FALSE(list.insert({search("a")}));
    QEventLoop loop;
    QObject::connect(&list, &KPBookmarks::changed, &loop, &QEventLoop::quit);
    QTimer::singleShot(30'000, &loop, &QEventLoop::quit);
    KPBookmarks other(m_file);
    ASSERT_FALSE(other.insert({search("b")}));
    loop.exec();
    EXPECT_EQ(shape(list.root()), QStringLiteral("a b"));
}

TEST_F(Bookmarks, OfADamagedFileAreSetAside)
{
    const QByteArray damaged = "<plist><dict><key>_bookmarksAnd";
    ASSERT_FALSE(XPAtomicFile::write(m_file, damaged));
    KPBookmarks list(m_file);
    EXPECT_TRUE(list.root().children.isEmpty());
    ASSERT_FALSE(list.insert({search("a")}));
    EXPECT_EQ(*XPAtomicFile::read(m_file + QStringLiteral(".damaged")), damaged);
}

TEST_F(Bookmarks, OfANewerProgramAreShownAndNeverWritten)
{
    KPBookmarks list(m_file);
    ASSERT_FALSE(list.insert({search("a")}));
    QByteArray bytes = *XPAtomicFile::read(m_file);
    bytes.replace("<integer>1</integer>", "<integer>9</integer>");
    ASSERT_FALSE(XPAtomicFile::write(m_file, bytes));
    KPBookmarks newer(m_file);
    EXPECT_EQ(shape(newer.root()), QStringLiteral("a"));
    EXPECT_EQ(newer.insert({search("b")})->kind, XPError::Kind::Unsupported);
    EXPECT_EQ(*XPAtomicFile::read(m_file), bytes);
}

TEST_F(Bookmarks, KeepWhatANewerProgramStoresBesideThem)
{
    const QByteArray stored =
        "<?xml version=\"1.0\"?><plist><dict><key>colour</key><string>red</string>"
        "<key>_bookmarksAndFoldersArray</key><array>"
        "<dict><key>title</key><string>a</string><key>searchState</key><dict/>"
        "<key>icon</key><string>star</string></dict>"
        "<string>none</string><dict/></array></dict></plist>";
    ASSERT_FALSE(XPAtomicFile::write(m_file, stored));
    KPBookmarks list(m_file);
    ASSERT_EQ(shape(list.root()), QStringLiteral("a"));
    ASSERT_FALSE(list.rename(id("a", list), QStringLiteral("b")));
    const QByteArray bytes = *XPAtomicFile::read(m_file);
    EXPECT_TRUE(bytes.contains("red"));
    EXPECT_TRUE(bytes.contains("star"));
    EXPECT_TRUE(bytes.contains("none"));
}

TEST_F(Bookmarks, GoToAnotherFileAndBack)
{
    KPBookmarks list(m_file);
    ASSERT_FALSE(
        list.insert({KPBookmark::folder(QStringLiteral("f"), {search("b")}), search("c")}));
    const QString other = m_folder.path(QStringLiteral("other.plist"));
    ASSERT_FALSE(list.exportFile(other, {id("f", list)}));
    ASSERT_FALSE(list.importFile(other));
    EXPECT_EQ(shape(list.root()), QStringLiteral("f[b] c f[b]"));
    EXPECT_NE(list.root().children.first().identifier, list.root().children.last().identifier);
    EXPECT_TRUE(list.importFile(m_folder.file(QStringLiteral("letter"), "Dear")));
    EXPECT_TRUE(list.importFile(m_folder.path(QStringLiteral("none"))));
}

TEST_F(Bookmarks, AreDroppedIntoFoldersButNotIntoThemselves)
{
    XPTranslations::install(QLocale(QLocale::English));
    KPBookmarks list(m_file);
    ASSERT_FALSE(list.insert(
        {KPBookmark::folder(QStringLiteral("f"), {KPBookmark::folder(QStringLiteral("g"))}),
         search("c")}));
    KPBookmarkFolderItem inner(list, id("g", list));
    const auto offered = [&](const QMimeData &data) {
        return inner.validateDropOfType(Qt::MoveAction | Qt::CopyAction, -1, nullptr, data);
    };
    QMimeData outer;
    KPBookmarkFolderItem(list, id("f", list)).writeItemToPasteboard(outer);
    EXPECT_EQ(offered(outer), Qt::IgnoreAction);
    QMimeData other;
    KPBookmarkFolderItem::write(other, list, {id("c", list)});
    EXPECT_EQ(offered(other), Qt::MoveAction);
    EXPECT_TRUE(inner.acceptDrop(other, Qt::MoveAction, -1, nullptr));
    QMimeData place;
    KPLocationItem::withFolder(QStringLiteral("/tmp/Letters"))->writeItemToPasteboard(place);
    EXPECT_TRUE(inner.acceptDrop(place, Qt::CopyAction, 0, nullptr));
    QMimeData documents;
    KPDocPasteboard::setPaths(documents,
                              {QStringLiteral("/tmp/x.pdf"), QStringLiteral("/tmp/y.pdf")});
    EXPECT_TRUE(inner.acceptDrop(documents, Qt::CopyAction, 0, nullptr));
    EXPECT_EQ(shape(list.root()), QStringLiteral("f[g[x.pdf and 1 more Letters c]]"));
    QMimeData text;
    text.setText(QStringLiteral("words"));
    EXPECT_EQ(offered(text), Qt::IgnoreAction);
}

#include "KPBookmarkBar.h"
#include "KPBookmarkCommands.h"
#include "KPBookmarkModel.h"
#include "KPBookmarkPanel.h"

#include "FollowedSearch.h"
#include "KPDocIcons.h"
#include "KPDocPasteboard.h"
#include "KPSearchStateKeys.h"
#include "TestNavigator.h"
#include "TitledBookmark.h"
#include "UserDefaults.h"
#include "XPAtomicFile.h"

#include <QDropEvent>
#include <QMenu>
#include <QMimeData>
#include <QTest>
#include <QToolButton>
#include <QTreeView>
#include <gtest/gtest.h>

static QString words(const char *text)
{
    return QString::fromUtf8(text);
}

static KPSearchState::Ptr tagged(const char *tag)
{
    return KPSearchState::blankSearchState()->searchStateByAddingTag(words(tag));
}

static KPBookmark search(const char *tag)
{
    return KPBookmark::search(words(tag), *tagged(tag));
}

static QString shape(const KPBookmark &above)
{
    QStringList titles;
    for (const KPBookmark &each : above.children)
        titles.append(each.isFolder ? each.title + u'[' + shape(each) + u']' : each.title);
    return titles.join(u' ');
}

class BookmarkViews : public testing::Test
{
protected:
    void SetUp() override
    {
        KPDocIcons::registerIcons();
        ASSERT_FALSE(m_bookmarks.insert({search("a"),
                                         KPBookmark::folder(words("f"), {search("b"), search("c")}),
                                         search("d")}));
        QObject::connect(&m_commands, &KPBookmarkCommands::failed,
                         [this](const QString &, const XPError &error) { m_failed = error; });
    }
    QString id(const char *title) const { return titled(m_bookmarks, words(title))->identifier; }
    QString shape() const { return ::shape(m_bookmarks.root()); }
    const KPSearchState &state() const { return *m_navigator.state(); }

    IndexedFolder m_folder;
    TestNavigator m_navigator{m_folder.index()};
    const QString m_file = m_folder.path(words("bookmarks.plist"));
    KPBookmarks m_bookmarks{m_file};
    QUndoStack m_history;
    KPBookmarkCommands m_commands{*m_navigator.crumbs, m_bookmarks, m_history, nullptr};
    std::optional<XPError> m_failed;
};

TEST_F(BookmarkViews, NarrowTheSearchOrTakeItsPlace)
{
    m_commands.run(id("a"), false);
    EXPECT_TRUE(state().hasSearchTag(words("a")));
    m_commands.run(id("b"), false);
    EXPECT_EQ(state().searchTags().size(), 2);
    m_commands.run(id("c"), true);
    EXPECT_EQ(state().searchTags(), QStringList{words("c")});
}

TEST_F(BookmarkViews, UndoEveryChange)
{
    const QString before = shape();
    m_navigator.crumbs->applyState(tagged("new"));
    const std::function<void()> changes[] = {
        [&] {
            m_commands.remove({id("f"), id("b"), id("a")});
        },
        [&] {
            m_commands.remove({id("b"), id("c")});
        },
        [&] {
            m_commands.move({id("a"), id("c")}, {id("f"), 0});
        },
        [&] {
            m_commands.move({id("d")}, {{}, 0});
        },
        [&] { m_commands.rename(id("c"), words("other")); },
        [&] {
            m_commands.saveCurrent({id("f"), 1});
        },
        [&] { m_commands.addFolder(); },
    };
    for (const auto &change : changes) {
        change();
        const QString after = shape();
        EXPECT_NE(after, before);
        m_history.undo();
        EXPECT_EQ(shape(), before) << "after " << qPrintable(after);
        m_history.redo();
        EXPECT_EQ(shape(), after);
        m_history.undo();
    }
    EXPECT_EQ(KPBookmarks(m_file).root(), m_bookmarks.root());
    m_commands.updateToCurrent(id("a"));
    EXPECT_TRUE(m_bookmarks.find(id("a"))->searchState()->hasSearchTag(words("new")));
    m_history.undo();
    m_commands.combineWithCurrent(id("a"));
    EXPECT_EQ(m_bookmarks.find(id("a"))->searchState()->searchTags().size(), 2);
    m_history.undo();
    EXPECT_TRUE(m_bookmarks.find(id("a"))->searchState()->isEqualToSearchState(*tagged("a")));
    EXPECT_FALSE(m_failed);
}

TEST_F(BookmarkViews, BringAFolderlessBookmarkBackToTheEnd)
{
    m_commands.remove({id("b")});
    ASSERT_FALSE(m_bookmarks.remove({id("f")})); // by another program
    m_history.undo();
    EXPECT_EQ(shape(), words("a d b"));
}

TEST_F(BookmarkViews, SayWhatCouldNotBeDone)
{
    const QString a = id("a");
    ASSERT_FALSE(m_bookmarks.remove({a}));
    m_commands.remove({a});
    ASSERT_TRUE(m_failed);
    EXPECT_EQ(m_failed->kind, XPError::Kind::NotFound);
    EXPECT_EQ(m_history.count(), 0);
}

TEST_F(BookmarkViews, SaveOnlyASearchThatSaysSomething)
{
    m_navigator.crumbs->applyState(KPSearchState::blankSearchState());
    EXPECT_FALSE(m_commands.canSave());
    EXPECT_EQ(m_commands.saveCurrent(), QString());
    m_navigator.crumbs->applyState(tagged("x")->searchStateByAddingExcludeTag(words("y")));
    const QString saved = m_commands.saveCurrent();
    const qsizetype count = m_bookmarks.root().children.size();
    EXPECT_EQ(m_bookmarks.root().children.last().title, words("tagged x, without y"));
    EXPECT_EQ(m_commands.saveCurrent(), saved);
    EXPECT_EQ(m_bookmarks.root().children.size(), count) << "pressed twice";
}

TEST_F(BookmarkViews, OfTheBarRunAndMoveIntoAMenuWhenItIsNarrow)
{
    UserDefaults::standard().setValue(
        words("recentTagGroups"),
        PropertyValue::Dictionary{
            {words("t,u"),
             PropertyValue::Dictionary{{words("tags"), QStringList{words("t"), words("u")}},
                                       {words("date"), PropertyValue::Date{1}}}}});
    KPBookmarkBar bar(*m_navigator.crumbs, m_commands);
    bar.resize(900, bar.sizeHint().height());
    bar.show();
    const auto button = [&bar](const char *name) -> QToolButton * {
        for (auto *each : bar.findChildren<QToolButton *>())
            if (each->accessibleName() == words(name) && each->isVisible())
                return each;
        return nullptr;
    };
    ASSERT_TRUE(button("a") && button("f") && button("t, u"));
    QTest::mouseClick(button("a"), Qt::LeftButton);
    EXPECT_TRUE(state().hasSearchTag(words("a")));
    QTest::mouseClick(button("t, u"), Qt::LeftButton);
    EXPECT_EQ(state().searchTags().size(), 3);
    bar.resize(160, bar.height());
    ASSERT_FALSE(button("t, u"));
    QMenu *more = button("More saved searches")->menu();
    Q_EMIT more->aboutToShow();
    EXPECT_EQ(more->actions().last()->text(), words("t, u"));
    UserDefaults::standard().remove(words("recentTagGroups"));
}

TEST_F(BookmarkViews, OfTheBarTakeWhatIsDropped)
{
    KPBookmarkBar bar(*m_navigator.crumbs, m_commands);
    bar.resize(900, bar.sizeHint().height());
    bar.show();
    const auto drop = [&bar](const QMimeData &data, double x) {
        QDragEnterEvent enter(QPoint(static_cast<int>(x), 10), Qt::CopyAction | Qt::MoveAction,
                              &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&bar, &enter);
        if (!enter.isAccepted())
            return false;
        QDropEvent event(QPointF(x, 10), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                         Qt::NoModifier);
        QApplication::sendEvent(&bar, &event);
        return true;
    };
    QMimeData documents;
    KPDocPasteboard::setPaths(documents, {words("/tmp/letter.pdf")});
    EXPECT_TRUE(drop(documents, 890));
    EXPECT_EQ(shape(), words("a f[b c] d letter.pdf"));
    QMimeData text;
    text.setText(words("words"));
    EXPECT_FALSE(drop(text, 10));
    m_history.undo();
    EXPECT_EQ(shape(), words("a f[b c] d"));
}

TEST_F(BookmarkViews, OfThePanelAreRenamedOrderedAndDeleted)
{
    KPBookmarkPanel panel(m_commands);
    panel.resize(600, 400);
    panel.show();
    auto *model = qobject_cast<KPBookmarkModel *>(panel.outline().model());
    EXPECT_EQ(model->indexOf(id("b")).siblingAtColumn(1).data().toString(), words("tagged b"));
    panel.outline().expandAll();
    const std::unique_ptr<QMimeData> dragged(model->mimeData({model->indexOf(id("d"))}));
    const QModelIndex folder = model->indexOf(id("f"));
    EXPECT_TRUE(model->canDropMimeData(dragged.get(), Qt::MoveAction, 0, 0, folder));
    model->dropMimeData(dragged.get(), Qt::MoveAction, 0, 0, folder);
    EXPECT_EQ(shape(), words("a f[d b c]"));
    EXPECT_FALSE(
        model->canDropMimeData(dragged.get(), Qt::MoveAction, -1, 0, model->indexOf(id("a"))))
        << "a search holds nothing";
    EXPECT_TRUE(
        FollowedSearch::waitFor([&] { return model->indexOf(id("d")).parent().isValid(); }));
    EXPECT_TRUE(panel.outline().isExpanded(model->indexOf(id("f"))));
    panel.outline().setCurrentIndex(model->indexOf(id("c")));
    QTest::keyClick(&panel.outline(), Qt::Key_Return);
    EXPECT_TRUE(state().hasSearchTag(words("c")));
    QTest::keyClick(&panel.outline(), Qt::Key_Delete);
    EXPECT_EQ(shape(), words("a f[d b]"));
    m_history.undo();
    EXPECT_EQ(shape(), words("a f[d b c]"));
}

#include "KPSourceList.h"

#include "FollowedSearch.h"
#include "KPDocIcons.h"
#include "KPDocPasteboard.h"
#include "KPFileTypeRegistry.h"
#include "KPLocationItem.h"
#include "KPRowCounts.h"
#include "Karvex.h"
#include "TestNavigator.h"
#include "TitledBookmark.h"
#include "UserDefaults.h"

#include <QMimeData>
#include <QTest>
#include <gtest/gtest.h>
#include <unistd.h>

static QString words(const char *text)
{
    return QString::fromUtf8(text);
}

class SourceList : public testing::Test
{
protected:
    void SetUp() override
    {
        KPDocIcons::registerIcons();
        UserDefaults::standard().setValue(words("KPTwistDownStatesKeepTrack"),
                                          PropertyValue::boolean(true));
        UserDefaults::standard().remove(words("KPTwistDownStates"));
        UserDefaults::standard().remove(words("KPTreatSectionsAsRadioButtons"));
    }
    std::unique_ptr<KPSourceList> list(KPRowCounts *counts = nullptr)
    {
        auto made = std::make_unique<KPSourceList>(*m_navigator.crumbs, m_bookmarks, counts);
        made->resize(240, 900);
        made->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(made.get()));
        QCoreApplication::processEvents();
        return made;
    }
    static QModelIndex row(const KPSourceList &list, const QString &text)
    {
        const auto found = list.model()->match(list.model()->index(0, 0), Qt::DisplayRole, text, 1,
                                               Qt::MatchExactly | Qt::MatchRecursive);
        return found.value(0);
    }
    static void click(KPSourceList &list, const QString &text)
    {
        const QModelIndex index = row(list, text);
        ASSERT_TRUE(index.isValid()) << qPrintable(text);
        list.scrollTo(index);
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualRect(index).center());
    }

    IndexedFolder m_folder;
    TestNavigator m_navigator{m_folder.index()};
    KPBookmarks m_bookmarks{m_folder.path(words("bookmarks.plist"))};
};

TEST_F(SourceList, ShowsTheSearchOfARowAndSelectsTheRowOfTheSearch)
{
    m_navigator.crumbs->showLocation(KPLocationItem::withFolder(m_folder.path()));
    const auto view = list();
    click(*view, words("Untagged"));
    EXPECT_TRUE(m_navigator.state()->isShowingUntaggedDocuments());
    EXPECT_EQ(m_navigator.state()->constraintFolders(), QStringList{m_folder.path()});
    const auto isSelected = [&](const char *text) {
        return view->selectionModel()->selectedIndexes() ==
               QModelIndexList{row(*view, words(text))};
    };
    EXPECT_TRUE(FollowedSearch::waitFor([&] { return isSelected("Untagged"); }));
    // What the row asks for is not asked for any more.
    m_navigator.crumbs->applyState(m_navigator.state()->searchStateWithNewUntaggedFiles(false));
    EXPECT_TRUE(FollowedSearch::waitFor(
        [&] { return view->selectionModel()->selectedIndexes().isEmpty(); }));
    view->setCurrentIndex(row(*view, words("Flagged")));
    QTest::keyClick(view.get(), Qt::Key_Return);
    EXPECT_TRUE(m_navigator.state()->hasSearchTag(words("flagged")));
}

TEST_F(SourceList, CannotSelectALastImportThatThereIsNot)
{
    const auto view = list();
    const int applied = m_navigator.applied;
    click(*view, words("Last Import"));
    EXPECT_EQ(m_navigator.applied, applied);
    view->setLastImport(KPSearchState::blankSearchState()->searchStateWithNewFileList(
        QStringList{words("/a"), words("/b")}));
    click(*view, words("Last Import"));
    EXPECT_TRUE(m_navigator.state()->isFileListSearch());
}

TEST_F(SourceList, RemembersHowItsHeadingsStand)
{
    {
        const auto view = list();
        EXPECT_TRUE(view->isExpanded(row(*view, words("Library"))));
        EXPECT_FALSE(view->isExpanded(row(*view, words("Dates"))));
        click(*view, words("Library"));
        click(*view, words("Dates"));
    }
    const auto again = list();
    EXPECT_FALSE(again->isExpanded(row(*again, words("Library"))));
    EXPECT_TRUE(again->isExpanded(row(*again, words("Dates"))));
    KPFileTypeRegistry::instance().announceChange();
    EXPECT_TRUE(again->isExpanded(row(*again, words("Kinds")))) << "rows made anew stay open";
}

TEST_F(SourceList, OpensOneHeadingAtATimeWhereAskedTo)
{
    UserDefaults::standard().setValue(words("KPTreatSectionsAsRadioButtons"),
                                      PropertyValue::boolean(true));
    const auto view = list();
    click(*view, words("Dates"));
    EXPECT_TRUE(view->isExpanded(row(*view, words("Dates"))));
    for (const char *other : {"Library", "Kinds", "Places"})
        EXPECT_FALSE(view->isExpanded(row(*view, words(other)))) << other;
}

TEST_F(SourceList, FollowsTheSavedSearchesAndRenamesThem)
{
    const auto view = list();
    const auto state = KPSearchState::blankSearchState()->searchStateByAddingTag(words("x"));
    ASSERT_FALSE(m_bookmarks.insert(
        {KPBookmark::folder(words("Folder"), {KPBookmark::search(words("Inside"), *state)})}));
    view->expand(row(*view, words("Folder")));
    click(*view, words("Inside"));
    EXPECT_TRUE(m_navigator.state()->hasSearchTag(words("x")));
    EXPECT_TRUE(
        view->model()->setData(row(*view, words("Inside")), words("Renamed"), Qt::EditRole));
    EXPECT_TRUE(titled(m_bookmarks, words("Renamed")));
    EXPECT_TRUE(row(*view, words("Renamed")).isValid());
}

TEST_F(SourceList, TakesWhatARowTakesAndNothingElse)
{
    const auto view = list();
    ASSERT_FALSE(m_bookmarks.insert({KPBookmark::folder(words("Folder"))}));
    QMimeData ours;
    KPDocPasteboard::setPaths(ours, {m_folder.file(words("a.pdf"))});
    QMimeData text;
    text.setText(words("words"));
    const auto takes = [&](const char *name, const QMimeData &data) {
        return view->model()->canDropMimeData(&data, Qt::MoveAction, -1, 0,
                                              row(*view, words(name)));
    };
    EXPECT_TRUE(takes("Flagged", ours));
    EXPECT_TRUE(takes("Folder", ours));
    EXPECT_TRUE(takes("Saved", ours));
    EXPECT_FALSE(takes("All Documents", ours));
    EXPECT_FALSE(takes("Flagged", text));
    EXPECT_FALSE(takes("Folder", text));
}

TEST_F(SourceList, CountsItsRowsAndFollowsTheFiles)
{
    const QString work = m_folder.file(words("work.pdf"));
    m_folder.file(words("other.pdf"));
    ASSERT_FALSE(Karvex::setUserTags(QStringList{words("work")}, work));
    m_folder.catchUp();
    m_navigator.crumbs->showLocation(KPLocationItem::withFolder(m_folder.path()));
    KPRowCounts counts(m_folder.index());
    const auto view = list(&counts);
    const auto has = [&](const char *name, const char *count) {
        return FollowedSearch::waitFor([&, name, count] {
            return row(*view, words(name)).data(KPSourceListModel::CountText).toString() ==
                   words(count);
        });
    };
    EXPECT_TRUE(has("Tagged", "1"));
    EXPECT_TRUE(has("PDF", "1")); // of the managed ones, which the tag makes it
    ASSERT_FALSE(
        Karvex::setUserTags(QStringList{words("home")}, m_folder.path(words("other.pdf"))));
    m_folder.file(words("third.pdf"));
    m_folder.catchUp();
    EXPECT_TRUE(has("Tagged", "2"));
    EXPECT_TRUE(has("PDF", "2"));
    ASSERT_EQ(::unlink(qPrintable(work)), 0);
    m_folder.catchUp();
    EXPECT_TRUE(has("Tagged", "1"));
    EXPECT_EQ(row(*view, words("Files in Folder")).data(KPSourceListModel::CountText).toString(),
              QString())
        << "the index cannot answer";
}

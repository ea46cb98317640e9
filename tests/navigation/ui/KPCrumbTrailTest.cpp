#include "KPCrumbTrail.h"

#include "FollowedSearch.h"
#include "KPCrumbButton.h"
#include "KPDateRangeDialog.h"
#include "KPDocIcons.h"
#include "KPFolderMenu.h"
#include "KPLibraryItems.h"
#include "KPLocationItem.h"
#include "TestNavigator.h"

#include <QDir>
#include <QLabel>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>
#include <gtest/gtest.h>

static QString words(const char *text)
{
    return QString::fromUtf8(text);
}

class CrumbTrail : public testing::Test
{
protected:
    void SetUp() override
    {
        KPDocIcons::registerIcons();
        m_trail.resize(1200, m_trail.sizeHint().height());
        m_trail.show();
    }
    void showState(const KPSearchState::Ptr &state)
    {
        m_navigator.crumbs->applyState(state);
        settle(state);
    }
    void settle(const KPSearchState::Ptr &state)
    {
        ASSERT_TRUE(FollowedSearch::waitFor(
            [&] { return m_trail.crumbs().state()->isEqualToSearchState(*state); }));
    }
    // Those that stand in the row, from left to right.
    QList<KPCrumbButton *> shown() const
    {
        QList<KPCrumbButton *> buttons;
        for (auto *button : m_trail.findChildren<KPCrumbButton *>())
            if (button->isVisible())
                buttons.append(button);
        return buttons;
    }
    KPCrumbButton *button(const QString &text) const
    {
        for (auto *each : shown())
            if (each->crumb().text == text)
                return each;
        return nullptr;
    }

    IndexedFolder m_folder;
    TestNavigator m_navigator{m_folder.index()};
    KPCrumbTrail m_trail{*m_navigator.crumbs};
    const KPSearchState::Ptr m_state = KPSearchState::blankSearchState()
                                           ->searchStateByAddingTag(words("work"))
                                           ->searchStateByAddingExcludeTag(words("draft"))
                                           ->searchStateWithNewRating(words(">= 3"));
};

TEST_F(CrumbTrail, RemovesACriterionByItsCross)
{
    showState(m_state);
    KPCrumbButton *work = button(words("work"));
    ASSERT_TRUE(work);
    QTest::mouseClick(work, Qt::LeftButton, {}, QPoint(work->width() - 10, work->height() / 2));
    EXPECT_FALSE(m_navigator.state()->hasSearchTag(words("work")));
    EXPECT_TRUE(m_navigator.state()->hasExcludeTag(words("draft")));
    EXPECT_TRUE(m_navigator.wasRemembered);
}

TEST_F(CrumbTrail, TurnsACriterionIntoItsOppositeWithAltAndMinus)
{
    showState(m_state);
    KPCrumbButton *work = button(words("work"));
    QTest::mouseClick(work, Qt::LeftButton, Qt::AltModifier, QPoint(12, work->height() / 2));
    EXPECT_TRUE(m_navigator.state()->hasExcludeTag(words("work")));
    settle(m_navigator.state());
    QTest::keyClick(button(words("draft")), Qt::Key_Minus);
    EXPECT_TRUE(m_navigator.state()->hasSearchTag(words("draft")));
}

TEST_F(CrumbTrail, IsWalkedAndEmptiedByKeys)
{
    showState(m_state);
    shown().first()->setFocus();
    for (int i = 0; i < 4; ++i)
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
    auto *focused = qobject_cast<KPCrumbButton *>(QApplication::focusWidget());
    ASSERT_TRUE(focused);
    EXPECT_EQ(focused->crumb().kind, KPCrumb::Kind::Rating);
    QTest::keyClick(focused, Qt::Key_Delete);
    EXPECT_TRUE(m_navigator.state()->ratingString().isEmpty());
    settle(m_navigator.state());
    EXPECT_TRUE(qobject_cast<KPCrumbButton *>(QApplication::focusWidget()))
        << "the keyboard stays in the row";
}

TEST_F(CrumbTrail, ShowsEveryCriterionHoweverNarrowItIs)
{
    QStringList tags;
    for (int i = 0; i < 12; ++i)
        tags.append(QStringLiteral("a rather long tag %1").arg(i));
    showState(KPSearchState::blankSearchState()->searchStateWithNewTags(tags));
    for (const int width : {1600, 900, 600, 320}) {
        m_trail.resize(width, m_trail.height());
        const auto row = shown();
        EXPECT_GE(row.size(), 2) << width;
        int right = 0;
        for (const auto *each : row) {
            EXPECT_GE(each->x(), right) << width;
            right = each->x() + each->width();
        }
        EXPECT_LE(right, width);
        QMenu *more = nullptr;
        for (auto *each : m_trail.findChildren<QToolButton *>())
            if (each->menu() && each->isVisible())
                more = each->menu();
        ASSERT_TRUE(more) << width;
        Q_EMIT more->aboutToShow();
        EXPECT_EQ(more->actions().size() + row.size(), 14) << width;
    }
}

TEST_F(CrumbTrail, ReadsAsOneSentence)
{
    showState(m_state->searchStateWithNewContstraintFolders({m_folder.path(words("Letters"))}));
    EXPECT_EQ(m_trail.accessibleName(),
              words("All Documents, in Letters, tagged work, without draft, 3 stars or more"));
}

TEST_F(CrumbTrail, ChangesACriterionInItsMenu)
{
    showState(m_state);
    const std::unique_ptr<QMenu> menu(m_trail.menuOf(m_trail.crumbs().crumbs().last()));
    const auto entry = [&](const QString &text) -> QAction * {
        for (QAction *action : menu->actions())
            if (action->text() == text)
                return action;
        return nullptr;
    };
    ASSERT_TRUE(entry(words("3 stars or more")));
    EXPECT_TRUE(entry(words("3 stars or more"))->isChecked());
    entry(words("2 stars or more"))->trigger();
    EXPECT_EQ(m_navigator.state()->ratingString(), words(">= 2"));
}

TEST_F(CrumbTrail, GoesIntoAFolderOfTheOneThatIsShown)
{
    for (const char *path : {"Letters/10/a.pdf", "Letters/9 & more/b.pdf", "Letters/.hidden/c.pdf"})
        m_folder.file(words(path));
    const QString letters = m_folder.path(words("Letters"));
    const auto opened = [](QMenu &menu) {
        auto *folders = menu.findChild<KPFolderMenu *>();
        Q_EMIT folders->aboutToShow();
        FollowedSearch::waitFor(
            [&] { return folders->actions().first()->text() != qtTrId("KPFolderMenuReading"); });
        return folders;
    };
    const auto menuOfPlace = [&] {
        settle(m_navigator.state());
        const auto &crumbs = m_trail.crumbs().crumbs();
        const auto place = std::find_if(crumbs.begin(), crumbs.end(), [](const KPCrumb &crumb) {
            return crumb.kind == KPCrumb::Kind::Location;
        });
        return std::unique_ptr<QMenu>(m_trail.menuOf(*place));
    };
    m_navigator.crumbs->showLocation(KPLocationItem::withFolder(letters));
    auto menu = menuOfPlace();
    const auto folders = opened(*menu)->actions();
    ASSERT_EQ(folders.size(), 2);
    EXPECT_EQ(folders[0]->text(), words("9 && more"));
    folders[0]->trigger();
    EXPECT_EQ(m_navigator.crumbs->locationItem()->folders(),
              QStringList{letters + words("/9 & more")});

    // Gone before it is opened.
    menu = menuOfPlace();
    ASSERT_TRUE(QDir(letters + words("/9 & more")).removeRecursively());
    ASSERT_EQ(opened(*menu)->actions().size(), 1);
    EXPECT_FALSE(opened(*menu)->actions()[0]->isEnabled());
}

TEST_F(CrumbTrail, CountsTheDocuments)
{
    m_folder.file(words("a.pdf"));
    m_folder.file(words("b.pdf"));
    m_folder.catchUp();
    m_navigator.crumbs->applyState(KPSearcher::allDocumentsOf(m_folder.state()));
    const auto *count = m_trail.findChild<QLabel *>();
    EXPECT_TRUE(FollowedSearch::waitFor([&] { return count->text() == words("2 documents"); }))
        << qPrintable(count->text());
}

TEST(DateRange, CountsBothDaysIn)
{
    KPSearchDates::setClock([] { return QDateTime(QDate(2026, 5, 20), QTime(12, 0)); });
    KPDateRangeDialog dialog(nullptr);
    dialog.setDays(QDate(2026, 5, 10), QDate(2026, 5, 12));
    EXPECT_EQ(dialog.range(), (KPSearchDates::Range{10.5, 7.5}));
    dialog.setDays(QDate(2026, 5, 10), QDate(2026, 5, 20));
    EXPECT_EQ(dialog.range(), (KPSearchDates::Range{10.5, {}}));
    KPSearchDates::setClock({});
}

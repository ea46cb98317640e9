#include "KPTagsWindow.h"

#include "CloudNavigator.h"
#include "IndexedFolder.h"
#include "KPDocServices.h"
#include "KPTagTreeModel.h"
#include "Karvex.h"
#include "UserDefaults.h"

#include <QAbstractItemModelTester>
#include <QCheckBox>
#include <QLineEdit>
#include <QTest>
#include <QTreeView>
#include <gtest/gtest.h>

namespace {

// The library is read when the test says so, as where it is large.
struct SlowServices : KPDocServices
{
    void runFileWork(std::function<void()> work, std::function<void()> done) override
    {
        waiting.append({std::move(work), std::move(done)});
    }
    void finish()
    {
        for (const auto &[work, done] : std::exchange(waiting, {})) {
            work();
            done();
        }
    }
    QList<std::pair<std::function<void()>, std::function<void()>>> waiting;
};

class TagsWindow : public testing::Test
{
protected:
    void SetUp() override
    {
        UserDefaults::standard().remove(QStringLiteral("KPTagsWindowOnlyShowAvailable"));
        tagged("a.txt", {QStringLiteral("Tax/2024"), QStringLiteral("paid")});
        tagged("b.txt", {QStringLiteral("tax")});
        m_navigator = std::make_unique<CloudNavigator>(m_folder.index());
        KPDocMetaData::useIndex(m_folder.index());
        m_window = std::make_unique<KPTagsWindow>(*m_navigator, nullptr);
    }
    void TearDown() override XP_REQUIRES(xpGuiThread)
    {
        KPDocServices::install(nullptr);
        KPDoc::stopMetaDataSearching();
    }
    void tagged(const char *name, const QStringList &tags)
    {
        EXPECT_FALSE(Karvex::setUserTags(tags, m_folder.file(QLatin1String(name))));
    }
    QTreeView *view() const { return m_window->findChild<QTreeView *>(); }
    QLineEdit *filter() const { return m_window->findChild<QLineEdit *>(); }
    // "name count", indented by depth.
    QStringList rows(const QModelIndex &parent = {}, int depth = 0) const
    {
        QStringList all;
        const QAbstractItemModel *model = view()->model();
        for (int row = 0; row < model->rowCount(parent); ++row) {
            const QModelIndex index = model->index(row, 0, parent);
            const QString count = index.siblingAtColumn(1).data().toString();
            all.append(QString(depth, u' ') + index.data().toString() + u' ' + count);
            all += rows(index, depth + 1);
        }
        return all;
    }
    QStringList searched() const
    {
        const auto state = m_navigator->searcher().searchState();
        return state ? state->searchTags() : QStringList();
    }

    IndexedFolder m_folder;
    std::unique_ptr<CloudNavigator> m_navigator;
    std::unique_ptr<KPTagsWindow> m_window;
};

} // namespace

TEST_F(TagsWindow, ShowsTheTreeFiltersItAndNarrowsTheSearch)
{
    const QAbstractItemModelTester tester(view()->model());
    const QStringList all{QStringLiteral("paid 1"), QStringLiteral("tax 2"),
                          QStringLiteral(" 2024 1")};
    m_window->open();
    EXPECT_TRUE(QTest::qWaitFor([&] { return rows() == all; }, 20'000))
        << rows().join(u'|').toStdString();
    QTest::keyClicks(filter(), QStringLiteral("X/2"));
    EXPECT_EQ(rows(), all.mid(1));
    QTest::keyClick(filter(), Qt::Key_Down);
    EXPECT_EQ(view()->currentIndex().data().toString(), u"tax");
    filter()->setText(QStringLiteral("pa"));
    EXPECT_EQ(rows(), all.mid(0, 1));
    filter()->setText(QStringLiteral("nothing"));
    EXPECT_EQ(rows(), QStringList());
    QTest::keyClick(filter(), Qt::Key_Return);
    EXPECT_EQ(searched(), QStringList());
    filter()->setText(QStringLiteral("PAID"));
    QTest::keyClick(filter(), Qt::Key_Return);
    EXPECT_EQ(searched(), QStringList{QStringLiteral("paid")});
    QTest::keyClick(filter(), Qt::Key_Return);
    EXPECT_EQ(searched(), QStringList()) << "a second time widens it again";
}

TEST_F(TagsWindow, ShowsThoseOfTheResultsAlone)
{
    m_navigator->setSearchStateAndUpdateUI(
        m_folder.state()->searchStateWithNewTags({QStringLiteral("paid")}), false, {}, {});
    m_window->open();
    QTest::mouseClick(m_window->findChild<QCheckBox *>(), Qt::LeftButton, {}, QPoint(8, 8));
    const QStringList found{QStringLiteral("paid 1"), QStringLiteral("Tax "),
                            QStringLiteral(" 2024 1")};
    EXPECT_TRUE(QTest::qWaitFor([&] { return rows() == found; }, 20'000))
        << rows().join(u'|').toStdString();
}

TEST_F(TagsWindow, WhatIsReadTooLateIsNotShown)
{
    auto ours = std::make_unique<SlowServices>();
    SlowServices &services = *ours;
    KPDocServices::install(std::move(ours));
    m_window->open();
    EXPECT_EQ(rows(), QStringList());
    m_navigator->setSearchStateAndUpdateUI(
        m_folder.state()->searchStateWithNewTags({QStringLiteral("paid")}), false, {}, {});
    const QStringList found{QStringLiteral("paid 1"), QStringLiteral("Tax "),
                            QStringLiteral(" 2024 1")};
    auto *available = m_window->findChild<QCheckBox *>();
    QTest::mouseClick(available, Qt::LeftButton, {}, QPoint(8, 8));
    ASSERT_TRUE(QTest::qWaitFor([&] { return rows() == found; }, 20'000))
        << rows().join(u'|').toStdString();
    services.finish(); // of the whole library, which nobody wants any more
    EXPECT_EQ(rows(), found);
    // Closed and gone before it is read.
    QTest::mouseClick(available, Qt::LeftButton, {}, QPoint(8, 8));
    EXPECT_EQ(services.waiting.size(), 1);
    m_window.reset();
    services.finish();
}

TEST_F(TagsWindow, ATagIsChosenWithKeysAndTheTreeKeepsItsPlace)
{
    m_window->open();
    ASSERT_TRUE(QTest::qWaitFor([&] { return rows().size() == 3; }, 20'000));
    QTest::keyClick(filter(), Qt::Key_Down);
    QTest::keyClick(view(), Qt::Key_Down);
    QTest::keyClick(view(), Qt::Key_Down);
    EXPECT_EQ(view()->currentIndex().data(KPTagTreeModel::tagRole).toString().toLower(),
              u"tax/2024");
    QTest::keyClick(view(), Qt::Key_Return);
    EXPECT_EQ(searched().value(0).toLower(), u"tax/2024");
    filter()->setText(QStringLiteral("tax"));
    EXPECT_EQ(view()->currentIndex().data().toString(), u"2024") << "it is still there";
    QTest::keyClick(view(), Qt::Key_Escape);
    EXPECT_FALSE(m_window->isVisible());
}

#include "KPCloudController.h"

#include "CloudNavigator.h"
#include "IndexedFolder.h"
#include "KPDocServices.h"
#include "Karvex.h"
#include "UserDefaults.h"
#include "XPFileUrls.h"

#include <QAccessible>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QTest>
#include <gtest/gtest.h>

namespace {

struct Services : KPDocServices
{
    void replaceOriginalTags(const TagChange &change) override { *asked = change; }
    TagChange *asked = nullptr;
};

} // namespace

class CloudController : public testing::Test
{
protected:
    void SetUp() override
    {
        UserDefaults::standard().setValue(QStringLiteral("KPTagGroupUserTags"),
                                          PropertyValue::boolean(true));
        UserDefaults::standard().setValue(QStringLiteral("KPTagGroupFileTypes"),
                                          PropertyValue::boolean(true));
        tagged("a.txt", {QStringLiteral("invoice"), QStringLiteral("paid")});
        tagged("b.txt", {QStringLiteral("invoice")});
        tagged("c.png", {QStringLiteral("Photo"), QStringLiteral("invoice-like")});
        m_navigator = std::make_unique<CloudNavigator>(m_folder.index());
        m_cloud = std::make_unique<KPCloudController>(*m_navigator);
        m_cloud->resize(220, 400);
        m_cloud->show();
        m_navigator->setSearchStateAndUpdateUI(m_folder.state(), false, {}, {});
    }
    void TearDown() override { KPDocServices::install(nullptr); }

    void tagged(const char *name, const QStringList &tags)
    {
        EXPECT_FALSE(Karvex::setUserTags(tags, m_folder.file(QLatin1String(name))));
    }
    QStringList words() const
    {
        QStringList words;
        for (const XPCloudItem &item : m_cloud->userTags().view()->drawnItems())
            words.append(item.clickRemoves ? u'[' + item.displayName + u']' : item.displayName);
        return words;
    }
    bool shows(const QStringList &expected) const
    {
        return QTest::qWaitFor([&] { return words() == expected; }, 20000);
    }
    QPoint placeOf(const QString &name) const
    {
        const XPTextCloudView *view = m_cloud->userTags().view();
        for (qsizetype item = 0; item < view->drawnItems().size(); ++item) {
            if (view->drawnItems()[item].displayName == name)
                return view->pointToItemRect(item).center().toPoint();
        }
        return {-1, -1};
    }
    // Opened on the word; the one before is gone.
    QMenu *menuOf(const QString &name) const
    {
        XPTextCloudView *view = m_cloud->userTags().view();
        qDeleteAll(view->findChildren<QMenu *>(QString(), Qt::FindDirectChildrenOnly));
        const QPoint at = placeOf(name);
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, view->mapToGlobal(at));
        QCoreApplication::sendEvent(view, &event);
        return view->findChild<QMenu *>(QString(), Qt::FindDirectChildrenOnly);
    }
    static QAction *actionNamed(const QMenu *menu, const QString &text)
    {
        for (QAction *action : menu->actions()) {
            if (action->menu() && actionNamed(action->menu(), text))
                return actionNamed(action->menu(), text);
            if (action->text() == text)
                return action;
        }
        return nullptr;
    }
    void choose(const QString &name, const QString &text) const
    {
        const QMenu *menu = menuOf(name);
        ASSERT_TRUE(menu) << name.toStdString();
        QAction *action = actionNamed(menu, text);
        ASSERT_TRUE(action) << text.toStdString();
        action->trigger();
    }
    void click(const QString &name, Qt::KeyboardModifiers modifiers = {}) const
    {
        QTest::mouseClick(m_cloud->userTags().view(), Qt::LeftButton, modifiers, placeOf(name));
    }

    const QString invoice = QStringLiteral("invoice");
    const QString like = QStringLiteral("invoice-like");
    const QString paid = QStringLiteral("paid");
    const QString photo = QStringLiteral("Photo");
    IndexedFolder m_folder;
    std::unique_ptr<CloudNavigator> m_navigator;
    std::unique_ptr<KPCloudController> m_cloud;
};

TEST_F(CloudController, FollowsTheResultsAndNarrowsThem)
{
    ASSERT_TRUE(shows({invoice, like, paid, photo}));
    EXPECT_EQ(m_cloud->fileTypes().view()->drawnItems().size(), 2);
    click(invoice);
    EXPECT_TRUE(shows({u'[' + invoice + u']', paid}));
    click(invoice);
    EXPECT_TRUE(shows({invoice, like, paid, photo})) << "a click on a selected one widens";
    click(invoice, Qt::AltModifier);
    EXPECT_TRUE(shows({like, photo}));
}

TEST_F(CloudController, FiltersAndTakesTheBestMatchWithOneKey)
{
    ASSERT_TRUE(shows({invoice, like, paid, photo}));
    auto *field = m_cloud->findChild<QLineEdit *>();
    QTest::keyClicks(field, QStringLiteral("ai"));
    EXPECT_TRUE(shows({paid}));
    field->clear();
    QTest::keyClicks(field, QStringLiteral("ph"));
    ASSERT_TRUE(shows({photo}));
    QTest::keyClick(field, Qt::Key_Return);
    EXPECT_TRUE(shows({like, u'[' + photo + u']'}));
    EXPECT_TRUE(field->text().isEmpty());
}

TEST_F(CloudController, IsWalkedAndClickedWithKeys)
{
    ASSERT_TRUE(shows({invoice, like, paid, photo}));
    XPTextCloudView *view = m_cloud->userTags().view();
    view->setFocus();
    QTest::keyClick(view, Qt::Key_End);
    QTest::keyClick(view, Qt::Key_Left);
    const QAccessibleInterface *list = QAccessible::queryAccessibleInterface(view);
    ASSERT_TRUE(list->focusChild());
    EXPECT_EQ(list->focusChild()->text(QAccessible::Name), paid);
    QTest::keyClick(view, Qt::Key_Space);
    EXPECT_TRUE(shows({invoice, u'[' + paid + u']'}));
}

TEST_F(CloudController, IsReadAndClickedByAssistivePrograms)
{
    ASSERT_TRUE(shows({invoice, like, paid, photo}));
    const QAccessibleInterface *list =
        QAccessible::queryAccessibleInterface(m_cloud->userTags().view());
    ASSERT_EQ(list->childCount(), 4);
    QAccessibleInterface *word = list->child(2);
    EXPECT_EQ(word->text(QAccessible::Name), paid);
    EXPECT_EQ(list->indexOfChild(word), 2);
    EXPECT_FALSE(word->state().selected);
    word->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(shows({invoice, u'[' + paid + u']'}));
    ASSERT_EQ(list->childCount(), 2);
    EXPECT_TRUE(list->child(1)->state().selected);
}

TEST_F(CloudController, TheMenuOfAWordNarrowsAndWidensTheSearch)
{
    ASSERT_TRUE(shows({invoice, like, paid, photo}));
    EXPECT_FALSE(actionNamed(menuOf(invoice), qtTrId("KPCloudClear"))) << "it is no part of it";
    choose(invoice, qtTrId("KPCloudShowWith"));
    EXPECT_TRUE(shows({u'[' + invoice + u']', paid}));
    choose(invoice, qtTrId("KPCloudClear"));
    EXPECT_TRUE(shows({invoice, like, paid, photo}));
    choose(paid, qtTrId("KPCloudShowWithout"));
    EXPECT_TRUE(shows({invoice, like, photo}));
    choose(photo, qtTrId("KPCloudCopyName"));
    EXPECT_EQ(QGuiApplication::clipboard()->text(), photo);
}

TEST_F(CloudController, TheMenuOfABranchLeadsUpAndDown)
{
    const QString parent = QStringLiteral("R&D");
    const QString child = QStringLiteral("R&D/2024");
    tagged("d.txt", {child});
    tagged("e.txt", {parent});
    m_folder.catchUp();
    ASSERT_TRUE(shows({invoice, like, paid, photo, parent, child}));
    choose(parent, QStringLiteral("Only with “R&&D/2024”"));
    EXPECT_TRUE(shows({u'[' + child + u']'}));
    choose(child, qtTrId("KPCloudClear"));
    ASSERT_TRUE(shows({invoice, like, paid, photo, parent, child}));
    choose(child, QStringLiteral("Only with “R&&D”"));
    EXPECT_TRUE(shows({u'[' + parent + u']', child})) << "with those below it";
}

TEST_F(CloudController, AWordIsShownAlwaysOrNeverButNotBoth)
{
    const QString always = qtTrId("KPCloudAlwaysShow");
    const QString never = qtTrId("KPCloudNeverShow");
    ASSERT_TRUE(shows({invoice, like, paid, photo}));
    choose(paid, always);
    EXPECT_TRUE(actionNamed(menuOf(paid), always)->isChecked());
    choose(paid, never);
    EXPECT_TRUE(shows({invoice, like, photo}));
    // Typed, it can be found, and be shown again.
    m_cloud->setFilterString(paid);
    ASSERT_TRUE(shows({paid}));
    EXPECT_FALSE(actionNamed(menuOf(paid), always)->isChecked());
    EXPECT_TRUE(actionNamed(menuOf(paid), never)->isChecked());
    choose(paid, never);
    m_cloud->setFilterString({});
    EXPECT_TRUE(shows({invoice, like, paid, photo}));
}

TEST_F(CloudController, TagsDocumentsThatAreDroppedOnAWord)
{
    ASSERT_TRUE(shows({invoice, like, paid, photo}));
    KPDocServices::TagChange asked;
    auto services = std::make_unique<Services>();
    services->asked = &asked;
    KPDocServices::install(std::move(services));
    const QString odd =
        m_folder.path() + QStringLiteral("/odd%20 ") + QChar(0xDCFF); // a byte that is no UTF-8
    const std::unique_ptr<QMimeData> data(XPFileUrls::mimeData({odd}));
    XPTextCloudView *view = m_cloud->userTags().view();
    for (const QPoint &at : {QPoint(view->width() - 1, view->height() - 1), placeOf(paid)}) {
        QDragEnterEvent enter(at, Qt::CopyAction | Qt::MoveAction, data.get(), Qt::LeftButton, {});
        QCoreApplication::sendEvent(view, &enter);
        QDropEvent drop(at, Qt::CopyAction | Qt::MoveAction, data.get(), Qt::LeftButton, {});
        QCoreApplication::sendEvent(view, &drop);
        EXPECT_EQ(drop.isAccepted(), at == placeOf(paid));
    }
    EXPECT_EQ(asked.filePaths, QStringList{odd});
    EXPECT_EQ(KPTagName::displayStringsForTagNames(asked.newTags), QStringList{paid});
    EXPECT_TRUE(asked.originalTags.isEmpty());
    EXPECT_TRUE(asked.confirmWhenChangingManyFiles);
}

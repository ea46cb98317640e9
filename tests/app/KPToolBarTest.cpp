#include "KPToolBar.h"

#include "KPCommandTable.h"
#include "KPDocIcons.h"
#include "KPIconButton.h"
#include "KPSearchField.h"
#include "KPToolBarDialog.h"
#include "KPToolBarItems.h"
#include "TestHome.h"
#include "UserDefaults.h"

#include <QAccessible>
#include <QApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QMenu>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

namespace {

class ToolBar : public testing::Test
{
protected:
    void SetUp() override
    {
        KPDocIcons::registerIcons();
        UserDefaults::standard().remove(KPToolBarItems::toolBarIdentifier);
        m_commands.add({{.id = "KPBack", .menu = KPCommandMenu::Go, .run = [] {}},
                        {.id = "KPForward", .menu = KPCommandMenu::Go, .run = [] {}},
                        {.id = "KPRefresh", .menu = KPCommandMenu::Go, .run = [] {}},
                        {.id = "KPInspectorShown",
                         .menu = KPCommandMenu::View,
                         .run = [] {},
                         .state = [this] { return KPCommandState{.isShown = m_hasInspector}; }}});
        m_field = new KPSearchField;
        m_bar = new KPToolBar(&m_commands, m_field);
        m_window.addToolBar(m_bar);
        m_window.resize(1000, 200);
        m_window.show();
    }
    // From left to right.
    QStringList buttons() const
    {
        QMap<int, QString> byPlace;
        for (const KPIconButton *button : m_bar->findChildren<KPIconButton *>()) {
            if (button->isVisible() && !m_field->isAncestorOf(button))
                byPlace.insert(button->mapTo(m_bar, QPoint()).x(), button->accessibleName());
        }
        return byPlace.values();
    }
    static QStringList names(std::initializer_list<const char *> ids)
    {
        QStringList names;
        for (const char *id : ids)
            names.append(qtTrId(id).remove(u'&'));
        return names;
    }
    bool laysOut(const QStringList &wanted)
    {
        return QTest::qWaitFor([&] { return buttons() == wanted; });
    }

    TestFolder m_home;
    bool m_hasInspector = false;
    KPCommands m_commands;
    QMainWindow m_window;
    KPToolBar *m_bar = nullptr;
    KPSearchField *m_field = nullptr;
};

QListWidgetItem *itemOf(const QListWidget *list, const QString &identifier)
{
    for (int row = 0; row < list->count(); ++row) {
        if (list->item(row)->data(Qt::UserRole) == identifier)
            return list->item(row);
    }
    return nullptr;
}

} // namespace

TEST_F(ToolBar, ShowsWhatIsThereInTheUsersOrder)
{
    EXPECT_TRUE(laysOut(names({"KPBack", "KPForward", "KPRefresh"})));
    m_hasInspector = true;
    m_commands.update();
    EXPECT_TRUE(laysOut(names({"KPBack", "KPForward", "KPInspectorShown", "KPRefresh"})));
    QTest::keyClicks(m_field->entry(), QStringLiteral("half a wo"));
    KPToolBarItems::setIdentifiers({QStringLiteral("KPRefreshSearch"), QStringLiteral("gone"),
                                    QStringLiteral("KPRefreshSearch"), KPToolBarItems::separator,
                                    QStringLiteral("zelNavigation"), KPToolBarItems::separator});
    EXPECT_TRUE(laysOut(names({"KPRefresh", "KPBack", "KPForward"})));
    EXPECT_TRUE(m_field->isVisible());
    EXPECT_EQ(m_field->text(), u"half a wo");
}

TEST_F(ToolBar, OpensAMenuForAssistivePrograms)
{
    auto *menu = new QMenu(&m_window);
    menu->addAction(QStringLiteral("Name"));
    m_commands.add(
        {{.id = "KPSortBy", .menu = KPCommandMenu::View, .submenu = [menu] { return menu; }}});
    KPToolBarItems::setIdentifiers({QStringLiteral("KPResultsSortOrder")});
    ASSERT_TRUE(laysOut(names({"KPSortBy"})));
    bool isOpened = false;
    QObject::connect(menu, &QMenu::aboutToShow, menu, [&isOpened, menu] {
        isOpened = true;
        QTimer::singleShot(0, menu, &QWidget::close);
    });
    for (KPIconButton *button : m_bar->findChildren<KPIconButton *>()) {
        if (button->accessibleName() == names({"KPSortBy"}).first())
            QAccessible::queryAccessibleInterface(button)->actionInterface()->doAction(
                QAccessibleActionInterface::pressAction());
    }
    EXPECT_TRUE(QTest::qWaitFor([&] { return isOpened; }));
}

TEST_F(ToolBar, SqueezesNothingInANarrowWindow)
{
    m_window.setMinimumSize(100, 100);
    m_window.resize(250, 200);
    ASSERT_TRUE(QTest::qWaitFor([&] { return m_bar->width() == 250; }));
    const auto placeOf = [this](const QWidget *widget) {
        return QRect(widget->mapTo(m_bar, QPoint()), widget->size());
    };
    const auto isFree = [&] {
        for (const KPIconButton *button : m_bar->findChildren<KPIconButton *>()) {
            if (!m_field->isAncestorOf(button) && (button->width() < button->sizeHint().width() ||
                                                   placeOf(button).intersects(placeOf(m_field))))
                return false;
        }
        return m_bar->rect().contains(placeOf(m_field));
    };
    QApplication::processEvents();
    EXPECT_TRUE(isFree());
}

TEST_F(ToolBar, IsCustomisedAndRemembersIt)
{
    KPToolBarDialog dialog(&m_commands, &m_window);
    dialog.show();
    const auto lists = dialog.findChildren<QListWidget *>();
    QListWidget *chosen = nullptr;
    QListWidget *others = nullptr;
    for (QListWidget *list : lists)
        (list->accessibleName() == qtTrId("KPToolBar") ? chosen : others) = list;
    ASSERT_TRUE(chosen && others);
    const QString refresh = QStringLiteral("KPRefreshSearch");
    EXPECT_FALSE(itemOf(others, refresh)) << "an item stands once";
    EXPECT_TRUE(itemOf(others, KPToolBarItems::space)) << "a space as often as wanted";

    chosen->setCurrentItem(itemOf(chosen, refresh));
    QTest::keyClick(chosen, Qt::Key_Delete);
    EXPECT_TRUE(laysOut(names({"KPBack", "KPForward"})));
    ASSERT_TRUE(itemOf(others, refresh));
    EXPECT_FALSE(KPToolBarItems::identifiers().contains(refresh));

    chosen->setCurrentRow(-1);
    others->setCurrentItem(itemOf(others, refresh));
    QTest::keyClick(others, Qt::Key_Return);
    EXPECT_TRUE(laysOut(names({"KPRefresh", "KPBack", "KPForward"})));

    for (QPushButton *button : dialog.findChildren<QPushButton *>()) {
        if (button->text() == qtTrId("KPToolbarUseDefault"))
            QTest::mouseClick(button, Qt::LeftButton);
    }
    EXPECT_EQ(KPToolBarItems::identifiers(), KPToolBarItems::defaultIdentifiers());
    EXPECT_TRUE(laysOut(names({"KPBack", "KPForward", "KPRefresh"})));
}

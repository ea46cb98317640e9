// The application's commands, and its icon in dock and tray.
#include "KPAppDelegate.h"
#include "KPController.h"
#include "KPCrashReports.h"
#include "KPLaunchSettings.h"
#include "KPStatusItem.h"
#include "KPWelcome.h"
#include "UserDefaults.h"
#include "XPLauncherBadge.h"
#include "XPWorkspace.h"

#include <QApplication>

static const QString statusItemKey = QStringLiteral("KPShowStatusItem");

void KPAppDelegate::hideShowMainWindowAction()
{
    if (!m_controller)
        return;
    if (m_controller->isActiveWindow() && m_controller->isVisible())
        m_controller->hide();
    else
        bringToFront({});
}

void KPAppDelegate::allAction()
{
    bringToFront({});
}

void KPAppDelegate::colourDefaultsAction()
{
    KPLaunchSettings::revertColours();
}

void KPAppDelegate::updateApplicationBadgeWithNumber(int number)
{
    m_badge = number;
    XPLauncherBadge::show(number);
    if (m_statusItem)
        m_statusItem->setNumber(number);
}

// With an icon in the tray the window can be closed and brought back.
void KPAppDelegate::followStatusItem(bool isWanted)
{
    if (!isWanted || !KPStatusItem::isPossible()) {
        m_statusItem.reset();
    } else if (!m_statusItem) {
        m_statusItem = std::make_unique<KPStatusItem>();
        m_statusItem->setNumber(m_badge);
        connect(m_statusItem.get(), &KPStatusItem::toggleAsked, this,
                &KPAppDelegate::hideShowMainWindowAction);
        connect(m_statusItem.get(), &KPStatusItem::showAsked, this, &KPAppDelegate::allAction);
        connect(m_statusItem.get(), &KPStatusItem::searchAsked, this,
                [this] { searchInMurnService({}, {}); });
        connect(m_statusItem.get(), &KPStatusItem::quitAsked, qApp, &QApplication::quit,
                Qt::QueuedConnection);
    }
    QApplication::setQuitOnLastWindowClosed(m_statusItem == nullptr);
    if (m_controller)
        m_controller->setHidesOnClose(m_statusItem != nullptr);
}

static bool hasOwnColours()
{
    const auto &colours = KPLaunchSettings::colourDefaultsDictionary();
    for (auto each = colours.begin(); each != colours.end(); ++each) {
        if (UserDefaults::standard().value(each.key()) != each.value())
            return true;
    }
    return UserDefaults::standard().boolValue(QStringLiteral("XPDrawCloudItemsBlack"));
}

QList<KPCommand> KPAppDelegate::commands()
{
    return {
        {.id = QT_TRID_NOOP("KPStandardColours"),
         .menu = KPCommandMenu::View,
         .run = [this] { colourDefaultsAction(); },
         .state = [] { return KPCommandState{.isShown = hasOwnColours()}; }},
        {.id = QT_TRID_NOOP("KPStatusItem"),
         .menu = KPCommandMenu::Window,
         .run =
             [] {
                 UserDefaults &defaults = UserDefaults::standard();
                 defaults.setValue(statusItemKey,
                                   PropertyValue::boolean(!defaults.boolValue(statusItemKey)));
             },
         .state =
             [] {
                 return KPCommandState{.isChecked =
                                           UserDefaults::standard().boolValue(statusItemKey),
                                       .isShown = KPStatusItem::isPossible()};
             }},
        {.id = QT_TRID_NOOP("KPWelcomeAgain"),
         .menu = KPCommandMenu::Help,
         .run = [this] { (new KPWelcome(m_controller.get()))->open(); }},
        {.id = QT_TRID_NOOP("KPCrashReportsFolder"),
         .menu = KPCommandMenu::Help,
         .run = [] { XPWorkspace::reveal(KPCrashReports::all()); },
         .state = [this] { return KPCommandState{.isShown = m_hasCrashReports}; }},
    };
}

// The application's commands, and its icon in dock and tray.
#include "KPAppDelegate.h"
#include "KPController.h"
#include "KPCrashReports.h"
#include "KPDropZoneDelegate.h"
#include "KPLaunchSettings.h"
#include "KPStatusItem.h"
#include "KPWelcome.h"
#include "UserDefaults.h"
#include "XPLauncherBadge.h"
#include "XPWorkspace.h"

#include <QApplication>

static const QString statusItemKey = QStringLiteral("KPShowStatusItem");
static const QString zoneKey = QStringLiteral("KPShowDropZone");
static const QString zoneStaysKey = QStringLiteral("KPShowDropZoneEvenWithoutFileDrag");

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
    showWayBack();
}

void KPAppDelegate::makeDropZone()
{
    if (!m_line.screenshot.isEmpty())
        return;
    m_zoneDelegate = std::make_unique<KPDropZoneDelegate>(*m_controller);
    m_dropZone = std::make_unique<XPDropZoneController>(m_zoneDelegate.get());
    for (const QString &key : {zoneKey, zoneStaysKey})
        m_observations.push_back(UserDefaults::standard().addObserver(
            QStringLiteral("values.") + key, [this](const PropertyValue &) { showWayBack(); }));
    showWayBack();
}

// With an icon in the tray, or the zone's strip at the edge, the window can be closed and brought
// back.
void KPAppDelegate::showWayBack()
{
    const UserDefaults &defaults = UserDefaults::standard();
    const bool hasZone =
        m_dropZone != nullptr && defaults.boolValue(zoneKey) && defaults.boolValue(zoneStaysKey);
    const bool hasWayBack = m_statusItem != nullptr || hasZone;
    QApplication::setQuitOnLastWindowClosed(!hasWayBack);
    if (m_controller)
        m_controller->setHidesOnClose(hasWayBack);
}

// A command that switches a setting.
static KPCommand settingCommand(const char *id, const QString &key, bool (*isShown)())
{
    return {.id = id,
            .menu = KPCommandMenu::Window,
            .run =
                [key] {
                    UserDefaults &defaults = UserDefaults::standard();
                    defaults.setValue(key, PropertyValue::boolean(!defaults.boolValue(key)));
                },
            .state =
                [key, isShown] {
                    return KPCommandState{.isChecked = UserDefaults::standard().boolValue(key),
                                          .isShown = isShown()};
                }};
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
        {.id = QT_TRID_NOOP("KPPreferences"),
         .menu = KPCommandMenu::Edit,
         .shortcut = QKeySequence(Qt::CTRL | Qt::Key_Comma),
         .run = [this] { preferencesAction(); },
         .symbol = "settings"},
        {.id = QT_TRID_NOOP("KPStandardColours"),
         .menu = KPCommandMenu::View,
         .run = [this] { colourDefaultsAction(); },
         .state = [] { return KPCommandState{.isShown = hasOwnColours()}; }},
        settingCommand(QT_TRID_NOOP("KPStatusItem"), statusItemKey, &KPStatusItem::isPossible),
        settingCommand(QT_TRID_NOOP("KPShowDropZone"), zoneKey, [] { return true; }),
        settingCommand(QT_TRID_NOOP("KPKeepDropZone"), zoneStaysKey, [] { return true; }),
        {.id = QT_TRID_NOOP("KPWelcomeAgain"),
         .menu = KPCommandMenu::Help,
         .run = [this] { (new KPWelcome(m_controller.get()))->open(); }},
        {.id = QT_TRID_NOOP("KPCrashReportsFolder"),
         .menu = KPCommandMenu::Help,
         .run = [] { XPWorkspace::reveal(KPCrashReports::all()); },
         .state = [this] { return KPCommandState{.isShown = m_hasCrashReports}; }},
    };
}

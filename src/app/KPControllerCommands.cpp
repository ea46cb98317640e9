// The window's own commands, as tables: what stands in the menus and the toolbar.
#include "KPAboutWindow.h"
#include "KPArchiveCommands.h"
#include "KPController.h"
#include "KPCrumbController.h"
#include "KPDocCache.h"
#include "KPDocsView.h"
#include "KPEditHistory.h"
#include "KPIndexMonitor.h"
#include "KPInstalledFiles.h"
#include "KPReportWindow.h"
#include "KPShortcutsWindow.h"
#include "KPToolBar.h"
#include "KPUpdates.h"
#include "KPWebCapture.h"
#include "KPWorkflows.h"
#include "UserDefaults.h"

#include <QMenuBar>

using Place = KPWindowPanels::Place;
using Menu = KPCommandMenu;

static constexpr auto ctrlShift = Qt::CTRL | Qt::SHIFT;

QList<KPCommand> KPController::fileCommands()
{
    return QList<KPCommand>{
               {.id = QT_TRID_NOOP("KPOpenFolder"),
                .menu = Menu::File,
                .shortcut = QKeySequence::Open,
                .run = [this] { openFolder(); }},
               {.id = QT_TRID_NOOP("KPIndexFolder"),
                .menu = Menu::File,
                .run = [this] { indexFolders(); },
                .state =
                    [this] { return KPCommandState{.isEnabled = !foldersNotIndexed().isEmpty()}; },
                .endsGroup = true},
               {.id = QT_TRID_NOOP("KPScanAction"),
                .menu = Menu::File,
                .shortcut = QKeySequence(ctrlShift | Qt::Key_N),
                .run = [this] { scanAction(); },
                .symbol = "scan"},
               {.id = QT_TRID_NOOP("KPCaptureWebPage"),
                .menu = Menu::File,
                .run =
                    [this] {
                        xpGuiThread.assertHere();
                        KPWebCapture::ask(this);
                    },
                .endsGroup = true},
           } +
           m_archive->commands();
}

// The last ones of the first menu.
QList<KPCommand> KPController::endCommands()
{
    return {
        {.id = QT_TRID_NOOP("KPCloseWindow"),
         .menu = Menu::File,
         .shortcut = QKeySequence(Qt::CTRL | Qt::Key_W),
         .run = [this] { closeFront(); }},
        {.id = QT_TRID_NOOP("KPQuit"),
         .menu = Menu::File,
         .shortcut = QKeySequence(Qt::CTRL | Qt::Key_Q),
         .run = [this] { quit(); }},
    };
}

QList<KPCommand> KPController::editCommands()
{
    const auto described = [](bool can, const char *plain, const char *named, const QString &what) {
        return KPCommandState{.isEnabled = can,
                              .title = what.isEmpty() ? qtTrId(plain) : qtTrId(named).arg(what)};
    };
    return {
        {.id = QT_TRID_NOOP("KPUndo"),
         .menu = Menu::Edit,
         .shortcut = QKeySequence::Undo,
         .run = [this] { m_edits->undo(); },
         .state =
             [this, described] {
                 return described(m_edits->canUndo(), QT_TRID_NOOP("KPUndo"),
                                  QT_TRID_NOOP("KPUndoNamed"), m_edits->undoText());
             },
         .symbol = "undo"},
        {.id = QT_TRID_NOOP("KPRedo"),
         .menu = Menu::Edit,
         .shortcut = QKeySequence(ctrlShift | Qt::Key_Z),
         .run = [this] { m_edits->redo(); },
         .state =
             [this, described] {
                 return described(m_edits->canRedo(), QT_TRID_NOOP("KPRedo"),
                                  QT_TRID_NOOP("KPRedoNamed"), m_edits->redoText());
             },
         .symbol = "redo"},
        {.id = QT_TRID_NOOP("KPHistoryList"),
         .menu = Menu::Edit,
         .run = [this] { showHistory(); },
         .state = [this] { return KPCommandState{.isEnabled = m_edits->count() > 0}; },
         .endsGroup = true},
    };
}

QList<KPCommand> KPController::searchCommands()
{
    const auto isSpotlight = [] {
        return UserDefaults::standard().boolValue(QStringLiteral("KPDoSpotlightSearches"));
    };
    return {
        {.id = QT_TRID_NOOP("KPFind"),
         .menu = Menu::Edit,
         .shortcut = QKeySequence::Find,
         .run = [this] { findDocumentsAction(); },
         .symbol = "search"},
        {.id = QT_TRID_NOOP("KPSearchModeSpotlight"),
         .menu = Menu::Edit,
         .run = [this] { searchModeSpotlight(); },
         .state = [=] { return KPCommandState{.isChecked = isSpotlight()}; }},
        {.id = QT_TRID_NOOP("KPSearchModeFilenameFilter"),
         .menu = Menu::Edit,
         .run = [this] { searchModeFilenameFilter(); },
         .state = [=] { return KPCommandState{.isChecked = !isSpotlight()}; },
         .endsGroup = true},
    };
}

QList<KPCommand> KPController::panelCommands()
{
    const auto toggle = [this](Place place) { return [this, place] { m_panels->toggle(place); }; };
    const auto checked = [this](Place place) {
        return [this, place] {
            return KPCommandState{.isChecked = m_panels->isShown(place),
                                  .isShown = m_panels->hasPanel(place)};
        };
    };
    const auto named = [this](Place place, const char *show, const char *hide) {
        return [this, place, show, hide] {
            return KPCommandState{.text = m_panels->isShown(place) ? hide : show,
                                  .isShown = m_panels->hasPanel(place)};
        };
    };
    return {
        {.id = QT_TRID_NOOP("KPTagPanelShown"),
         .menu = Menu::View,
         .shortcut = QKeySequence(ctrlShift | Qt::Key_K),
         .run = toggle(Place::TagPanel),
         .state = checked(Place::TagPanel),
         .symbol = "tag"},
        {.id = QT_TRID_NOOP("KPLocationsPanelShown"),
         .menu = Menu::View,
         .shortcut = QKeySequence(ctrlShift | Qt::Key_L),
         .run = toggle(Place::Locations),
         .state = checked(Place::Locations),
         .symbol = "folder"},
        {.id = QT_TRID_NOOP("KPInspectorShown"),
         .menu = Menu::View,
         .shortcut = QKeySequence(Qt::CTRL | Qt::Key_I),
         .run = toggle(Place::Inspector),
         .state = checked(Place::Inspector),
         .symbol = "inspector",
         .endsGroup = true},
        {.id = QT_TRID_NOOP("KPShowBookmarksPanel"),
         .menu = Menu::View,
         .shortcut = QKeySequence(ctrlShift | Qt::Key_B),
         .run = toggle(Place::BookmarksPanel),
         .state = named(Place::BookmarksPanel, QT_TRID_NOOP("KPShowBookmarksPanel"),
                        QT_TRID_NOOP("KPHideBookmarksPanel")),
         .symbol = "bookmark"},
        {.id = QT_TRID_NOOP("KPShowBookmarkBar"),
         .menu = Menu::View,
         .run = toggle(Place::BookmarkBar),
         .state = named(Place::BookmarkBar, QT_TRID_NOOP("KPShowBookmarkBar"),
                        QT_TRID_NOOP("KPHideBookmarkBar"))},
        {.id = QT_TRID_NOOP("KPShowActionBar"),
         .menu = Menu::View,
         .run = toggle(Place::ActionBar),
         .state = named(Place::ActionBar, QT_TRID_NOOP("KPShowActionBar"),
                        QT_TRID_NOOP("KPHideActionBar"))},
        {.id = QT_TRID_NOOP("KPCustomiseToolbar"),
         .menu = Menu::View,
         .run = [this] { m_toolBar->customise(); },
         .endsGroup = true},
        {.id = QT_TRID_NOOP("KPFullScreen"),
         .menu = Menu::View,
         .shortcut = QKeySequence(Qt::Key_F11),
         .run = [this] { setWindowState(windowState() ^ Qt::WindowFullScreen); },
         .state = [this] { return KPCommandState{.isChecked = isFullScreen()}; }},
    };
}

QList<KPCommand> KPController::goCommands()
{
    return {
        {.id = QT_TRID_NOOP("KPBack"),
         .menu = Menu::Go,
         .shortcut = QKeySequence(Qt::ALT | Qt::Key_Left),
         .run = [this] { backAction(); },
         .state = [this] { return KPCommandState{.isEnabled = m_history.backListCount() > 0}; },
         .symbol = "back"},
        {.id = QT_TRID_NOOP("KPForward"),
         .menu = Menu::Go,
         .shortcut = QKeySequence(Qt::ALT | Qt::Key_Right),
         .run = [this] { forwardAction(); },
         .state = [this] { return KPCommandState{.isEnabled = m_history.forwardListCount() > 0}; },
         .symbol = "forward"},
        {.id = QT_TRID_NOOP("KPForgetSearches"),
         .menu = Menu::Go,
         .run = [this] { forgetSearchesAction(); },
         .endsGroup = true},
        {.id = QT_TRID_NOOP("KPGoHome"),
         .menu = Menu::Go,
         .shortcut = QKeySequence(Qt::ALT | Qt::Key_Home),
         .run = [this] { m_crumbs->useDefaultSearchAction(); },
         .symbol = "home"},
        {.id = QT_TRID_NOOP("KPGoUp"),
         .menu = Menu::Go,
         .shortcut = QKeySequence(Qt::ALT | Qt::Key_Up),
         .run = [this] { m_crumbs->parentLocationAction(); },
         .state = [this] { return KPCommandState{.isEnabled = m_crumbs->canGoUp()}; },
         .symbol = "up",
         .endsGroup = true},
        {.id = QT_TRID_NOOP("KPAllDocuments"),
         .menu = Menu::Go,
         .shortcut = QKeySequence(ctrlShift | Qt::Key_A),
         .run = [this] { allAction(); },
         .symbol = "documents"},
        {.id = QT_TRID_NOOP("KPUntaggedDocuments"),
         .menu = Menu::Go,
         .shortcut = QKeySequence(ctrlShift | Qt::Key_U),
         .run = [this] { showUntaggedDocumentsAction(); },
         .symbol = "untagged"},
        {.id = QT_TRID_NOOP("KPTodaysFiledDocuments"),
         .menu = Menu::Go,
         .run = [this] { goToTodaysFiledDocuments(); },
         .symbol = "today",
         .endsGroup = true},
        {.id = QT_TRID_NOOP("KPRefresh"),
         .menu = Menu::Go,
         .shortcut = QKeySequence(Qt::Key_F5),
         .run = [this] { refreshSearch(); },
         .symbol = "refresh"},
    };
}

static QString userGuide()
{
    return KPInstalledFiles::path(QStringLiteral("Zel Manual.pdf"));
}

QList<KPCommand> KPController::helpCommands()
{
    const bool hasGuide = !userGuide().isEmpty();
    const bool hasWorkflows = KPWorkflows::isPossible();
    return {
        {.id = QT_TRID_NOOP("KPQuickSearch"),
         .menu = Menu::Window,
         .run = [this] { spotlightReplacementAction(); },
         .symbol = "search",
         .endsGroup = true},
        {.id = QT_TRID_NOOP("KPMinimise"),
         .menu = Menu::Window,
         .shortcut = QKeySequence(Qt::CTRL | Qt::Key_M),
         .run = [this] { showMinimized(); }},
        {.id = QT_TRID_NOOP("KPUserGuide"),
         .menu = Menu::Help,
         .shortcut = QKeySequence::HelpContents,
         .run =
             [this] {
                 xpGuiThread.assertHere();
                 userGuideAction();
             },
         .state = [hasGuide] { return KPCommandState{.isShown = hasGuide}; }},
        {.id = QT_TRID_NOOP("KPShortcuts"),
         .menu = Menu::Help,
         .shortcut = QKeySequence(Qt::CTRL | Qt::Key_F1),
         .run = [this] { (new KPShortcutsWindow(menuBar(), this))->open(); },
         .endsGroup = true},
        {.id = QT_TRID_NOOP("KPInstallWorkflows"),
         .menu = Menu::Help,
         .run =
             [] {
                 xpGuiThread.assertHere();
                 KPWorkflows::installWorkflows();
             },
         .state = [hasWorkflows] { return KPCommandState{.isShown = hasWorkflows}; }},
        {.id = QT_TRID_NOOP("KPReport"),
         .menu = Menu::Help,
         .run = [this] { (new KPReportWindow(indexInWords(), this))->open(); }},
        {.id = QT_TRID_NOOP("KPCheckForUpdates"),
         .menu = Menu::Help,
         .run = [] { KPUpdates::check(); },
         .endsGroup = true},
        {.id = QT_TRID_NOOP("KPAbout"),
         .menu = Menu::Help,
         .run = [this] { (new KPAboutWindow(this))->open(); }},
    };
}

QStringList KPController::indexInWords() const
{
    if (!m_index)
        return {};
    return QStringList{QStringLiteral("%1 rows, %2 wait, %3")
                           .arg(m_index->status().items)
                           .arg(m_index->status().contentsWaiting)
                           .arg(m_index->activity())} +
           m_index->problems();
}

void KPController::userGuideAction()
{
    if (KPDoc *guide = KPDocCache::docAtPath(userGuide()))
        (void)guide->openDocExternal();
}

#include "KPSidePanels.h"

#include "KPBookmarkBar.h"
#include "KPBookmarkCommands.h"
#include "KPBookmarkPanel.h"
#include "KPBookmarks.h"
#include "KPCloudController.h"
#include "KPController.h"
#include "KPCrumbTrail.h"
#include "KPFolderFollower.h"
#include "KPLastImport.h"
#include "KPLocationsPanel.h"
#include "KPRowCounts.h"
#include "KPSourceList.h"
#include "XPPrompts.h"

#include <QMenu>

using Place = KPWindowPanels::Place;
using Menu = KPCommandMenu;

KPSidePanels::KPSidePanels(KPController &window, IndexSource &source, QUndoStack &history)
    : m_window(window), m_bookmarks(std::make_unique<KPBookmarks>()),
      m_follower(std::make_unique<KPFolderFollower>(window.crumbController(), *m_bookmarks)),
      m_lastImport(std::make_unique<KPLastImport>(window.crumbController())),
      m_counts(std::make_unique<KPRowCounts>(source)),
      m_bookmarkCommands(std::make_unique<KPBookmarkCommands>(window.crumbController(),
                                                              *m_bookmarks, history, &window))
{
    connect(m_bookmarkCommands.get(), &KPBookmarkCommands::failed, this, &KPSidePanels::tellFailed);
    makeBars();
    makePanels();
}

KPSidePanels::~KPSidePanels() = default;

void KPSidePanels::makeBars()
{
    KPWindowPanels &panels = m_window.panels();
    m_trail = new KPCrumbTrail(m_window.crumbController());
    panels.addPanel(Place::CrumbBar, m_trail);
    panels.addPanel(Place::BookmarkBar,
                    new KPBookmarkBar(m_window.crumbController(), *m_bookmarkCommands));
}

void KPSidePanels::makePanels()
{
    KPWindowPanels &panels = m_window.panels();
    m_sourceList = new KPSourceList(m_window.crumbController(), *m_bookmarks, m_counts.get());
    connect(m_sourceList, &KPSourceList::failed, this,
            [this](const XPError &error) { tellFailed(qtTrId("KPBookmarksNotChanged"), error); });
    connect(m_sourceList, &KPSourceList::bookmarkMenuRequested, this,
            &KPSidePanels::showBookmarkMenu);
    connect(m_lastImport.get(), &KPLastImport::changed, m_sourceList,
            [this] { m_sourceList->setLastImport(m_lastImport->searchState()); });
    panels.addPanel(Place::SourceList, m_sourceList);

    m_cloud = new KPCloudController(m_window);
    connect(m_cloud, &KPCloudController::left, this, &KPSidePanels::left);
    panels.addPanel(Place::TagPanel, m_cloud);
    panels.addPanel(Place::Locations, new KPLocationsPanel(m_window.crumbController()));

    auto *bookmarks = new KPBookmarkPanel(*m_bookmarkCommands);
    panels.addPanel(Place::BookmarksPanel, bookmarks);
    connect(m_bookmarkCommands.get(), &KPBookmarkCommands::ran, this, [this, bookmarks] {
        bookmarks->clearSelection();
        m_window.panels().setShown(Place::BookmarksPanel, false);
    });
}

void KPSidePanels::showBookmarkMenu(const QStringList &identifiers, const QPoint &globalPosition)
{
    auto *menu = new QMenu(&m_window);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    m_bookmarkCommands->fillMenu(menu, identifiers);
    menu->popup(globalPosition);
}

void KPSidePanels::tellFailed(const QString &what, const XPError &error)
{
    XPPrompts::current().alert(what, error.reason());
}

QList<KPCommand> KPSidePanels::commands()
{
    QList<KPCommand> table{
        {.id = QT_TRID_NOOP("KPBookmarkAdd"),
         .menu = Menu::Go,
         .shortcut = QKeySequence(Qt::CTRL | Qt::Key_D),
         .run = [this] { m_bookmarkCommands->saveCurrent(); },
         .state = [this] { return KPCommandState{.isEnabled = m_bookmarkCommands->canSave()}; },
         .symbol = "bookmark-add"},
        {.id = QT_TRID_NOOP("KPBookmarkImportFile"),
         .menu = Menu::File,
         .run = [this] { m_bookmarkCommands->importFile(); }},
        {.id = QT_TRID_NOOP("KPBookmarkExportFile"),
         .menu = Menu::File,
         .run = [this] { m_bookmarkCommands->exportFile(); },
         .state =
             [this] {
                 return KPCommandState{.isEnabled = !m_bookmarks->root().children.isEmpty()};
             },
         .endsGroup = true},
    };
    return table + m_cloud->commands();
}

void KPSidePanels::writeOutState() const
{
    m_sourceList->writeOutState();
}

void KPSidePanels::modifiersChanged(Qt::KeyboardModifiers modifiers)
{
    m_trail->modifiersChanged(modifiers);
}

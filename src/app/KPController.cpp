#include "KPController.h"

#include "KPActionBar.h"
#include "KPAppDelegate.h"
#include "KPArchiveCommands.h"
#include "KPCrumbController.h"
#include "KPDocumentCommands.h"
#include "KPEditHistory.h"
#include "KPFilingCommands.h"
#include "KPIndexMonitor.h"
#include "KPInspector.h"
#include "KPInspectorController.h"
#include "KPLibraryController.h"
#include "KPLibraryModel.h"
#include "KPLoupeController.h"
#include "KPPreviewController.h"
#include "KPQuickLook.h"
#include "KPSearchField.h"
#include "KPSearchPopup.h"
#include "KPSearcher.h"
#include "KPSidePanels.h"
#include "KPStatusLine.h"
#include "KPTagEditing.h"
#include "KPTagsWindow.h"
#include "KPToolBar.h"
#include "KPWindowFrame.h"
#include "UserDefaults.h"
#include "XPFiledDocuments.h"
#include "XPLog.h"
#include "XPScanController.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenuBar>
#include <QWindow>

using Place = KPWindowPanels::Place;

static const QString geometryKey = QStringLiteral("KPMainWindowGeometry");
static constexpr QSize usualSize{1280, 800};

static KPController *theController = nullptr;

KPController *KPController::instance()
{
    return theController;
}

KPController::KPController(IndexSource &source, const QStringList &folders, KPIndexMonitor *index)
    : m_index(index), m_searcher(std::make_unique<KPSearcher>(source)),
      m_crumbs(std::make_unique<KPCrumbController>(*this)), m_looks(KPQuickLook::instance()),

      m_model(std::make_unique<KPLibraryModel>(m_searcher.get())),
      m_worker(std::make_unique<KPEditWorker>()),
      m_edits(std::make_unique<KPEditHistory>(m_worker.get())),
      m_library(std::make_unique<KPLibraryController>(*this, *m_model, m_looks)),
      m_commands(std::make_unique<KPCommands>()), m_searchField(new KPSearchField),
      m_panels(new KPWindowPanels), m_inspector(new KPInspector), m_status(new KPStatusLine)
{
    m_inspection = std::make_unique<KPInspectorController>(*m_inspector, m_looks);
    Q_ASSERT_X(!theController, "KPController", "There is already an KPController present!");
    theController = this;
    m_searcher->setAnswersForView(true);
    m_filing = std::make_unique<KPFilingCommands>(*m_library, *m_edits);
    m_documents = std::make_unique<KPDocumentCommands>(
        *m_library, m_library->currentSearchController(), *m_edits);
    m_archive =
        std::make_unique<KPArchiveCommands>(*m_library, [this] { return pathsOfResults(); });
    m_sides = std::make_unique<KPSidePanels>(*this, source, *m_edits);
    m_preview = std::make_unique<KPPreviewController>(*m_library, m_looks, this);
    buildCommands();
    buildWindow();
    connectSearchField(m_searchField);
    connectSearcher();
    connectLibrary();
    connectEditing();
    connectTagEditing();
    connectPreview();
    qApp->installEventFilter(this);
    observe();
    restoreSettings();
    m_library->widget()->setFocus();
    beginSearching(folders);
}

// The views go first: they refer to what the unique pointers hold.
KPController::~KPController()
{
    m_searcher->stop();
    m_preview.reset();
    m_inspection.reset();
    delete takeCentralWidget();
    delete m_toolBar;
    theController = nullptr;
}

// --- Building

void KPController::buildWindow()
{
    m_toolBar = new KPToolBar(m_commands.get(), m_searchField);
    addToolBar(m_toolBar);
    setContextMenuPolicy(Qt::NoContextMenu); // the toolbar cannot be hidden by accident
    m_panels->addPanel(Place::ActionBar, new KPActionBar(*m_commands));
    m_panels->addPanel(Place::Library, m_library->widget());
    m_panels->addPanel(Place::Inspector, m_inspector);
    setCentralWidget(m_panels);
    setStatusBar(m_status);
    connect(m_panels, &KPWindowPanels::changed, this, &KPController::setMinWindowSize);
    connect(m_panels, &KPWindowPanels::changed, m_commands.get(), qOverload<>(&KPCommands::update));
    m_commands->update();
}

// Menus hold the commands in the order of the tables.
void KPController::buildCommands()
{
    for (const QList<KPCommand> &table :
         {fileCommands(), editCommands(), m_library->commands(), documentCommands(),
          m_preview->commands(), m_filing->commands(), m_documents->commands(), searchCommands(),
          panelCommands(), goCommands(), m_sides->commands(), tagCommands(), helpCommands()})
        m_commands->add(table);
    if (KPAppDelegate *delegate = KPAppDelegate::instance())
        m_commands->add(delegate->commands());
    m_commands->add(endCommands());
    m_commands->fill(menuBar());
    m_searchField->setModeActions({m_commands->action("KPSearchModeSpotlight"),
                                   m_commands->action("KPSearchModeFilenameFilter")});
}

void KPController::connectSearcher()
{
    connect(m_searcher.get(), &KPSearcher::stateToRemember, this, &KPController::addToHistory);
    connect(m_searcher.get(), &KPSearcher::searchStarted, this, [this] {
        m_isWaiting = true;
        m_status->showSearching(true);
        m_problems.clear();
        showProblems();
        showEmptyText();
    });
    // What was typed is answered: the views show it at once.
    connect(m_searcher.get(), &KPSearcher::delivered, this,
            [this](const KPResultsDelivery::Ptr &delivery) {
                userDoneTyping();
                if (!delivery || delivery->isDone)
                    searchFinished(delivery ? delivery->problems : QStringList());
            });
    connect(m_crumbs.get(), &KPCrumbController::canGoUpChanged, m_commands.get(),
            qOverload<>(&KPCommands::update));
    connect(m_status, &KPStatusLine::stopSearchRequested, this, &KPController::stopSearch);
    if (m_index)
        connect(m_index, &KPIndexMonitor::changed, this, &KPController::showIndex);
}

void KPController::observe()
{
    auto &centre = XPNotificationCenter::instance();
    const auto onNotice = [&](const QString &name, void (KPController::*act)()) {
        m_observations.push_back(
            centre.addObserver(name, [this, act](const XPNotification &) { (this->*act)(); }));
    };
    onNotice(KPSearcher::lookMayHaveChanged, &KPController::showStateOfSearch);
    onNotice(QStringLiteral("DocumentAddedToFiledDocumentsFromPBoard"),
             &KPController::goToTodaysFiledDocuments);
    onNotice(XPFiledDocuments::addedFromPendingNotification,
             &KPController::goToTodaysFiledDocuments);
    m_observations.push_back(
        centre.addObserver(QStringLiteral("KPNeedToRedoSearch"), [this](const XPNotification &) {
            m_searcher->forceNewSearchNextTime();
            m_searcher->restartSearchFromScratch();
        }));
    m_observations.push_back(
        centre.addObserver(QStringLiteral("KPNotificationDocumentTagsChanged"),
                           [this](const XPNotification &) { m_searcher->metaDataHasChanged(); }));
    for (const char *setting : {"values.KPDoSpotlightSearches", "values.KPDoMetaDataSearches"})
        m_observations.push_back(UserDefaults::standard().addObserver(
            QLatin1String(setting), [this](const PropertyValue &) { showSearchMode(); }));
    m_observations.push_back(UserDefaults::standard().addObserver(
        QStringLiteral("values.KPRecentSearches"), [this](const PropertyValue &searches) {
            m_searchField->setRecentSearches(searches.strings());
        }));
}

// --- The window

void KPController::restoreSettings()
{
    const UserDefaults &defaults = UserDefaults::standard();
    KPWindowFrame::restore(*this, geometryKey, usualSize);
    m_searchField->setRecentSearches(defaults.value(QStringLiteral("KPRecentSearches")).strings());
    m_status->setZoom(m_library->currentSliderMagnification());
    m_status->setZoomShown(m_library->libraryMode() != KPLibraryController::LibraryMode_List);
    showSearchMode();
    setMinWindowSize();
}

void KPController::writeOutStateWhenQuiting()
{
    UserDefaults &defaults = UserDefaults::standard();
    KPWindowFrame::save(*this, geometryKey);
    m_panels->saveWidths();
    m_sides->writeOutState();
    m_library->writeOutStateWhenQuiting();
    m_crumbs->writeOutState();
    if (const auto error = defaults.synchronise())
        qCWarning(xpLog).noquote() << error->message;
}

void KPController::setMinWindowSize()
{
    const QSize smallest = m_panels->minimumWindowSize();
    if (smallest != minimumSize())
        setMinimumSize(smallest);
}

void KPController::quit()
{
    const auto end = [this](bool proceeds) {
        if (!proceeds)
            return;
        writeOutStateWhenQuiting();
        QCoreApplication::quit();
    };
    if (m_scans)
        m_scans->askToQuit(end); // pages that are not filed are not lost without a word
    else
        end(true);
}

bool KPController::mayQuit()
{
    if (!m_scans || !m_scans->hasPages())
        return true;
    quit();
    return false;
}

void KPController::closeEvent(QCloseEvent *event)
{
    writeOutStateWhenQuiting();
    if (m_hidesOnClose) {
        hide();
        event->ignore();
        return;
    }
    if (m_scans && m_scans->hasPages()) {
        event->ignore();
        quit();
        return;
    }
    QMainWindow::closeEvent(event);
}

void KPController::changeEvent(QEvent *event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && !isActiveWindow()) {
        m_library->loupeController().checkFlagsForLoupeCondition(Qt::NoModifier);
        writeOutStateWhenQuiting();
    }
}

// The loupe first: what the crumbs show depends on the same keys.
void KPController::modifiersChanged(Qt::KeyboardModifiers modifiers)
{
    m_library->loupeController().checkFlagsForLoupeCondition(modifiers);
    m_sides->modifiersChanged(modifiers);
}

// Modifier keys count wherever the focus is in the window.
bool KPController::eventFilter(QObject *watched, QEvent *event)
{
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
    if (isKey && watched == windowHandle()) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Alt || key == Qt::Key_Control || key == Qt::Key_Shift)
            modifiersChanged(QGuiApplication::queryKeyboardModifiers());
    }
    return QMainWindow::eventFilter(watched, event);
}

bool KPController::isSettled() const
{
    return !m_isWaiting && !m_typingTimer.isActive() && (!m_index || m_index->isSettled()) &&
           !m_looks.isBusy() && !m_worker->isBusy() && m_inspection->isSettled();
}

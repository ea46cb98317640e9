#include "KPController.h"

#include "KPDocIcons.h"
#include "KPDocsView.h"
#include "KPEditHistory.h"
#include "KPEditSummary.h"
#include "KPFileType.h"
#include "KPFilterBar.h"
#include "KPIndexMonitor.h"
#include "KPInspector.h"
#include "KPLibraryModel.h"
#include "KPQuickLook.h"
#include "KPSearcher.h"
#include "KPStatusLine.h"
#include "KPWindowActions.h"
#include "Karvex.h"
#include "KarvexPrefs.h"
#include "UserDefaults.h"
#include "XPFolders.h"
#include "XPLog.h"
#include "XPPath.h"
#include "XPPrompts.h"

#include <QCloseEvent>
#include <QDockWidget>
#include <QLineEdit>
#include <QSlider>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <cmath>

static const QString geometryKey = QStringLiteral("KPMainWindowGeometry");
static const QString layoutKey = QStringLiteral("KPMainWindowLayout");
static const QString orderKey = QStringLiteral("KPSortOrder");
static const QString zoomKey = QStringLiteral("KPThumbnailSize");

KPController::KPController(std::unique_ptr<KPSearcher> searcher, const QStringList &folders,
                           KPIndexMonitor *index)
    : m_searcher(std::move(searcher)), m_index(index), m_folders(folders),
      m_looks(KPQuickLook::instance()), m_model(std::make_unique<KPLibraryModel>(m_searcher.get())),
      m_worker(std::make_unique<KPEditWorker>()),
      m_history(std::make_unique<KPEditHistory>(m_worker.get())), m_filter(new KPFilterBar),
      m_view(new KPDocsView(m_model.get(), &m_looks)), m_inspector(new KPInspector),
      m_status(new KPStatusLine)
{
    m_actions = std::make_unique<KPWindowActions>(this, m_history.get());
    auto *centre = new QWidget;
    auto *column = new QVBoxLayout(centre);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_filter);
    column->addWidget(m_view, 1);
    setCentralWidget(centre);
    setStatusBar(m_status);
    buildToolBar();
    buildInspector();
    connectSearch();
    connectEditing();
    connectIndex();
    restoreSettings();
    m_view->setFocus();
    startSearch();
}

// The views go first: they refer to what the unique pointers hold.
KPController::~KPController()
{
    m_searcher->stop();
    delete takeCentralWidget();
    delete m_dock;
}

// Building.

void KPController::buildToolBar()
{
    auto *bar = new QToolBar(qtTrId("KPToolBar"));
    bar->setObjectName(QStringLiteral("toolbar"));
    bar->setMovable(false);
    bar->setIconSize({16, 16});
    bar->setContextMenuPolicy(Qt::PreventContextMenu);
    bar->setStyleSheet(QStringLiteral("QToolBar { border: 0; padding: 8px 10px; spacing: 8px; }"
                                      "QToolButton::menu-indicator { image: none; }"));

    m_folderButton = new QToolButton;
    m_folderButton->setIcon(KPDocIcons::symbol(QStringLiteral("folder")));
    m_folderButton->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    connect(m_folderButton, &QToolButton::clicked, this, &KPController::openFolder);

    auto *sort = new QToolButton;
    sort->setIcon(KPDocIcons::symbol(QStringLiteral("sort")));
    sort->setText(qtTrId("KPSortBy"));
    sort->setToolTip(qtTrId("KPSortBy"));
    sort->setMenu(m_actions->sortMenu());
    sort->setPopupMode(QToolButton::InstantPopup);

    m_zoom = new QSlider(Qt::Horizontal);
    m_zoom->setRange(0, 100);
    m_zoom->setPageStep(10);
    m_zoom->setFixedWidth(110);
    m_zoom->setAccessibleName(qtTrId("KPZoom"));
    m_zoom->setToolTip(qtTrId("KPZoom"));
    connect(m_zoom, &QSlider::valueChanged, this,
            [this](int value) { m_view->setZoom(value / 100.0); });

    bar->addWidget(m_folderButton);
    m_filter->searchField()->setMinimumWidth(160);
    bar->addWidget(m_filter->searchField());
    bar->addWidget(sort);
    bar->addWidget(m_zoom);
    auto *inspector = new QToolButton;
    inspector->setDefaultAction(m_actions->inspectorAction());
    bar->addWidget(inspector);
    addToolBar(bar);
    showFolders();
}

void KPController::buildInspector()
{
    m_dock = new QDockWidget(qtTrId("KPInspector"), this);
    m_dock->setObjectName(QStringLiteral("inspector"));
    m_dock->setAllowedAreas(Qt::LeftDockWidgetArea | Qt::RightDockWidgetArea);
    m_dock->setFeatures(QDockWidget::DockWidgetClosable);
    m_dock->setTitleBarWidget(new QWidget); // the toolbar's button and the menu hide it
    m_dock->setWidget(m_inspector);
    addDockWidget(Qt::RightDockWidgetArea, m_dock);
    resizeDocks({m_dock}, {260}, Qt::Horizontal);
    connect(m_dock, &QDockWidget::visibilityChanged, this,
            [this] { m_actions->inspectorAction()->setChecked(!m_dock->isHidden()); });
}

void KPController::connectSearch()
{
    connect(m_filter, &KPFilterBar::stateChanged, this, &KPController::startSearch);
    connect(m_filter, &KPFilterBar::left, m_view, qOverload<>(&QWidget::setFocus));
    m_filter->setSuggestions([this] { return suggestedTags(); });
    connect(m_searcher.get(), &KPSearcher::delivered, this,
            [this](const KPResultsDelivery::Ptr &delivery) {
                if (!delivery || delivery->isDone)
                    searchFinished(delivery ? delivery->problems : QStringList());
            });
    connect(m_status, &KPStatusLine::stopSearchRequested, this, &KPController::stopSearch);
    for (const auto signal : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved})
        connect(m_model.get(), signal, this, &KPController::showCounts);
    connect(m_model.get(), &QAbstractItemModel::modelReset, this, &KPController::showCounts);

    m_selectionTimer.setSingleShot(true);
    m_selectionTimer.setInterval(0);
    const auto later = [this] { m_selectionTimer.start(); };
    connect(&m_selectionTimer, &QTimer::timeout, this, &KPController::showSelection);
    connect(m_view, &KPDocsView::selectionMoved, this, later);
    connect(m_model.get(), &QAbstractItemModel::dataChanged, this, later);
    connect(&m_looks, &KPQuickLook::looksReady, this, [this, later](const QList<KPDoc *> &docs) {
        const auto isShown = [this](const KPDoc *doc) { return doc->filePath() == m_shownPath; };
        if (std::any_of(docs.begin(), docs.end(), isShown))
            later();
    });
}

void KPController::connectEditing()
{
    connect(m_view, &KPDocsView::openRequested, this, &KPController::openSelected);
    connect(m_view, &KPDocsView::ratingTyped, this, &KPController::rateSelected);
    connect(m_view, &KPDocsView::zoomRequested, this,
            [this](int steps) { steps > 0 ? zoomIn() : zoomOut(); });
    m_view->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_view, &QWidget::customContextMenuRequested, this, [this](const QPoint &at) {
        if (m_view->selectedCount() > 0)
            m_actions->popUp(m_view->viewport()->mapToGlobal(at));
    });
    m_inspector->setSuggestions([this] { return suggestedTags(); });
    connect(m_inspector, &KPInspector::left, m_view, qOverload<>(&QWidget::setFocus));
    connect(m_inspector, &KPInspector::editRequested, m_history.get(), &KPEditHistory::edit);
    connect(m_worker.get(), &KPEditWorker::progressed, m_status, &KPStatusLine::showEditing);
    connect(m_worker.get(), &KPEditWorker::reported, this, &KPController::report);
    connect(m_status, &KPStatusLine::stopEditRequested, m_worker.get(), &KPEditWorker::stop);
}

void KPController::connectIndex()
{
    if (m_index)
        connect(m_index, &KPIndexMonitor::changed, this, &KPController::showIndex);
}

void KPController::restoreSettings()
{
    const UserDefaults &defaults = UserDefaults::standard();
    if (!restoreGeometry(defaults.value(geometryKey).data()))
        resize(1120, 720);
    restoreState(defaults.value(layoutKey).data());
    m_zoom->setValue(static_cast<int>(std::lround(defaults.doubleValue(zoomKey) * 100)));
    m_view->setZoom(m_zoom->value() / 100.0);
    setOrder(KPSortKey::fromText(defaults.stringValue(orderKey)).value_or(KPSortKey()));
}

void KPController::saveSettings() const
{
    UserDefaults &defaults = UserDefaults::standard();
    defaults.setValue(geometryKey, saveGeometry());
    defaults.setValue(layoutKey, saveState());
    defaults.setValue(zoomKey, PropertyValue::real(m_zoom->value() / 100.0));
    if (const auto error = defaults.synchronise())
        qCWarning(xpLog).noquote() << error->message;
}

void KPController::closeEvent(QCloseEvent *event)
{
    saveSettings();
    QMainWindow::closeEvent(event);
}

// Searching.

void KPController::startSearch()
{
    const QStringList folders = m_folders.isEmpty() ? QStringList{XPFolders::home()} : m_folders;
    const auto state = m_filter->state()->searchStateWithNewContstraintFolders(folders);
    m_searching = true;
    m_status->showSearching(true);
    m_problems.clear();
    showProblems();
    showEmptyText();
    m_searcher->forceNewSearchNextTime();
    m_searcher->setSearchState(KPSearcher::allDocumentsOf(state), false);
}

void KPController::stopSearch()
{
    m_searcher->stop();
    searchFinished({});
    m_status->showMessage(qtTrId("KPSearchStopped"), 5000);
}

void KPController::searchFinished(const QStringList &problems)
{
    m_searching = false;
    m_status->showSearching(false);
    m_problems = problems;
    showProblems();
    showEmptyText();
    showCounts();
}

void KPController::showProblems()
{
    QStringList problems = m_problems;
    if (m_index)
        problems += m_index->problems();
    if (!m_backupProblem.isEmpty())
        problems.append(m_backupProblem);
    m_status->showProblems(problems);
}

void KPController::showActivity()
{
    const QString activity = m_index ? m_index->activity() : QString();
    m_status->showIndex(activity.isEmpty() ? m_backupActivity : activity);
}

void KPController::showBackup(const QString &activity, const QString &problem)
{
    m_backupActivity = activity;
    m_backupProblem = problem;
    showActivity();
    showProblems();
}

void KPController::showIndex()
{
    showActivity();
    showProblems();
    showEmptyText();
}

QStringList KPController::foldersNotIndexed() const
{
    QStringList missing;
    for (const QString &folder : m_folders) {
        if (m_index && !m_index->isIndexed(folder))
            missing.append(folder);
    }
    return missing;
}

static QString folderName(const QString &path)
{
    return XPPath::printable(XPPath::fileName(path));
}

void KPController::showEmptyText()
{
    const QStringList missing = foldersNotIndexed();
    m_actions->indexAction()->setEnabled(!missing.isEmpty());
    if (!missing.isEmpty())
        m_view->setEmptyText(qtTrId("KPNotIndexed").arg(folderName(missing.first())),
                             qtTrId("KPNotIndexedHint"), m_actions->indexAction());
    else if (m_searching || (m_index && !m_index->isSettled()))
        m_view->setEmptyText(qtTrId("KPLooking"), {});
    else if (m_filter->isEmpty())
        m_view->setEmptyText(qtTrId("KPNoDocuments"), qtTrId("KPNoDocumentsHint"));
    else
        m_view->setEmptyText(qtTrId("KPNoMatch"), qtTrId("KPNoMatchHint"));
}

void KPController::showFolders()
{
    const QString name = m_folders.isEmpty() ? qtTrId("KPHome")
                         : m_folders.size() == 1
                             ? folderName(m_folders.first())
                             : qtTrId("KPFolderCount", static_cast<int>(m_folders.size()));
    const QString shown = name.isEmpty() ? m_folders.first() : name; // the root has no name
    m_folderButton->setText(fontMetrics().elidedText(shown, Qt::ElideMiddle, 180));
    m_folderButton->setAccessibleName(qtTrId("KPFolderShown").arg(shown));
    m_folderButton->setToolTip(qtTrId("KPOpenFolderTip"));
    setWindowTitle(shown);
}

QStringList KPController::suggestedTags() const
{
    return Karvex::removeDuplicateTags(KarvexPrefs::recentTags() + m_model->knownTags());
}

// Selection.

void KPController::showCounts()
{
    m_status->showCounts(m_model->rowCount(), m_view->selectedCount());
}

void KPController::showSelection()
{
    KPDoc::Docs documents;
    for (const QString &path : m_view->selectedPaths()) {
        if (const QModelIndex index = m_model->indexForPath(path); index.isValid())
            documents.append(m_model->document(index.row()));
    }
    KPInspector::Appearance appearance;
    std::vector<KPQuickLook::Wanted> wanted;
    m_shownPath.clear();
    if (!documents.isEmpty()) {
        KPDoc &first = *documents.first();
        m_shownPath = first.filePath();
        const double side = KPInspector::pictureSide * m_inspector->devicePixelRatioF();
        wanted.push_back({&first, static_cast<int>(std::ceil(side))});
        const auto look = m_looks.look(first);
        appearance = {QPixmap::fromImage(look.picture),
                      look.uti.isEmpty()
                          ? KPFileType::preferredUTIForExtension(XPPath::extension(first.fsName()))
                          : look.uti};
    }
    m_looks.want(m_inspector, std::move(wanted));
    m_inspector->show(documents, appearance);
    m_actions->setHasSelection(!documents.isEmpty());
    m_actions->setRating(KPSelectionFacts(documents).rating);
    m_status->showCounts(m_model->rowCount(), documents.size());
}

void KPController::selectByName(const QString &beginning)
{
    const auto *names = m_model.get();
    const QModelIndexList found =
        names->match(names->index(0), Qt::DisplayRole, beginning, -1, Qt::MatchStartsWith);
    for (const QModelIndex &index : found)
        m_view->selectionModel()->select(index, QItemSelectionModel::Select);
    if (!found.isEmpty())
        m_view->selectionModel()->setCurrentIndex(found.first(), QItemSelectionModel::NoUpdate);
}

// Editing.

void KPController::report(const KPEditReport &report)
{
    if (!m_worker->isBusy())
        m_status->endEditing();
    if (!report.failures.isEmpty())
        XPPrompts::current().alert(KPEditSummary::title(report), KPEditSummary::details(report));
    else if (report.stopped)
        m_status->showMessage(qtTrId("KPEditStopped", static_cast<int>(report.changed)), 8000);
    m_selectionTimer.start(); // what failed is shown as it was
}

bool KPController::isSettled() const
{
    return !m_searching && (!m_index || m_index->isSettled()) && !m_looks.isBusy() &&
           !m_worker->isBusy() && !m_selectionTimer.isActive();
}

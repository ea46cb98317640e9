#include "KPLocationsPanel.h"

#include "KPCrumbController.h"
#include "KPDocCache.h"
#include "KPDocIcons.h"
#include "KPLocationsModel.h"
#include "KPMenuButton.h"
#include "KPNavigationLook.h"
#include "KPSearcher.h"
#include "KPSourceListDelegate.h"

#include <QBoxLayout>
#include <QKeyEvent>
#include <QMenu>
#include <QToolButton>
#include <QTreeView>

// A search that is under way delivers often: the tree follows a few times a second.
static constexpr std::chrono::milliseconds untilUpdate{200};

KPLocationsPanel::KPLocationsPanel(KPCrumbController &controller, QWidget *parent)
    : QWidget(parent), m_controller(controller), m_model(new KPLocationsModel(controller, this)),
      m_tree(new QTreeView(this)), m_toolBar(new QWidget(this)), m_recent(new QToolButton(this))
{
    m_recent->setIcon(KPDocIcons::symbol(QStringLiteral("clock")));
    m_recent->setToolTip(qtTrId("KPLocationsRecent"));
    m_recent->setAccessibleName(qtTrId("KPLocationsRecent"));
    KPMenuButton::openByClick(*m_recent);
    m_recent->setAutoRaise(true);
    m_recent->setMenu(new QMenu(m_recent));
    connect(m_recent->menu(), &QMenu::aboutToShow, this, &KPLocationsPanel::fillRecent);
    m_tree->setModel(m_model);
    m_tree->setItemDelegate(new KPSourceListDelegate(m_tree));
    KPNavigationLook::prepare(m_tree);
    m_tree->setAccessibleName(qtTrId("KPLocationsFolders"));
    m_tree->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_tree->setDragDropMode(QAbstractItemView::DragDrop);
    m_tree->setContextMenuPolicy(Qt::CustomContextMenu);
    m_tree->installEventFilter(this);
    buildToolBar();
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 4, 0, 4);
    column->setSpacing(4);
    auto *top = new QHBoxLayout;
    top->setContentsMargins(8, 0, 8, 0);
    top->addWidget(m_recent);
    top->addStretch();
    top->addWidget(m_toolBar);
    column->addLayout(top);
    column->addWidget(m_tree, 1);

    connect(m_tree->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &KPLocationsPanel::selectionChanged);
    connect(m_tree, &QTreeView::doubleClicked, this, &KPLocationsPanel::go);
    connect(m_tree, &QWidget::customContextMenuRequested, this, &KPLocationsPanel::showMenu);
    m_soon.setSingleShot(true);
    m_soon.setInterval(untilUpdate);
    connect(&m_soon, &QTimer::timeout, this, &KPLocationsPanel::update);
    const auto soon = [this] {
        if (!m_soon.isActive())
            m_soon.start();
    };
    connect(&controller, &KPCrumbController::itemsChanged, this, soon);
    for (const QString &notice : {KPSearcher::folderNumbersChanged, KPSearcher::lookMayHaveChanged})
        m_observations.push_back(XPNotificationCenter::instance().addObserver(
            notice, [soon](const XPNotification &) { soon(); }));
    update();
}

KPLocationsPanel::~KPLocationsPanel() = default;

// --- Its buttons

QToolButton *KPLocationsPanel::addButton(const QString &symbol, const QString &text,
                                         bool isCheckable)
{
    auto *button = new QToolButton(m_toolBar);
    button->setIcon(KPDocIcons::symbol(symbol));
    button->setToolTip(text);
    button->setAccessibleName(text);
    button->setAutoRaise(true);
    button->setCheckable(isCheckable);
    m_toolBar->layout()->addWidget(button);
    return button;
}

void KPLocationsPanel::buildToolBar()
{
    auto *row = new QHBoxLayout(m_toolBar);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(2);
    m_up = addButton(QStringLiteral("up"), qtTrId("KPLocationsUp"), false);
    m_listing = addButton(QStringLiteral("folder"), qtTrId("KPCrumbListing"), true);
    m_packages = addButton(QStringLiteral("managed"), qtTrId("KPCrumbPackages"), true);
    m_reveal = addButton(QStringLiteral("search"), qtTrId("KPLocationsReveal"), false);
    connect(m_up, &QToolButton::clicked, &m_controller, &KPCrumbController::parentLocationAction);
    connect(m_listing, &QToolButton::clicked, this, &KPLocationsPanel::setListing);
    connect(m_packages, &QToolButton::clicked, this, [this](bool on) {
        m_controller.applyState(
            m_controller.searchState()->searchStateWithNewShowBundleContents(on));
    });
    connect(m_reveal, &QToolButton::clicked, this, [this] {
        QString path = m_model->pathOf(m_tree->currentIndex());
        if (path.isEmpty() && m_controller.currentLocation())
            path = m_controller.currentLocation()->path;
        xpGuiThread.assertHere();
        if (KPDoc *doc = KPDocCache::docAtPath(path))
            doc->revealInFinder();
    });
}

// The folder as it lies on the disk, and nothing below it; else all that is found below it.
void KPLocationsPanel::setListing(bool on)
{
    KPSearchState::Ptr state = m_controller.searchState();
    state = on ? state->searchStateWithNewFinderListing(true, false)
               : state->searchStateWithNewFinderListing(false, false)
                     ->searchStateWithDeepAndBundleRemoved()
                     ->searchStateWithNewPostContstraintFolders({});
    m_controller.applyState(state);
}

void KPLocationsPanel::fillRecent()
{
    QMenu *menu = m_recent->menu();
    menu->clear();
    for (const auto &location : m_controller.recentLocations()) {
        const QString text = location->displayName().replace(u'&', QStringLiteral("&&"));
        QAction *action = menu->addAction(KPNavigationLook::icon(*location), text);
        action->setToolTip(location->tooltip());
        connect(action, &QAction::triggered, this,
                [this, location] { m_controller.showLocation(location); });
    }
    menu->addSeparator();
    connect(menu->addAction(qtTrId("KPCrumbClearRecent")), &QAction::triggered, &m_controller,
            &KPCrumbController::clearRecentLocations);
}

// --- What is shown

void KPLocationsPanel::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    update();
}

void KPLocationsPanel::update()
{
    const KPSearchState::Ptr state = m_controller.searchState();
    m_up->setEnabled(m_controller.canGoUp());
    m_listing->setChecked(state->isFilesAndFolders());
    m_packages->setEnabled(state->isFinderListing());
    m_packages->setChecked(state->isShowBundleContents());
    m_recent->setEnabled(!m_controller.recentLocations().isEmpty());
    if (!isVisible())
        return; // a tree that nobody sees costs nothing
    m_isUpdating = true;
    const bool wasEmpty = m_model->rowCount() == 0;
    m_model->refresh();
    if (wasEmpty && m_model->rowCount() == 1)
        m_tree->expand(m_model->index(0, 0));
    // Narrowing may have been taken away elsewhere.
    if (state->isFinderListing() && state->postConstraintFolders().isEmpty())
        m_tree->clearSelection();
    m_isUpdating = false;
}

// --- What is done

void KPLocationsPanel::selectionChanged()
{
    const KPSearchState::Ptr state = m_controller.searchState();
    if (m_isUpdating || !state->isFinderListing())
        return;
    QStringList folders;
    for (const QModelIndex &index : m_tree->selectionModel()->selectedRows())
        folders.append(m_model->pathOf(index));
    if (state->arePostConstraintsAllowed(folders) && folders != state->postConstraintFolders())
        m_controller.applyState(state->searchStateWithNewPostContstraintFolders(folders));
}

void KPLocationsPanel::go(const QModelIndex &index)
{
    if (index.isValid())
        m_controller.showLocation(KPLocationItem::withFolder(m_model->pathOf(index)));
}

bool KPLocationsPanel::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<const QKeyEvent *>(event)->key();
        if ((key == Qt::Key_Return || key == Qt::Key_Enter) && m_tree->currentIndex().isValid()) {
            go(m_tree->currentIndex());
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void KPLocationsPanel::showMenu(const QPoint &position)
{
    const QModelIndex index = m_tree->indexAt(position);
    if (!index.isValid())
        return;
    const QString path = m_model->pathOf(index);
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const KPSearchState::Ptr state = m_controller.searchState();
    connect(menu->addAction(qtTrId("KPLocationsGo")), &QAction::triggered, this,
            [this, path] { m_controller.showLocation(KPLocationItem::withFolder(path)); });
    connect(menu->addAction(qtTrId("KPLocationsLeaveOut")), &QAction::triggered, this,
            [this, path, state] {
                m_controller.applyState(
                    state->searchStateWithNewExcludeFolders(state->excludeFolders() << path));
            });
    connect(menu->addAction(qtTrId("KPLocationsReveal")), &QAction::triggered, this, [path] {
        xpGuiThread.assertHere();
        if (KPDoc *doc = KPDocCache::docAtPath(path))
            doc->revealInFinder();
    });
    menu->popup(m_tree->viewport()->mapToGlobal(position));
}

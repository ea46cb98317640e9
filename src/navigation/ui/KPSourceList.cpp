#include "KPSourceList.h"

#include "KPBookmarkItems.h"
#include "KPCrumbController.h"
#include "KPCrumbs.h"
#include "KPNavigationLook.h"
#include "KPSearcher.h"
#include "KPSourceListDelegate.h"
#include "UserDefaults.h"

#include <QDragMoveEvent>
#include <QScrollBar>
#include <algorithm>

static const QString statesKey = QStringLiteral("KPTwistDownStates");
static const QString keepTrackKey = QStringLiteral("KPTwistDownStatesKeepTrack");
static const QString radioButtonsKey = QStringLiteral("KPTreatSectionsAsRadioButtons");

KPSourceList::KPSourceList(KPCrumbController &controller, KPBookmarks &bookmarks,
                           KPRowCounts *counts, QWidget *parent)
    : QTreeView(parent), m_controller(controller),
      m_model(new KPSourceListModel(controller, bookmarks, counts, this))
{
    setModel(m_model);
    setItemDelegate(new KPSourceListDelegate(this));
    KPNavigationLook::prepare(this);
    setAccessibleName(qtTrId("KPSourceList"));
    setRootIsDecorated(false);
    setEditTriggers(QAbstractItemView::EditKeyPressed);
    setDragDropMode(QAbstractItemView::DragDrop);
    setDropIndicatorShown(true);
    applyLook();

    if (UserDefaults::standard().boolValue(keepTrackKey)) {
        const QStringList stored = UserDefaults::standard().value(statesKey).strings();
        m_toggled = QSet<QString>(stored.begin(), stored.end());
    }
    restoreHeadings({});
    connect(this, &QTreeView::expanded, this,
            [this](const QModelIndex &index) { disclosureChanged(index, true); });
    connect(this, &QTreeView::collapsed, this,
            [this](const QModelIndex &index) { disclosureChanged(index, false); });
    m_soon.setSingleShot(true);
    m_soon.setInterval(0);
    connect(&m_soon, &QTimer::timeout, this, [this] {
        selectShown();
        countVisible();
    });
    connect(m_model, &QAbstractItemModel::rowsInserted, this, [this](const QModelIndex &above) {
        restoreHeadings(above);
        m_soon.start();
    });
    connect(m_model, &KPSourceListModel::failed, this, &KPSourceList::failed);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, &m_soon, qOverload<>(&QTimer::start));
    connect(&controller, &KPCrumbController::itemsChanged, &m_soon, qOverload<>(&QTimer::start));
    m_observations.push_back(XPNotificationCenter::instance().addObserver(
        KPSearcher::lookMayHaveChanged, [this](const XPNotification &) { m_soon.start(); }));
    m_soon.start();
}

KPSourceList::~KPSourceList() = default;

void KPSourceList::applyLook()
{
    QPalette look = palette();
    look.setColor(QPalette::Base, KPNavigationLook::mixed(look.color(QPalette::Window),
                                                          look.color(QPalette::Base), 0.4));
    viewport()->setPalette(look);
}

void KPSourceList::changeEvent(QEvent *event)
{
    QTreeView::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyLook();
}

// --- What is shown

void KPSourceList::showSearchOf(const QModelIndex &index)
{
    const KPBaseItem::Ptr item = m_model->itemAt(index);
    if (item && item->isSelectable())
        m_controller.showSource(item);
}

// The row of the source, as long as the search is still what it asks for.
void KPSourceList::selectShown()
{
    const KPSearchState::Ptr state = m_controller.searchState();
    const bool isHeld = KPCrumbs(state, m_controller.sourceItem()).holdsSource();
    QModelIndex row;
    if (isHeld)
        row = m_model->indexOf(*m_controller.sourceItem(), state);
    // The rows of the tree that are closed stay so.
    const QModelIndex above = row.parent();
    if (row.isValid() && above.isValid() && !isExpanded(above))
        row = QModelIndex();
    const QSignalBlocker quiet(selectionModel());
    if (row.isValid())
        setCurrentIndex(row);
    else
        selectionModel()->clearSelection();
    viewport()->update();
}

void KPSourceList::mouseReleaseEvent(QMouseEvent *event)
{
    const QModelIndex index = indexAt(event->position().toPoint());
    const bool isClick = event->button() == Qt::LeftButton && state() != DraggingState;
    QTreeView::mouseReleaseEvent(event);
    if (!isClick || !index.isValid())
        return;
    const QRect row = visualRect(index);
    const bool isOnMark = index.parent().isValid() && m_model->rowCount(index) > 0 &&
                          event->position().x() < row.left() + 14;
    const KPBaseItem::Ptr item = m_model->itemAt(index);
    if (isOnMark || !item->isSelectable())
        setExpanded(index, !isExpanded(index));
    else
        showSearchOf(index);
}

void KPSourceList::keyPressEvent(QKeyEvent *event)
{
    if (state() != EditingState &&
        (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)) {
        showSearchOf(currentIndex());
        return;
    }
    QTreeView::keyPressEvent(event);
}

void KPSourceList::contextMenuEvent(QContextMenuEvent *event)
{
    const auto item =
        std::dynamic_pointer_cast<KPBookmarkItem>(m_model->itemAt(indexAt(event->pos())));
    if (item)
        Q_EMIT bookmarkMenuRequested({item->identifier()}, event->globalPos());
}

// --- Headings

bool KPSourceList::isOpenByDefault(const QModelIndex &index) const
{
    constexpr int dates = 1;
    return !index.parent().isValid() && index.row() != dates;
}

// NOLINTNEXTLINE(misc-no-recursion): as deep as the tree
void KPSourceList::restoreHeadings(const QModelIndex &above)
{
    const bool wasRestoring = std::exchange(m_isRestoring, true);
    for (int row = 0; row < m_model->rowCount(above); ++row) {
        const QModelIndex index = m_model->index(row, 0, above);
        const bool isToggled =
            m_toggled.contains(index.data(KPSourceListModel::Identifier).toString());
        setExpanded(index, isOpenByDefault(index) != isToggled);
        restoreHeadings(index);
    }
    // A heading that was empty had nothing to open.
    if (above.isValid() && !isExpanded(above)) {
        const bool isToggled =
            m_toggled.contains(above.data(KPSourceListModel::Identifier).toString());
        setExpanded(above, isOpenByDefault(above) != isToggled);
    }
    m_isRestoring = wasRestoring;
}

void KPSourceList::disclosureChanged(const QModelIndex &index, bool isOpen)
{
    if (m_isRestoring)
        return;
    const QString identifier = index.data(KPSourceListModel::Identifier).toString();
    if (isOpen == isOpenByDefault(index))
        m_toggled.remove(identifier);
    else
        m_toggled.insert(identifier);
    const bool isAlone = UserDefaults::standard().boolValue(radioButtonsKey);
    if (isOpen && isAlone && !index.parent().isValid()) {
        for (int row = 0; row < m_model->rowCount(); ++row)
            if (row != index.row())
                collapse(m_model->index(row, 0));
    }
    writeOutState();
    m_soon.start();
}

void KPSourceList::writeOutState() const
{
    if (!UserDefaults::standard().boolValue(keepTrackKey))
        return;
    QStringList toggled(m_toggled.begin(), m_toggled.end());
    toggled.sort();
    UserDefaults::standard().setValue(statesKey, toggled);
}

// --- Counts

void KPSourceList::resizeEvent(QResizeEvent *event)
{
    QTreeView::resizeEvent(event);
    m_soon.start();
}

void KPSourceList::countVisible()
{
    if (!isVisible())
        return;
    QModelIndexList rows;
    for (QModelIndex index = indexAt(QPoint(1, 1));
         index.isValid() && visualRect(index).top() < viewport()->height();
         index = indexBelow(index))
        rows.append(index);
    m_model->countRows(rows);
}

// --- Dragging

// The view proposes moving; what the row does of what the source allows is said instead.
void KPSourceList::dragMoveEvent(QDragMoveEvent *event)
{
    QTreeView::dragMoveEvent(event);
    const KPBaseItem::Ptr item = m_model->itemAt(indexAt(event->position().toPoint()));
    if (!item || !event->isAccepted())
        return;
    const bool asksCopy = event->modifiers().testFlag(Qt::ControlModifier);
    const Qt::DropActions possible =
        asksCopy ? Qt::DropActions(Qt::CopyAction) : event->possibleActions();
    const Qt::DropAction action =
        item->validateDropOfType(possible, -1, nullptr, *event->mimeData());
    if (action != Qt::IgnoreAction)
        event->setDropAction(action);
}

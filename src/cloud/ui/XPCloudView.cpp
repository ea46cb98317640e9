#include "XPCloudView.h"

#include "XPAccessibleItems.h"
#include "XPCloudViewAccessible.h"
#include "XPFileUrls.h"
#include "XPPath.h"

#include <QApplication>
#include <QDrag>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QToolTip>
#include <cmath>

XPCloudViewDelegate::~XPCloudViewDelegate() = default;

XPCloudView::XPCloudView(XPCloudViewDelegate *delegate, QWidget *parent)
    : QWidget(parent), m_delegate(delegate)
{
    setMouseTracking(true);
    setAcceptDrops(true);
    setFocusPolicy(Qt::StrongFocus);
    XPCloudViewAccessible::install();
}

void XPCloudView::setBestMatch(const XPBestMatch &match)
{
    m_bestMatch = match;
    update();
}

void XPCloudView::click(qsizetype item, Qt::KeyboardModifiers modifiers)
{
    const XPCloudItem clicked = drawnItems()[item]; // a click may bring other items
    m_delegate->cloudViewItemClicked(clicked, modifiers);
}

void XPCloudView::itemsChanged()
{
    m_clickedItemAtMouseDown.reset();
    m_dropTarget.reset();
    m_hovered.reset();
    const qsizetype same = itemWithKey(m_focusedKey);
    m_focused = same < 0 && !drawnItems().isEmpty() ? 0 : same;
    updateGeometry();
    update();
    XPCloudViewAccessible::tellItems(*this);
}

qsizetype XPCloudView::itemWithKey(const QString &keyName) const
{
    for (qsizetype item = 0; item < drawnItems().size(); ++item) {
        if (drawnItems()[item].keyName == keyName)
            return item;
    }
    return -1;
}

// The pointer.

void XPCloudView::hover(std::optional<qsizetype> item)
{
    if (m_hovered == item)
        return;
    m_hovered = item;
    setCursor(item ? Qt::PointingHandCursor : Qt::ArrowCursor);
    m_delegate->cloudViewShowStatus(item ? m_delegate->cloudViewTipForItem(drawnItems()[*item])
                                         : QString());
    update();
}

void XPCloudView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    m_pressedAt = event->pos();
    m_clickedItemAtMouseDown = pointToItem(event->position());
}

void XPCloudView::mouseMoveEvent(QMouseEvent *event)
{
    if (m_clickedItemAtMouseDown && event->buttons().testFlag(Qt::LeftButton) &&
        (event->pos() - m_pressedAt).manhattanLength() >= QApplication::startDragDistance())
        startDrag(*std::exchange(m_clickedItemAtMouseDown, {}));
    else
        hover(pointToItem(event->position()));
}

void XPCloudView::mouseReleaseEvent(QMouseEvent *event)
{
    const auto pressed = std::exchange(m_clickedItemAtMouseDown, {});
    if (event->button() == Qt::LeftButton && pressed && pointToItem(event->position()) == pressed)
        click(*pressed, event->modifiers());
}

void XPCloudView::leaveEvent(QEvent *event)
{
    hover({});
    QWidget::leaveEvent(event);
}

void XPCloudView::startDrag(qsizetype item)
{
    QMimeData *dragged = m_delegate->cloudViewMimeDataForItem(drawnItems()[item]);
    if (!dragged)
        return;
    auto *drag = new QDrag(this);
    drag->setMimeData(dragged);
    drag->setPixmap(grab(pointToItemRect(item).adjusted(-4, -1, 4, 1).toAlignedRect()));
    drag->exec(Qt::CopyAction);
}

void XPCloudView::contextMenuEvent(QContextMenuEvent *event)
{
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    const auto item = byKey ? (m_focused < 0 ? std::nullopt : std::optional(m_focused))
                            : pointToItem(event->pos());
    if (!item)
        return;
    QMenu *menu = m_delegate->cloudViewMenuForItem(drawnItems()[*item]);
    if (!menu)
        return;
    menu->popup(byKey ? mapToGlobal(pointToItemRect(*item).bottomLeft().toPoint())
                      : event->globalPos());
}

bool XPCloudView::event(QEvent *event)
{
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    auto *help = static_cast<QHelpEvent *>(event);
    if (const auto item = pointToItem(help->pos()))
        QToolTip::showText(help->globalPos(),
                           m_delegate->cloudViewTipForItem(drawnItems()[*item]).toHtmlEscaped(),
                           this, pointToItemRect(*item).toAlignedRect());
    else
        QToolTip::hideText();
    return true;
}

// The keyboard.

QString XPCloudView::describe(qsizetype item) const
{
    return m_delegate->cloudViewTipForItem(drawnItems()[item]);
}

void XPCloudView::focusItem(qsizetype item)
{
    if (item < 0 || item >= drawnItems().size())
        return;
    m_focused = item;
    m_focusedKey = drawnItems()[item].keyName;
    m_delegate->cloudViewShowStatus(describe(item));
    XPAccessible::tellFocused(*this, static_cast<int>(item));
    update();
}

// Up and down go to the nearest item of the line above or below.
qsizetype XPCloudView::itemBeside(int key) const
{
    if (key == Qt::Key_Left || key == Qt::Key_Right)
        return m_focused + (key == Qt::Key_Right ? 1 : -1);
    const QPointF from = pointToItemRect(m_focused).center();
    qsizetype best = -1;
    double leastY = 1e9;
    double leastX = 1e9;
    for (qsizetype item = 0; item < drawnItems().size(); ++item) {
        const QRectF rect = pointToItemRect(item);
        const double dy = (rect.center().y() - from.y()) * (key == Qt::Key_Down ? 1 : -1);
        const double dx = std::abs(rect.center().x() - from.x());
        constexpr double sameLine = 8; // words of one line differ in height
        if (dy < sameLine || dy > leastY + sameLine || (dy > leastY - sameLine && dx >= leastX))
            continue;
        best = item;
        leastY = dy;
        leastX = dx;
    }
    return best;
}

void XPCloudView::keyPressEvent(QKeyEvent *event)
{
    if (m_focused < 0 || m_focused >= drawnItems().size()) {
        QWidget::keyPressEvent(event);
        return;
    }
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
        focusItem(itemBeside(event->key()));
        return;
    case Qt::Key_Home:
        focusItem(0);
        return;
    case Qt::Key_End:
        focusItem(drawnItems().size() - 1);
        return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        click(m_focused, event->modifiers());
        return;
    default:
        QWidget::keyPressEvent(event);
    }
}

void XPCloudView::focusInEvent(QFocusEvent *event)
{
    focusItem(m_focused);
    QWidget::focusInEvent(event);
}

void XPCloudView::focusOutEvent(QFocusEvent *event)
{
    m_delegate->cloudViewShowStatus({});
    QWidget::focusOutEvent(event);
}

// Documents dragged here.

void XPCloudView::dragEnterEvent(QDragEnterEvent *event)
{
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
}

void XPCloudView::dragMoveEvent(QDragMoveEvent *event)
{
    m_dropTarget = pointToItem(event->position());
    if (m_dropTarget && !m_delegate->cloudViewAcceptsDrop(drawnItems()[*m_dropTarget]))
        m_dropTarget.reset();
    update();
    if (m_dropTarget) {
        event->setDropAction(Qt::CopyAction); // the files stay where they are
        event->accept();
    } else {
        event->ignore();
    }
}

void XPCloudView::dragLeaveEvent(QDragLeaveEvent *)
{
    m_dropTarget.reset();
    update();
}

void XPCloudView::dropEvent(QDropEvent *event)
{
    m_dropTarget.reset();
    update();
    const auto item = pointToItem(event->position());
    const QStringList paths = XPFileUrls::paths(event->mimeData());
    if (!item || paths.isEmpty() || !m_delegate->cloudViewAcceptsDrop(drawnItems()[*item]))
        return;
    event->setDropAction(Qt::CopyAction);
    event->accept();
    const XPCloudItem target = drawnItems()[*item];
    m_delegate->cloudViewPerformDragOperation(target, paths);
}

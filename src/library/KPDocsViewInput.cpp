// KPDocsView: the pointer and the keyboard.
#include "KPArrangedDocs.h"
#include "KPDocPasteboard.h"
#include "KPDocsKeys.h"
#include "KPDocsView.h"
#include "KPGroupStates.h"
#include "KPNameField.h"
#include "KPTagDrop.h"
#include "KPTagMime.h"
#include "XPFileUrls.h"
#include "XPPasteboardSupport.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QDrag>
#include <QHelpEvent>
#include <QMimeData>
#include <QPainter>
#include <QScrollBar>
#include <QToolTip>

void KPDocsView::keyPressEvent(QKeyEvent *event)
{
    if (!m_keys.press(*event, numColumns()))
        QAbstractScrollArea::keyPressEvent(event);
}

// Groups.

int KPDocsView::headerAt(const QPoint &point) const
{
    if (!m_geometry.isGrouped() || m_docs.count() == 0)
        return -1;
    // The one that stays in sight lies above documents.
    if (point.y() >= 0 && point.y() < KPDocsGeometry::headerHeight) {
        const int top = m_geometry.groupAt(offset());
        const KPDocsGeometry::Group &group = m_geometry.groups()[static_cast<size_t>(top)];
        if (toContents(point).y() < group.top + group.height)
            return top;
    }
    const KPDocsGeometry::Hit hit = m_geometry.hit(toContents(point));
    return hit.isOnHeader ? hit.group : -1;
}

void KPDocsView::flipGroup(int number, bool all)
{
    const KPResultGroups *groups = m_docs.groups();
    if (!groups || static_cast<size_t>(number) >= groups->runs.size())
        return;
    const KPResultGroup &group = *groups->runs[static_cast<size_t>(number)].group;
    all ? KPGroupStates::flipAll(groups->key, group) : KPGroupStates::flip(groups->key, group);
    const double before = m_geometry.headerRect(number).top() - offset();
    recalculateFrameBasedOnThumbnailSize({});
    // The header stays under the pointer.
    const double top = m_geometry.headerRect(number).top() - std::max(0.0, before);
    verticalScrollBar()->setValue(static_cast<int>(top));
}

// Clicks.

void KPDocsView::press(int row, Qt::KeyboardModifiers modifiers)
{
    if (modifiers & Qt::ShiftModifier)
        m_docs.extendSelectionsByShiftClicking(m_docs.at(row));
    else if (modifiers & Qt::ControlModifier)
        m_docs.toggleRow(row);
    else if (m_docs.selection().isSelected(row))
        m_press->selectsOnRelease = true;
    else
        m_docs.selectRow(row);
}

void KPDocsView::mousePressEvent(QMouseEvent *event)
{
    const QPoint at = event->pos();
    if (event->button() == Qt::RightButton) {
        const int row = headerAt(at) >= 0 ? -1 : rowAt(at);
        if (row < 0)
            m_docs.selectNone();
        else if (!m_docs.selection().isSelected(row))
            m_docs.selectRow(row);
        return;
    }
    if (event->button() != Qt::LeftButton || m_docs.count() == 0)
        return;
    if (const int header = headerAt(at); header >= 0) {
        flipGroup(header, event->modifiers() & Qt::AltModifier);
        return;
    }
    const int row = rowAt(at);
    m_press = Press{at, row, false};
    if (row >= 0)
        press(row, event->modifiers());
    else
        startBand(at, event->modifiers());
}

void KPDocsView::mouseMoveEvent(QMouseEvent *event)
{
    const QPoint at = event->pos();
    if (m_isDragSelecting) {
        moveBand(at);
        return;
    }
    if (!(event->buttons() & Qt::LeftButton)) {
        const bool isOnHeader = headerAt(at) >= 0;
        hover(isOnHeader ? -1 : rowAt(at));
        viewport()->setCursor(isOnHeader ? Qt::PointingHandCursor : Qt::ArrowCursor);
        return;
    }
    if (m_press && m_press->row >= 0 && m_press->row < m_docs.count() &&
        (at - m_press->at).manhattanLength() >= QApplication::startDragDistance())
        startDrag(m_press->row);
}

void KPDocsView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    if (m_isDragSelecting)
        endBand();
    else if (m_press && m_press->selectsOnRelease && m_press->row < m_docs.count())
        m_docs.selectRow(m_press->row);
    m_press.reset();
}

void KPDocsView::mouseDoubleClickEvent(QMouseEvent *event)
{
    mousePressEvent(event);
    if (event->button() != Qt::LeftButton || !m_press || m_press->row < 0)
        return;
    m_press.reset();
    Q_EMIT openRequested();
}

void KPDocsView::contextMenuEvent(QContextMenuEvent *event)
{
    QPoint at = event->globalPos();
    if (event->reason() == QContextMenuEvent::Keyboard) {
        const int current = m_docs.selection().current();
        scrollToRow(current);
        at = viewport()->mapToGlobal(visibleRect(std::max(0, current)).center().toPoint());
    }
    Q_EMIT contextMenuRequested(at);
}

void KPDocsView::wheelEvent(QWheelEvent *event)
{
    if (!(event->modifiers() & Qt::ControlModifier)) {
        QAbstractScrollArea::wheelEvent(event);
        return;
    }
    Q_EMIT zoomRequested(event->angleDelta().y() > 0 ? 1 : -1);
    event->accept();
}

void KPDocsView::hover(int row)
{
    const int before = std::exchange(m_hovered, row);
    if (before == row)
        return;
    updateRow(before);
    updateRow(row);
}

bool KPDocsView::viewportEvent(QEvent *event)
{
    if (event->type() == QEvent::Leave)
        hover(-1);
    if (event->type() == QEvent::ToolTip) {
        const auto *help = static_cast<QHelpEvent *>(event);
        const int row = rowAt(help->pos());
        // Plain text in a tag of ours: Qt guesses markup otherwise.
        const QString text = row < 0 || m_docs.at(row)->isGone()
                                 ? QString()
                                 : QStringLiteral("<p style='white-space:pre'>%1</p>")
                                       .arg(m_docs.at(row)->descriptionForUser().toHtmlEscaped());
        QToolTip::showText(help->globalPos(), text, viewport());
        return true;
    }
    return QAbstractScrollArea::viewportEvent(event);
}

// The rubber band.

QRectF KPDocsView::band() const
{
    return QRectF(m_band.from, toContents(m_band.to)).normalized();
}

void KPDocsView::startBand(const QPoint &at, Qt::KeyboardModifiers modifiers)
{
    const bool keeps = modifiers & (Qt::ControlModifier | Qt::ShiftModifier);
    m_band = {toContents(at), at, m_docs.selection(), bool(modifiers & Qt::ShiftModifier)};
    if (!keeps) {
        m_band.before.clear();
        m_docs.setSelection(m_band.before);
    }
    m_isDragSelecting = true;
}

void KPDocsView::moveBand(const QPoint &to)
{
    static constexpr int scrollInterval = 30; // milliseconds
    m_band.to = to;
    KPSelection selection = m_band.before;
    if (selection.rowCount() != m_docs.count())
        return endBand(); // the documents are others by now
    const QList<KPDocsGeometry::Range> touched = m_geometry.itemsIn(band());
    // Extending leaves no holes between what is touched.
    if (m_band.extends && !touched.isEmpty())
        selection.add(
            {static_cast<int>(touched.first().first), static_cast<int>(touched.last().last)});
    for (const KPDocsGeometry::Range &run : touched)
        selection.add({static_cast<int>(run.first), static_cast<int>(run.last)});
    if (!touched.isEmpty())
        selection.setCurrent(static_cast<int>(touched.last().last));
    m_docs.setSelection(selection);
    const bool isInside =
        viewport()->rect().top() <= to.y() && to.y() <= viewport()->rect().bottom();
    if (isInside)
        m_autoScroll.stop();
    else if (!m_autoScroll.isActive())
        m_autoScroll.start(scrollInterval, this);
    viewport()->update();
}

void KPDocsView::endBand()
{
    m_isDragSelecting = false;
    m_autoScroll.stop();
    viewport()->update();
}

void KPDocsView::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_autoScroll.timerId()) {
        QAbstractScrollArea::timerEvent(event);
        return;
    }
    // The farther away, the faster.
    const int y = m_band.to.y();
    const int beyond = y < 0 ? y : y - viewport()->height();
    verticalScrollBar()->setValue(offset() + beyond / 2);
    moveBand(m_band.to);
}

// Dragging.

QMimeData *KPDocsView::mimeData(const QList<KPDoc *> &docs)
{
    QStringList paths;
    paths.reserve(docs.size());
    for (const KPDoc *doc : docs)
        paths.append(doc->filePath());
    QMimeData *data = XPFileUrls::mimeData(paths);
    KPDocPasteboard::setPaths(*data, paths);
    return data;
}

// Only copies leave: a program that takes a move would delete the user's file.
void KPDocsView::startDrag(int row)
{
    m_press.reset();
    const QList<KPDoc *> docs = m_docs.selectedDocs();
    if (docs.isEmpty() || m_docs.at(row)->isGone())
        return;
    auto *drag = new QDrag(this);
    drag->setMimeData(mimeData(docs));
    drag->setPixmap(dragPicture(*m_docs.at(row), docs.size()));
    drag->setHotSpot({56, 64});
    drag->exec(Qt::CopyAction, Qt::CopyAction);
}

bool KPDocsView::takesDrop(const QMimeData *data, const QObject *source)
{
    return source == nullptr && !KPDocPasteboard::isOurs(*data) &&
           XPPasteboardSupport::canImportFromPB(data);
}

// The action is always a copy: what is moved is moved by the filing store, not by the program that
// the files come from.
void KPDocsView::dragEnterEvent(QDragEnterEvent *event)
{
    if (!takesDrop(event->mimeData(), event->source()) && !KPTagMime::hasTags(event->mimeData()))
        return event->ignore();
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void KPDocsView::dragMoveEvent(QDragMoveEvent *event)
{
    if (KPTagDrop::drag(event, m_docs, rowAt(event->position().toPoint())))
        return;
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void KPDocsView::dropEvent(QDropEvent *event)
{
    if (KPTagDrop::drop(event, m_docs, rowAt(event->position().toPoint()), this))
        return;
    if (!takesDrop(event->mimeData(), event->source()))
        return event->ignore();
    event->setDropAction(Qt::CopyAction);
    event->accept();
    Q_EMIT dropped(event->mimeData(), event->modifiers() & Qt::AltModifier);
}

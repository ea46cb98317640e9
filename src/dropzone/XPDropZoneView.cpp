#include "XPDropZoneView.h"

#include "KPDocIcons.h"
#include "KPDocPasteboard.h"
#include "KPLook.h"
#include "XPDropZoneGeometry.h"
#include "XPPasteboardSupport.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QPainter>
#include <QPainterPath>

using Kind = XPDropZoneChoices::Kind;

static constexpr int radius = 12;
static constexpr int iconSize = 20;

XPDropZoneView::XPDropZoneView(QWidget *parent)
    : QWidget(parent), m_choices({}, {}, {}, XPDropZoneView::sizeHint())
{
    setAcceptDrops(true);
    setAccessibleName(qtTrId("KPDropZone"));
    setAccessibleDescription(qtTrId("KPDropZoneTitle"));
    m_spring.setSingleShot(true);
    m_spring.setInterval(springDelay);
    connect(&m_spring, &QTimer::timeout, this, [this] {
        m_choices.spring(m_hovered);
        m_hovered = -1;
        hover(m_last);
        update();
    });
}

QSize XPDropZoneView::sizeHint() const
{
    return {XPDropZoneGeometry::width, XPDropZoneGeometry::height};
}

void XPDropZoneView::setChoices(const XPDropZoneChoices &choices)
{
    m_choices = choices;
    setHovered(-1);
    update();
}

void XPDropZoneView::setStatus(const QString &status)
{
    m_status = status;
    setAccessibleDescription(status.isEmpty() ? qtTrId("KPDropZoneTitle") : status);
    update();
}

// --- Drawing

// At the edge of the screen it goes on.
QRectF XPDropZoneView::outline() const
{
    return QRectF(rect()).adjusted(m_edge == Qt::LeftEdge ? -radius : 0, 0,
                                   m_edge == Qt::RightEdge ? radius : 0, 0);
}

// Round at the corners; without a compositor a window cannot be transparent there.
void XPDropZoneView::followOutline()
{
    if (!m_edge)
        return;
    QPainterPath path;
    path.addRoundedRect(outline(), radius, radius);
    setMask(QRegion(path.toFillPolygon().toPolygon()) & rect());
}

void XPDropZoneView::setEdge(Qt::Edge edge)
{
    if (m_edge == edge)
        return;
    m_edge = edge;
    followOutline();
    update();
}

void XPDropZoneView::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    followOutline();
}

void XPDropZoneView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), palette().window());
    painter.setPen(QPen(KPLook::line(palette()), 1));
    if (m_edge)
        painter.drawRoundedRect(outline().adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    const QRect head(XPDropZoneChoices::margin + 4, 0, width() - 2 * XPDropZoneChoices::margin - 4,
                     XPDropZoneChoices::headHeight);
    painter.setFont(KPLook::font(KPLook::Type::Title));
    painter.setPen(palette().color(QPalette::WindowText));
    const QString text = m_status.isEmpty() ? qtTrId("KPDropZoneTitle") : m_status;
    painter.drawText(head, Qt::AlignLeft | Qt::AlignVCenter,
                     painter.fontMetrics().elidedText(text, Qt::ElideRight, head.width()));
    int number = 0;
    for (const XPDropZoneChoices::Row &row : m_choices.rows())
        paintRow(painter, row, number++ == m_hovered);
}

static const char *iconOf(Kind kind)
{
    switch (kind) {
    case Kind::Today:
        return "file-into";
    case Kind::Folders:
    case Kind::Folder:
        return "folder";
    case Kind::TagGroups:
    case Kind::TagGroup:
        return "tag";
    case Kind::Back:
        return "back";
    }
    return "";
}

void XPDropZoneView::paintRow(QPainter &painter, const XPDropZoneChoices::Row &row,
                              bool isHovered) const
{
    const QPalette &colours = palette();
    const bool isToday = row.kind == Kind::Today;
    const QColor accent = colours.color(QPalette::Highlight);
    painter.setPen(QPen(isHovered ? accent : KPLook::line(colours), isHovered ? 2 : 1,
                        isToday && !isHovered ? Qt::DashLine : Qt::SolidLine));
    painter.setBrush(isHovered ? KPLook::selection(colours) : KPLook::panel(colours));
    painter.drawRoundedRect(QRectF(row.place).adjusted(1, 1, -1, -1), KPLook::controlRadius,
                            KPLook::controlRadius);
    QRect text = row.place.adjusted(12, 4, -12, -4);
    const QIcon icon = KPDocIcons::symbol(QString::fromLatin1(iconOf(row.kind)));
    const int flags = isToday ? Qt::AlignHCenter : Qt::AlignLeft;
    if (isToday) {
        const int top = row.place.center().y() - 40;
        icon.paint(&painter, row.place.center().x() - iconSize, top, 2 * iconSize, 2 * iconSize);
        text.setTop(top + 2 * iconSize + 8);
        text.setHeight(40);
    } else {
        icon.paint(&painter, text.left(), row.place.center().y() - iconSize / 2 + 1, iconSize,
                   iconSize);
        text.setLeft(text.left() + iconSize + 10);
    }
    if (row.kind == Kind::Folders || row.kind == Kind::TagGroups) {
        constexpr int small = 14;
        KPDocIcons::symbol(QStringLiteral("forward"))
            .paint(&painter, text.right() - small, row.place.center().y() - small / 2 + 1, small,
                   small);
        text.setRight(text.right() - small - 4);
    }
    painter.setPen(colours.color(QPalette::WindowText));
    painter.setFont(KPLook::font(KPLook::Type::Body));
    const auto line = [&](const QRect &place, const QString &words, Qt::TextElideMode mode) {
        painter.drawText(place, flags | Qt::AlignVCenter,
                         painter.fontMetrics().elidedText(words, mode, place.width()));
    };
    if (row.detail.isEmpty()) {
        line(text, row.text, Qt::ElideRight);
        return;
    }
    const int half = text.height() / 2;
    line(text.adjusted(0, 0, 0, -half), row.text, Qt::ElideRight);
    painter.setPen(KPLook::muted(colours));
    painter.setFont(KPLook::font(KPLook::Type::Facts));
    line(text.adjusted(0, half, 0, 0), row.detail, Qt::ElideMiddle);
}

// --- Drags

void XPDropZoneView::setHovered(int row)
{
    if (row == m_hovered)
        return;
    m_hovered = row;
    m_spring.stop();
    if (row >= 0 && m_choices.rows().at(row).springs())
        m_spring.start();
    update();
}

void XPDropZoneView::hover(const QPoint &point)
{
    m_last = point;
    setHovered(m_choices.rowAt(point));
}

void XPDropZoneView::dragEnterEvent(QDragEnterEvent *event)
{
    if (event->source() != nullptr || KPDocPasteboard::isOurs(*event->mimeData()) ||
        !XPPasteboardSupport::canImportFromPB(event->mimeData()))
        return event->ignore();
    // Never a move: the other program would delete what it dragged.
    event->setDropAction(Qt::CopyAction);
    event->accept();
    hover(event->position().toPoint());
    Q_EMIT dragEntered();
}

void XPDropZoneView::dragMoveEvent(QDragMoveEvent *event)
{
    event->setDropAction(Qt::CopyAction);
    event->accept();
    hover(event->position().toPoint());
}

void XPDropZoneView::dragLeaveEvent(QDragLeaveEvent *event)
{
    event->accept();
    setHovered(-1);
    m_choices.reset();
    update();
    Q_EMIT dragLeft();
}

void XPDropZoneView::dropEvent(QDropEvent *event)
{
    event->setDropAction(Qt::CopyAction);
    event->accept();
    const XPDropZoneDestination destination =
        m_choices.destinationOf(m_choices.rowAt(event->position().toPoint()));
    setHovered(-1);
    m_choices.reset();
    update();
    Q_EMIT dropped(event->mimeData(), destination);
}

// --- The zone itself

void XPDropZoneView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    m_pressed = event->globalPosition().toPoint().y();
    m_wasMoved = false;
}

void XPDropZoneView::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_pressed)
        return;
    const int y = event->globalPosition().toPoint().y();
    if (!m_wasMoved && std::abs(y - *m_pressed) < QApplication::startDragDistance())
        return;
    m_wasMoved = true;
    Q_EMIT moved(y - *m_pressed);
    m_pressed = y;
}

void XPDropZoneView::mouseReleaseEvent(QMouseEvent *)
{
    if (std::exchange(m_pressed, {}) && !m_wasMoved)
        Q_EMIT clicked();
}

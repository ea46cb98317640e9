#include "XPScanImageView.h"

#include "XPFileUrls.h"

#include <QDragEnterEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <array>
#include <cmath>

static constexpr double margin = 16;
static constexpr double handle = 10;     // side of a handle, and how near counts as on it
static constexpr double smallest = 0.02; // of the picture

XPScanImageView::XPScanImageView(QWidget *parent) : QWidget(parent)
{
    setAcceptDrops(true);
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setMinimumSize(240, 240);
}

void XPScanImageView::setPage(const QImage &image, const QString &accessibleName)
{
    m_image = image;
    setAccessibleName(accessibleName);
    update();
}

void XPScanImageView::setText(const QString &text)
{
    m_text = text;
    update();
}

void XPScanImageView::setMode(Mode mode)
{
    m_mode = mode;
    m_line.reset();
    m_dragged = None;
    unsetCursor();
    update();
}

void XPScanImageView::setCropRect(const QRectF &crop)
{
    m_crop = crop;
    update();
}

void XPScanImageView::setProportion(std::optional<double> proportion)
{
    m_proportion = proportion;
    keepProportion(Right | Bottom);
    update();
}

// --- Coordinates

QRectF XPScanImageView::imageRect() const
{
    const QRectF room = QRectF(rect()).adjusted(margin, margin, -margin, -margin);
    QSizeF size = QSizeF(m_image.size()).scaled(room.size(), Qt::KeepAspectRatio);
    QRectF place(QPointF(), size);
    place.moveCenter(room.center());
    return place;
}

QPointF XPScanImageView::toParts(const QPointF &point) const
{
    const QRectF place = imageRect();
    return {std::clamp((point.x() - place.left()) / place.width(), 0.0, 1.0),
            std::clamp((point.y() - place.top()) / place.height(), 0.0, 1.0)};
}

QRectF XPScanImageView::frame() const
{
    const QRectF place = imageRect();
    return {place.left() + m_crop.left() * place.width(),
            place.top() + m_crop.top() * place.height(), m_crop.width() * place.width(),
            m_crop.height() * place.height()};
}

int XPScanImageView::sidesAt(const QPointF &point) const
{
    const QRectF shown = frame();
    if (!shown.adjusted(-handle, -handle, handle, handle).contains(point))
        return None;
    int sides = None;
    sides |= std::abs(point.x() - shown.left()) <= handle ? Left : None;
    sides |= std::abs(point.x() - shown.right()) <= handle ? Right : None;
    sides |= std::abs(point.y() - shown.top()) <= handle ? Top : None;
    sides |= std::abs(point.y() - shown.bottom()) <= handle ? Bottom : None;
    return sides == None ? All : sides;
}

// --- Drawing

void XPScanImageView::paintEvent(QPaintEvent *event)
{
    Q_UNUSED(event)
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    if (m_image.isNull()) {
        painter.setPen(palette().color(QPalette::PlaceholderText));
        painter.drawText(rect().adjusted(24, 24, -24, -24), Qt::AlignCenter | Qt::TextWordWrap,
                         m_text);
        return;
    }
    const QRectF place = imageRect();
    painter.fillRect(place.translated(0, 2).adjusted(-1, -1, 1, 1), QColor(0, 0, 0, 40));
    painter.drawImage(place, m_image);
    if (m_mode == Mode::Crop) {
        const QRectF shown = frame();
        QPainterPath outside;
        outside.addRect(place);
        outside.addRect(shown);
        painter.fillPath(outside, QColor(0, 0, 0, 110));
        painter.setPen(QPen(palette().color(QPalette::Highlight), 1.5));
        painter.drawRect(shown);
        painter.setBrush(palette().color(QPalette::Highlight));
        const std::array points{shown.topLeft(), shown.topRight(), shown.bottomLeft(),
                                shown.bottomRight()};
        for (const QPointF &point : points)
            painter.drawRect(
                QRectF(point - QPointF(handle / 2, handle / 2), QSizeF(handle, handle)));
    }
    if (m_line) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
        painter.drawLine(*m_line);
    }
}

// --- Pointer and keys

void XPScanImageView::showCursor(const QPointF &point)
{
    if (m_mode == Mode::Straighten)
        return setCursor(Qt::CrossCursor);
    if (m_mode != Mode::Crop)
        return unsetCursor();
    switch (sidesAt(point)) {
    case None:
        return unsetCursor();
    case All:
        return setCursor(Qt::SizeAllCursor);
    case Left:
    case Right:
        return setCursor(Qt::SizeHorCursor);
    case Top:
    case Bottom:
        return setCursor(Qt::SizeVerCursor);
    case Left | Top:
    case Right | Bottom:
        return setCursor(Qt::SizeFDiagCursor);
    default:
        return setCursor(Qt::SizeBDiagCursor);
    }
}

void XPScanImageView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || m_image.isNull())
        return;
    if (m_mode == Mode::Crop) {
        m_dragged = sidesAt(event->position());
        m_from = toParts(event->position());
        m_cropBefore = m_crop;
    } else if (m_mode == Mode::Straighten) {
        m_line = QLineF(event->position(), event->position());
    }
}

void XPScanImageView::mouseMoveEvent(QMouseEvent *event)
{
    if (m_dragged != None)
        dragFrame(toParts(event->position()));
    else if (m_line)
        m_line->setP2(event->position());
    else
        showCursor(event->position());
    update();
}

void XPScanImageView::dragFrame(const QPointF &parts)
{
    const QPointF moved = parts - m_from;
    QRectF crop = m_cropBefore;
    if (m_dragged == All) {
        crop.moveTo(std::clamp(crop.x() + moved.x(), 0.0, 1 - crop.width()),
                    std::clamp(crop.y() + moved.y(), 0.0, 1 - crop.height()));
    } else {
        if (m_dragged & Left)
            crop.setLeft(std::clamp(crop.left() + moved.x(), 0.0, crop.right() - smallest));
        if (m_dragged & Right)
            crop.setRight(std::clamp(crop.right() + moved.x(), crop.left() + smallest, 1.0));
        if (m_dragged & Top)
            crop.setTop(std::clamp(crop.top() + moved.y(), 0.0, crop.bottom() - smallest));
        if (m_dragged & Bottom)
            crop.setBottom(std::clamp(crop.bottom() + moved.y(), crop.top() + smallest, 1.0));
    }
    m_crop = crop;
    if (m_dragged != All)
        keepProportion(m_dragged);
    Q_EMIT cropRectChanged();
}

// The frame's height follows its width; where that leaves the picture, both give way.
void XPScanImageView::keepProportion(int sides)
{
    if (!m_proportion || m_image.isNull())
        return;
    const double parts = *m_proportion * m_image.height() / m_image.width(); // width by height
    double width = sides & (Left | Right) ? m_crop.width() : m_crop.height() * parts;
    double height = width / parts;
    const double roomX = sides & Left ? m_crop.right() : 1 - m_crop.left();
    const double roomY = sides & Top ? m_crop.bottom() : 1 - m_crop.top();
    const double factor = std::min({1.0, roomX / width, roomY / height});
    width *= factor;
    height *= factor;
    if (sides & Left)
        m_crop.setLeft(m_crop.right() - width);
    else
        m_crop.setWidth(width);
    if (sides & Top)
        m_crop.setTop(m_crop.bottom() - height);
    else
        m_crop.setHeight(height);
}

void XPScanImageView::mouseReleaseEvent(QMouseEvent *event)
{
    m_dragged = None;
    if (m_line) {
        QLineF line = *std::exchange(m_line, std::nullopt);
        line.setP2(event->position());
        update();
        static constexpr double shortest = 12;
        if (line.length() >= shortest) {
            // Clockwise from level, whichever way it was drawn, and the nearest of level and plumb.
            double degrees = std::remainder(-line.angle(), 180);
            degrees = std::abs(degrees) > 45 ? std::remainder(degrees, 90) : degrees;
            Q_EMIT lineDrawn(degrees);
        }
    }
    showCursor(event->position());
}

// The arrows move the frame, with Shift its lower right corner.
void XPScanImageView::keyPressEvent(QKeyEvent *event)
{
    static constexpr double step = 0.01;
    QPointF moved;
    switch (event->key()) {
    case Qt::Key_Left:
        moved = {-step, 0};
        break;
    case Qt::Key_Right:
        moved = {step, 0};
        break;
    case Qt::Key_Up:
        moved = {0, -step};
        break;
    case Qt::Key_Down:
        moved = {0, step};
        break;
    default:
        return QWidget::keyPressEvent(event);
    }
    if (m_mode != Mode::Crop)
        return QWidget::keyPressEvent(event);
    m_cropBefore = m_crop;
    m_from = {};
    m_dragged = event->modifiers() & Qt::ShiftModifier ? Right | Bottom : All;
    dragFrame(moved);
    m_dragged = None;
    update();
}

// --- Drops

void XPScanImageView::dragEnterEvent(QDragEnterEvent *event)
{
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
}

void XPScanImageView::dropEvent(QDropEvent *event)
{
    const QStringList paths = XPFileUrls::paths(event->mimeData());
    if (paths.isEmpty())
        return;
    event->acceptProposedAction();
    Q_EMIT filesDropped(paths);
}

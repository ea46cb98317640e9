#include "KPPreviewPicture.h"

#include "KPLook.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

static constexpr double margin = 16;
static constexpr int wheelStep = 120; // a notch, in eighths of a degree

KPPreviewPicture::KPPreviewPicture(QWidget *parent) : QWidget(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setMinimumSize(120, 120);
    setAccessibleName(qtTrId("KPPictureOfDocument"));
}

void KPPreviewPicture::setPicture(const QImage &picture, bool isNew)
{
    m_picture = picture;
    if (isNew) {
        m_original = {};
        m_centre = {0.5, 0.5};
        if (std::exchange(m_zoom, std::nullopt))
            Q_EMIT zoomChanged();
    }
    showCursor();
    update();
}

QSizeF KPPreviewPicture::originalSize() const
{
    QSizeF size = m_picture.size();
    if (m_original.width() > size.width() || m_original.height() > size.height())
        size.scale(m_original, Qt::KeepAspectRatio);
    return size / devicePixelRatioF();
}

// Never larger than its pixels.
double KPPreviewPicture::fittedZoom() const
{
    const QSizeF size = originalSize();
    if (size.isEmpty())
        return 1;
    return std::min(
        {(width() - 2 * margin) / size.width(), (height() - 2 * margin) / size.height(), 1.0});
}

QRectF KPPreviewPicture::place() const
{
    const QSizeF size = originalSize() * m_zoom.value_or(fittedZoom());
    const auto start = [](double room, double length, double centre) {
        if (length <= room)
            return (room - length) / 2;
        return std::clamp(room / 2 - centre * length, room - length, 0.0);
    };
    return {start(width(), size.width(), m_centre.x()),
            start(height(), size.height(), m_centre.y()), size.width(), size.height()};
}

int KPPreviewPicture::neededSide() const
{
    const QSizeF room = QSizeF(size()) - QSizeF(2 * margin, 2 * margin);
    double side = std::max(room.width(), room.height());
    if (m_zoom)
        side = std::max(place().width(), place().height());
    return static_cast<int>(std::ceil(std::max(side, 1.0) * devicePixelRatioF()));
}

// --- Zooming and moving

void KPPreviewPicture::setZoom(std::optional<double> zoom, const QPointF &around)
{
    const QRectF before = place();
    const QPointF part((around.x() - before.left()) / std::max(1.0, before.width()),
                       (around.y() - before.top()) / std::max(1.0, before.height()));
    m_zoom = zoom;
    if (m_zoom) {
        // The same part stays under the pointer.
        const QSizeF after = originalSize() * *m_zoom;
        m_centre = {part.x() + (width() / 2.0 - around.x()) / std::max(1.0, after.width()),
                    part.y() + (height() / 2.0 - around.y()) / std::max(1.0, after.height())};
        m_centre = {std::clamp(m_centre.x(), 0.0, 1.0), std::clamp(m_centre.y(), 0.0, 1.0)};
    } else {
        m_centre = {0.5, 0.5};
    }
    showCursor();
    update();
    Q_EMIT zoomChanged();
}

void KPPreviewPicture::zoomBy(double factor, const QPointF &around)
{
    if (m_picture.isNull())
        return;
    const double least = fittedZoom();
    const double wanted = m_zoom.value_or(least) * factor;
    if (wanted <= least)
        setZoom({}, around);
    else
        setZoom(std::min(wanted, std::max(largestZoom, least)), around);
}

void KPPreviewPicture::fit()
{
    setZoom({}, rect().center());
}

void KPPreviewPicture::showPixels(const QPointF &around)
{
    if (!m_picture.isNull())
        setZoom(std::max(1.0, 2 * fittedZoom()), around);
}

bool KPPreviewPicture::moveBy(const QPointF &distance)
{
    const QRectF before = place();
    if (before.width() > 0 && before.height() > 0)
        m_centre = {(width() / 2.0 - before.left() + distance.x()) / before.width(),
                    (height() / 2.0 - before.top() + distance.y()) / before.height()};
    update();
    const QRectF after = place();
    return after.topLeft() != before.topLeft();
}

void KPPreviewPicture::showCursor()
{
    setCursor(m_dragged ? Qt::ClosedHandCursor : m_zoom ? Qt::OpenHandCursor : Qt::ArrowCursor);
}

void KPPreviewPicture::wheelEvent(QWheelEvent *event)
{
    event->accept();
    if (event->modifiers() & Qt::ControlModifier) {
        zoomBy(event->angleDelta().y() > 0 ? zoomStep : 1 / zoomStep, event->position());
        return;
    }
    if (m_zoom) {
        const QPointF pixels = event->pixelDelta().isNull() ? QPointF(event->angleDelta()) / 2
                                                            : QPointF(event->pixelDelta());
        moveBy(-pixels);
        return;
    }
    m_wheel += event->angleDelta().y();
    if (std::abs(m_wheel) >= wheelStep)
        Q_EMIT turnRequested(std::exchange(m_wheel, 0) > 0 ? -1 : 1);
}

void KPPreviewPicture::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && m_zoom)
        m_dragged = event->position();
    showCursor();
}

void KPPreviewPicture::mouseMoveEvent(QMouseEvent *event)
{
    if (m_dragged)
        moveBy(*std::exchange(m_dragged, event->position()) - event->position());
}

void KPPreviewPicture::mouseReleaseEvent(QMouseEvent *)
{
    m_dragged.reset();
    showCursor();
}

void KPPreviewPicture::mouseDoubleClickEvent(QMouseEvent *event)
{
    m_dragged.reset();
    m_zoom ? fit() : showPixels(event->position());
}

void KPPreviewPicture::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    Q_EMIT zoomChanged();
}

void KPPreviewPicture::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), KPLook::desk(palette()));
    if (m_picture.isNull())
        return;
    painter.setRenderHint(QPainter::SmoothPixmapTransform, m_zoom.value_or(0) < 3);
    QRectF rect = place();
    rect.moveTopLeft(rect.topLeft().toPoint()); // whole points are sharper
    if (!m_picture.hasAlphaChannel()) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(0, 0, 0, KPLook::isDark(palette()) ? 40 : 16));
        for (const double spread : {1.0, 2.0, 3.5})
            painter.drawRoundedRect(rect.adjusted(-spread, 1 - spread, spread, 1 + spread), 3, 3);
    }
    painter.drawImage(rect, m_picture);
}

#include "KPLoupe.h"

#include "KPLook.h"

#include <QPainter>
#include <QPainterPath>

static constexpr int edge = 8; // for the shadow
static constexpr double ring = 3;
static constexpr double corner = 8;

KPLoupe::KPLoupe(QWidget *window) : QWidget(window)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    setAccessibleName(qtTrId("KPToolbarLoupeLabel"));
    hide();
}

void KPLoupe::show(const Sight &sight, const QPoint &centre, int width)
{
    m_sight = sight;
    QRect rect(0, 0, width + 2 * edge, width + 2 * edge);
    rect.moveCenter(centre);
    // What is looked at as a whole is to be seen as a whole.
    if (sight.isWhole) {
        const QRect room = parentWidget()->rect();
        rect.moveLeft(std::clamp(rect.left(), 0, std::max(0, room.width() - rect.width())));
        rect.moveTop(std::clamp(rect.top(), 0, std::max(0, room.height() - rect.height())));
    }
    setGeometry(rect);
    setVisible(true);
    raise();
    update();
}

static void paintShadow(QPainter &painter, const QPainterPath &shape)
{
    painter.setPen(Qt::NoPen);
    for (int spread = 1; spread < edge; spread += 2) {
        QPainterPathStroker stroker(QPen(Qt::black, 2.0 * spread));
        painter.setBrush(QColor(0, 0, 0, 16));
        painter.drawPath(stroker.createStroke(shape).united(shape).translated(0, 1));
    }
}

void KPLoupe::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    const QRectF room = QRectF(rect()).adjusted(edge, edge, -edge, -edge);
    QRectF place(QPointF(), m_sight.size);
    QPainterPath shape;
    if (m_sight.isWhole) {
        place.setSize(m_sight.size.scaled(room.size(), Qt::KeepAspectRatio));
        place.moveCenter(room.center());
        shape.addRoundedRect(place, corner, corner);
    } else {
        place.moveTopLeft(room.center() - QPointF(m_sight.point.x() * m_sight.size.width(),
                                                  m_sight.point.y() * m_sight.size.height()));
        shape.addEllipse(room);
    }
    paintShadow(painter, shape);
    painter.save();
    painter.setClipPath(shape);
    painter.fillRect(rect(), KPLook::desk(palette()));
    painter.drawImage(place, m_sight.picture);
    painter.restore();
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(palette().color(QPalette::Window), ring));
    painter.drawPath(shape);
    painter.setPen(QPen(KPLook::line(palette()), 1));
    painter.drawPath(shape);
}

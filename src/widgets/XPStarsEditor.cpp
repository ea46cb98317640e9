#include "XPStarsEditor.h"

#include "XPStars.h"

#include <QKeyEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

static constexpr int edge = 3; // room for the focus frame

XPStarsEditor::XPStarsEditor(QWidget *parent) : QSlider(Qt::Horizontal, parent)
{
    setRange(0, XPStars::count);
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAccessibleName(qtTrId("KPRating"));
    setAccessibleDescription(qtTrId("KPRatingHint"));
    // Assistive programs set the value itself.
    connect(this, &QSlider::valueChanged, this, [this](int value) {
        if (value != std::lround(m_rating)) {
            m_rating = value;
            Q_EMIT rated(value);
        }
        update();
    });
}

double XPStarsEditor::side() const
{
    return std::ceil(fontMetrics().height() * 1.4);
}

QSize XPStarsEditor::sizeHint() const
{
    return {static_cast<int>(XPStars::width(side())) + 2 * edge,
            static_cast<int>(side()) + 2 * edge};
}

void XPStarsEditor::setRating(double rating)
{
    m_rating = rating;
    setValue(static_cast<int>(std::lround(rating)));
    update();
}

void XPStarsEditor::rate(int stars)
{
    m_rating = std::clamp(stars, 0, XPStars::count);
    setValue(static_cast<int>(m_rating));
    update();
    Q_EMIT rated(static_cast<int>(m_rating)); // also when it looked so: ratings may differ
}

int XPStarsEditor::starAt(const QPointF &point) const
{
    const int star = static_cast<int>((point.x() - edge) / side()) + 1;
    return std::clamp(star, 1, XPStars::count);
}

void XPStarsEditor::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const auto group = isEnabled() ? QPalette::Active : QPalette::Disabled;
    const QColor accent = palette().color(group, QPalette::Highlight);
    if (hasFocus()) {
        painter.setPen(QPen(accent, 1.5));
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), 4, 4);
    }
    const double shown = m_hovered && isEnabled() ? m_hovered : m_rating;
    XPStars::paint(&painter, {edge, edge, XPStars::width(side()), side()}, shown, accent, true);
}

void XPStarsEditor::mousePressEvent(QMouseEvent *event)
{
    event->accept(); // the slider would jump
}

void XPStarsEditor::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || !rect().contains(event->position().toPoint()))
        return;
    const int star = starAt(event->position());
    m_hovered = 0;
    rate(star == m_rating ? 0 : star);
}

void XPStarsEditor::mouseMoveEvent(QMouseEvent *event)
{
    m_hovered = starAt(event->position());
    update();
}

void XPStarsEditor::leaveEvent(QEvent *event)
{
    m_hovered = 0;
    QSlider::leaveEvent(event);
    update();
}

// Rolling past must not rate.
void XPStarsEditor::wheelEvent(QWheelEvent *event)
{
    event->ignore();
}

void XPStarsEditor::keyPressEvent(QKeyEvent *event)
{
    if (event->key() >= Qt::Key_0 && event->key() <= Qt::Key_5)
        rate(event->key() - Qt::Key_0);
    else
        QSlider::keyPressEvent(event);
}

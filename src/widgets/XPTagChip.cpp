#include "XPTagChip.h"

#include "XPPath.h"

#include <QKeyEvent>
#include <QLocale>
#include <QPainter>
#include <algorithm>

static constexpr int inside = 8;
static constexpr int widest = 220;

XPTagChip::XPTagChip(const QString &tag, QWidget *parent) : QAbstractButton(parent), m_tag(tag)
{
    setText(XPPath::printable(tag).replace(u'&', QStringLiteral("&&")));
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::ArrowCursor);
    describe();
}

void XPTagChip::describe()
{
    const QString name = XPPath::printable(m_tag);
    setAccessibleName(m_excluded ? qtTrId("KPChipExcluded").arg(name)
                                 : qtTrId("KPChipTag").arg(name));
    setAccessibleDescription(m_togglable ? qtTrId("KPChipFilterHint") : qtTrId("KPChipHint"));
    setToolTip(m_togglable ? qtTrId("KPChipFilterHint") : QString());
}

void XPTagChip::setExcluded(bool excluded)
{
    m_excluded = excluded;
    describe();
    update();
}

void XPTagChip::setTogglable(bool togglable)
{
    m_togglable = togglable;
    describe();
}

void XPTagChip::setPartial(qsizetype count, qsizetype total)
{
    m_partial = true;
    const QString note =
        qtTrId("KPChipPartial").arg(QLocale().toString(count), QLocale().toString(total));
    setAccessibleDescription(note);
    setToolTip(note);
    update();
}

QSize XPTagChip::sizeHint() const
{
    const int height = fontMetrics().height() + 6;
    const int width = fontMetrics().horizontalAdvance(XPPath::printable(m_tag)) + inside + height;
    return {std::min(width, widest), height};
}

QSize XPTagChip::minimumSizeHint() const
{
    const QSize usual = sizeHint();
    return {std::min(3 * usual.height(), usual.width()), usual.height()};
}

QRect XPTagChip::cross() const
{
    return {width() - height(), 0, height(), height()};
}

static QColor transparent(QColor colour, float alpha)
{
    colour.setAlphaF(alpha);
    return colour;
}

static void paintCross(QPainter *painter, const QRectF &area, const QColor &colour)
{
    const double arm = area.height() * 0.16;
    const QPointF centre = area.center();
    painter->setPen(QPen(colour, 1.4, Qt::SolidLine, Qt::RoundCap));
    painter->drawLine(centre - QPointF(arm, arm), centre + QPointF(arm, arm));
    painter->drawLine(centre - QPointF(arm, -arm), centre + QPointF(arm, -arm));
}

void XPTagChip::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor accent = palette().color(QPalette::Highlight);
    const QColor text = palette().color(QPalette::Text);
    const double radius = height() / 2.0;
    painter.setPen(hasFocus() ? QPen(accent, 2) : QPen(transparent(accent, 0.35F), 1));
    if (m_partial && !hasFocus())
        painter.setPen(QPen(transparent(text, 0.45F), 1, Qt::DashLine));
    painter.setBrush(m_partial    ? transparent(accent, underMouse() ? 0.12F : 0.0F)
                     : m_excluded ? transparent(text, 0.08F)
                                  : transparent(accent, underMouse() ? 0.30F : 0.20F));
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), radius, radius);

    QFont shown = font();
    shown.setStrikeOut(m_excluded);
    painter.setFont(shown);
    painter.setPen(isEnabled() ? text : palette().color(QPalette::Disabled, QPalette::Text));
    const QRect room(inside, 0, width() - inside - height() + 3, height());
    painter.drawText(
        room, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
        fontMetrics().elidedText(XPPath::printable(m_tag), Qt::ElideMiddle, room.width()));
    if (isEnabled())
        paintCross(&painter, cross(), transparent(text, underMouse() ? 0.9F : 0.6F));
}

void XPTagChip::mousePressEvent(QMouseEvent *event)
{
    m_crossPressed = event->button() == Qt::LeftButton && cross().contains(event->pos());
    if (!m_crossPressed)
        QAbstractButton::mousePressEvent(event);
}

void XPTagChip::mouseReleaseEvent(QMouseEvent *event)
{
    if (!std::exchange(m_crossPressed, false))
        QAbstractButton::mouseReleaseEvent(event);
    else if (cross().contains(event->pos()))
        Q_EMIT removeRequested();
}

void XPTagChip::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
        Q_EMIT removeRequested();
        break;
    case Qt::Key_Left:
        Q_EMIT leaveRequested(-1);
        break;
    case Qt::Key_Right:
        Q_EMIT leaveRequested(1);
        break;
    default:
        QAbstractButton::keyPressEvent(event);
    }
}

void XPTagChip::enterEvent(QEnterEvent *event)
{
    QAbstractButton::enterEvent(event);
    update();
}

void XPTagChip::leaveEvent(QEvent *event)
{
    QAbstractButton::leaveEvent(event);
    update();
}

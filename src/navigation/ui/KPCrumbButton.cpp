#include "KPCrumbButton.h"

#include "KPNavigationLook.h"

#include <QKeyEvent>
#include <QPainter>
#include <algorithm>

static constexpr int pillHeight = 26;
static constexpr int inside = 10;
static constexpr int endWidth = 20;
static constexpr int widest = 260;
static constexpr int gap = 6;

KPCrumbButton::KPCrumbButton(const KPCrumb &crumb, QWidget *parent)
    : QAbstractButton(parent), m_crumb(crumb)
{
    setText(crumb.text);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::ArrowCursor);
    setAccessibleName(crumb.spoken);
    setAccessibleDescription(crumb.without ? qtTrId("KPCrumbHint") : qtTrId("KPCrumbPlaceHint"));
    setToolTip(crumb.text);
}

bool KPCrumbButton::isPlace() const
{
    return m_crumb.kind == KPCrumb::Kind::Source || m_crumb.kind == KPCrumb::Kind::Location;
}

QSize KPCrumbButton::sizeHint() const
{
    const int icon = m_crumb.symbol.isEmpty() ? 0 : KPNavigationLook::iconSize + gap;
    const int height = std::max(pillHeight, fontMetrics().height() + 8);
    const int width = inside + icon + fontMetrics().horizontalAdvance(m_crumb.text) + 2 + endWidth;
    return {std::min(width, widest), height};
}

QSize KPCrumbButton::minimumSizeHint() const
{
    return {std::min(sizeHint().width(), 90), sizeHint().height()};
}

QRect KPCrumbButton::end() const
{
    return {width() - endWidth - 2, 0, endWidth, height()};
}

void KPCrumbButton::paintEnd(QPainter *painter, const QColor &colour) const
{
    painter->setPen(QPen(colour, 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const QPointF centre = QRectF(end()).center();
    if (!m_crumb.without) {
        painter->drawPolyline(QPolygonF{centre + QPointF(-3.5, -1.5), centre + QPointF(0, 2),
                                        centre + QPointF(3.5, -1.5)});
        return;
    }
    constexpr double arm = 3;
    painter->drawLine(centre - QPointF(arm, arm), centre + QPointF(arm, arm));
    painter->drawLine(centre - QPointF(arm, -arm), centre + QPointF(arm, -arm));
}

void KPCrumbButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool isHovered = underMouse() || isDown();
    const QColor ground = isPlace() ? KPNavigationLook::mixed(KPNavigationLook::quiet(palette()),
                                                              palette().color(QPalette::WindowText),
                                                              isHovered ? 0.06 : 0)
                                    : KPNavigationLook::chip(palette(), isHovered);
    const QColor text =
        isPlace() ? palette().color(QPalette::WindowText) : KPNavigationLook::chipText(palette());
    const QRectF pill = QRectF(rect()).adjusted(1, 1, -1, -1);
    painter.setPen(hasFocus() ? QPen(palette().color(QPalette::Highlight), 2) : Qt::NoPen);
    painter.setBrush(ground);
    painter.drawRoundedRect(pill, pill.height() / 2, pill.height() / 2);

    int left = inside;
    if (!m_crumb.symbol.isEmpty()) {
        const int size = KPNavigationLook::iconSize;
        KPNavigationLook::icon(m_crumb.symbol)
            .paint(&painter, QRect(left, (height() - size) / 2, size, size));
        left += size + gap;
    }
    QFont shown = font();
    shown.setStrikeOut(m_crumb.isExcluding());
    painter.setFont(shown);
    painter.setPen(text);
    const QRect room(left, 0, end().left() - left + 3, height());
    painter.drawText(room, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
                     fontMetrics().elidedText(m_crumb.text, Qt::ElideMiddle, room.width()));
    paintEnd(&painter, KPNavigationLook::mixed(text, ground, isHovered ? 0.1 : 0.3));
}

void KPCrumbButton::mousePressEvent(QMouseEvent *event)
{
    m_crossPressed =
        m_crumb.without && event->button() == Qt::LeftButton && end().contains(event->pos());
    if (!m_crossPressed)
        QAbstractButton::mousePressEvent(event);
}

void KPCrumbButton::mouseReleaseEvent(QMouseEvent *event)
{
    if (std::exchange(m_crossPressed, false)) {
        if (end().contains(event->pos()))
            Q_EMIT removeRequested();
        return;
    }
    if (isDown() && event->modifiers().testFlag(Qt::AltModifier) && m_crumb.negated) {
        setDown(false);
        Q_EMIT negateRequested();
        return;
    }
    QAbstractButton::mouseReleaseEvent(event);
}

void KPCrumbButton::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
        if (m_crumb.without)
            Q_EMIT removeRequested();
        break;
    case Qt::Key_Minus:
    case Qt::Key_Exclam:
        if (m_crumb.negated)
            Q_EMIT negateRequested();
        break;
    case Qt::Key_Left:
    case Qt::Key_Right:
        Q_EMIT leaveRequested(event->key() == Qt::Key_Left ? -1 : 1);
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Down:
        click();
        break;
    default:
        QAbstractButton::keyPressEvent(event);
    }
}

void KPCrumbButton::enterEvent(QEnterEvent *event)
{
    QAbstractButton::enterEvent(event);
    update();
}

void KPCrumbButton::leaveEvent(QEvent *event)
{
    QAbstractButton::leaveEvent(event);
    update();
}

#include "KPIconButton.h"

#include "KPLook.h"

#include <QAction>
#include <QHBoxLayout>
#include <QPainter>

static constexpr int iconSide = 16;
static constexpr int space = 8;

KPIconButton::KPIconButton(QWidget *parent) : QToolButton(parent)
{
    setIconSize({iconSide, iconSide});
    setAutoRaise(true);
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
}

KPIconButton::KPIconButton(QAction *action, QWidget *parent) : KPIconButton(parent)
{
    setDefaultAction(action);
    const auto rename = [this, action] {
        QString name = action->text().section(u'\t', 0, 0);
        name.remove(u'&');
        setAccessibleName(name);
    };
    rename();
    connect(action, &QAction::changed, this, rename);
}

QSize KPIconButton::sizeHint() const
{
    int width = icon().isNull() ? 0 : iconSide;
    if (toolButtonStyle() != Qt::ToolButtonIconOnly && !text().isEmpty())
        width += fontMetrics().horizontalAdvance(text()) + (width ? space : 0);
    return {std::max(width + 2 * space, KPLook::controlHeight), KPLook::controlHeight};
}

void KPIconButton::setProminent(bool isProminent)
{
    m_isProminent = isProminent;
    setToolButtonStyle(isProminent ? Qt::ToolButtonTextBesideIcon : Qt::ToolButtonIconOnly);
    update();
}

QColor KPIconButton::ground() const
{
    const QPalette look = palette();
    if (m_isProminent) {
        const QColor accent =
            look.color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::Highlight);
        return isDown() ? accent.darker(115) : underMouse() ? accent.lighter(108) : accent;
    }
    if (isChecked())
        return m_isSegment ? look.color(QPalette::Base) : KPLook::chip(look);
    if (isDown())
        return KPLook::selection(look);
    return isEnabled() && underMouse() ? KPLook::hover(look) : QColor(Qt::transparent);
}

void KPIconButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPalette look = palette();
    const int inset = m_isSegment ? 2 : 0;
    const QRectF frame = QRectF(rect()).adjusted(inset, inset, -inset, -inset);
    const bool showsFocus = hasFocus();
    painter.setPen(showsFocus ? QPen(look.color(QPalette::Highlight), 1.5) : QPen(Qt::NoPen));
    painter.setBrush(ground());
    painter.drawRoundedRect(showsFocus ? frame.adjusted(1, 1, -1, -1) : frame,
                            KPLook::controlRadius - inset, KPLook::controlRadius - inset);

    const bool hasText = toolButtonStyle() != Qt::ToolButtonIconOnly && !text().isEmpty();
    QRect iconRect(0, 0, iconSide, iconSide);
    iconRect.moveCenter(rect().center());
    if (hasText)
        iconRect.moveLeft(space);
    icon().paint(&painter, iconRect, Qt::AlignCenter,
                 !isEnabled()    ? QIcon::Disabled
                 : m_isProminent ? QIcon::Selected
                                 : QIcon::Normal,
                 isChecked() ? QIcon::On : QIcon::Off);
    if (!hasText)
        return;
    painter.setPen(m_isProminent ? look.color(QPalette::HighlightedText)
                                 : look.color(isEnabled() ? QPalette::Active : QPalette::Disabled,
                                              QPalette::ButtonText));
    const int left = icon().isNull() ? space : iconRect.right() + space;
    const QRect room(left, 0, width() - left - space, height());
    painter.drawText(room, Qt::AlignVCenter | Qt::AlignLeft,
                     fontMetrics().elidedText(text(), Qt::ElideMiddle, room.width()));
}

KPSegments::KPSegments(const QList<QAction *> &actions, QWidget *parent) : QWidget(parent)
{
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    for (QAction *action : actions) {
        auto *button = new KPIconButton(action);
        button->setSegment(true);
        row->addWidget(button);
    }
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void KPSegments::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(KPLook::hover(palette()));
    painter.drawRoundedRect(rect(), KPLook::controlRadius, KPLook::controlRadius);
}

#include "KPFusionStyle.h"

#include "KPLook.h"

#include <QAbstractScrollArea>
#include <QMainWindow>
#include <QPainter>
#include <QStyleOption>
#include <QTreeView>
#include <algorithm>

static constexpr float indicatorOutline = 0.5F; // of the text's colour
static constexpr float fieldOutline = 0.3F;
static constexpr float outlineDisabled = 0.25F;
static constexpr double indicatorCorner = 2;
static constexpr double fieldCorner = 4;
static constexpr int fieldInset = 3; // of the text, beyond the style's own
static constexpr double buttonCorner = 6;

KPFusionStyle::KPFusionStyle() : QProxyStyle(QStringLiteral("fusion"))
{
    setObjectName(QStringLiteral("fusion")); // what it is to whoever asks
}

static QColor outline(const QStyleOption &option, float share)
{
    QColor colour = option.palette.color(QPalette::Active, QPalette::WindowText);
    const bool isEnabled = option.state & QStyle::State_Enabled;
    colour.setAlphaF(isEnabled ? share : std::min(share, outlineDisabled));
    return colour;
}

static void drawRounded(QPainter *painter, const QRect &rect, const QPen &pen, const QBrush &brush,
                        double corner)
{
    // The pen within, so that it is as wide as it should be at any scale.
    const double inset = pen.style() == Qt::NoPen ? 0 : pen.widthF() / 2;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(pen);
    painter->setBrush(brush);
    painter->drawRoundedRect(QRectF(rect).adjusted(inset, inset, -inset, -inset), corner, corner);
    painter->restore();
}

static void drawField(const QStyleOption &option, QPainter *painter)
{
    const bool hasFocus = option.state & QStyle::State_HasFocus;
    const auto group = option.state & QStyle::State_Enabled ? QPalette::Active : QPalette::Disabled;
    drawRounded(painter, option.rect,
                hasFocus ? QPen(option.palette.color(QPalette::Highlight), 1.5)
                         : QPen(outline(option, fieldOutline), 1),
                option.palette.color(group, QPalette::Base), fieldCorner);
}

static void drawFlatButton(const QStyleOption &option, QPainter *painter)
{
    const QStyle::State state = option.state;
    const QColor ground = state & QStyle::State_Sunken ? KPLook::selection(option.palette)
                          : state & QStyle::State_On   ? KPLook::chip(option.palette)
                                                       : KPLook::hover(option.palette);
    drawRounded(painter, option.rect, Qt::NoPen, ground, buttonCorner);
}

static void drawItem(const QStyleOptionViewItem &option, QPainter *painter)
{
    if (option.backgroundBrush.style() != Qt::NoBrush)
        painter->fillRect(option.rect, option.backgroundBrush);
    const bool isEnabled = option.state & QStyle::State_Enabled;
    const auto group = !isEnabled                            ? QPalette::Disabled
                       : option.state & QStyle::State_Active ? QPalette::Active
                                                             : QPalette::Inactive;
    QBrush ground;
    if (option.state & QStyle::State_Selected)
        ground = option.palette.brush(group, QPalette::Highlight);
    else if (isEnabled && option.state & QStyle::State_MouseOver)
        ground = KPLook::hover(option.palette);
    else
        return;
    // A cell of a row goes on in the next.
    if (option.viewItemPosition == QStyleOptionViewItem::Invalid ||
        option.viewItemPosition == QStyleOptionViewItem::OnlyOne)
        drawRounded(painter, option.rect, Qt::NoPen, ground, fieldCorner);
    else
        painter->fillRect(option.rect, ground);
}

// A ring, where the keyboard is in use. A selected item has no need of one, as a selected row has
// among others.
static void drawFocus(const QStyleOptionFocusRect &option, QPainter *painter, const QWidget *widget)
{
    const QColor accent = option.palette.color(QPalette::Highlight);
    const bool isSelectedItem =
        option.state & QStyle::State_Item && option.backgroundColor == accent;
    if (option.state & QStyle::State_KeyboardFocusChange &&
        (!isSelectedItem || qobject_cast<const QTreeView *>(widget)))
        drawRounded(painter, option.rect, QPen(accent, 1.5), Qt::NoBrush, fieldCorner);
}

static void drawLineBelow(const QStyleOption &option, QPainter *painter, const QColor &colour)
{
    const QRect &rect = option.rect;
    painter->fillRect(QRect(rect.left(), rect.bottom(), rect.width(), 1), colour);
}

static void drawToolBarSeparator(const QStyleOption &option, QPainter *painter)
{
    static constexpr int ends = 4;
    QRect line = option.rect;
    if (option.state & QStyle::State_Horizontal)
        line = QRect(line.center().x(), line.top() + ends, 1, line.height() - 2 * ends);
    else
        line = QRect(line.left() + ends, line.center().y(), line.width() - 2 * ends, 1);
    painter->fillRect(line, KPLook::line(option.palette));
}

void KPFusionStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option,
                                  QPainter *painter, const QWidget *widget) const
{
    const auto *frame = qstyleoption_cast<const QStyleOptionFrame *>(option);
    const auto *item = qstyleoption_cast<const QStyleOptionViewItem *>(option);
    if (element == PE_PanelLineEdit && frame && frame->lineWidth > 0) {
        drawField(*option, painter);
        return;
    }
    if (element == PE_PanelButtonTool && option->state & State_AutoRaise) {
        drawFlatButton(*option, painter);
        return;
    }
    if (element == PE_IndicatorToolBarSeparator) {
        drawToolBarSeparator(*option, painter);
        return;
    }
    if (element == PE_PanelItemViewItem && item) {
        drawItem(*item, painter);
        return;
    }
    if (element == PE_PanelItemViewRow && item) {
        QStyleOptionViewItem plain(*item); // its cells are what is selected
        plain.state &= ~(State_Selected | State_MouseOver);
        QProxyStyle::drawPrimitive(element, &plain, painter, widget);
        return;
    }
    const auto *focus = qstyleoption_cast<const QStyleOptionFocusRect *>(option);
    if (element == PE_FrameFocusRect && focus) {
        drawFocus(*focus, painter, widget);
        return;
    }
    if (element == PE_Frame && qobject_cast<const QAbstractScrollArea *>(widget)) {
        painter->save();
        painter->setPen(outline(*option, fieldOutline));
        painter->setBrush(Qt::NoBrush);
        painter->drawRect(QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5));
        painter->restore();
        return;
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (element == PE_IndicatorCheckBox)
        drawRounded(painter, option->rect, outline(*option, indicatorOutline), Qt::NoBrush,
                    indicatorCorner);
    else if (element == PE_IndicatorRadioButton)
        drawRounded(painter, option->rect, outline(*option, indicatorOutline), Qt::NoBrush,
                    option->rect.height() / 2.0);
}

void KPFusionStyle::drawControl(ControlElement element, const QStyleOption *option,
                                QPainter *painter, const QWidget *widget) const
{
    if (element == CE_ToolBar) {
        if (widget && qobject_cast<QMainWindow *>(widget->parentWidget()))
            drawLineBelow(*option, painter, KPLook::line(option->palette));
        return;
    }
    QProxyStyle::drawControl(element, option, painter, widget);
    // The line below a menu bar, which has gaps at some scales.
    const bool isMenuBar = element == CE_MenuBarEmptyArea ||
                           (element == CE_MenuBarItem && !(option->state & State_Sunken));
    if (isMenuBar) {
        const QRect &rect = option->rect; // its pen reaches half a point above the last one
        painter->fillRect(QRect(rect.left(), rect.bottom() - 1, rect.width(), 2),
                          option->palette.color(QPalette::Window));
    }
}

QRect KPFusionStyle::subElementRect(SubElement element, const QStyleOption *option,
                                    const QWidget *widget) const
{
    const QRect rect = QProxyStyle::subElementRect(element, option, widget);
    const auto *frame = qstyleoption_cast<const QStyleOptionFrame *>(option);
    if (element == SE_LineEditContents && frame && frame->lineWidth > 0)
        return rect.adjusted(fieldInset, 0, -fieldInset, 0);
    return rect;
}

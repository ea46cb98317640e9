#include "KPIndicatorStyle.h"

#include <QPainter>
#include <QStyleOption>

static constexpr float outline = 0.5F; // of the text's colour
static constexpr float outlineDisabled = 0.25F;
static constexpr double corner = 2;

KPIndicatorStyle::KPIndicatorStyle() : QProxyStyle(QStringLiteral("fusion"))
{
    setObjectName(QStringLiteral("fusion")); // what it is to whoever asks
}

void KPIndicatorStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option,
                                     QPainter *painter, const QWidget *widget) const
{
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (element != PE_IndicatorCheckBox && element != PE_IndicatorRadioButton)
        return;
    QColor colour = option->palette.color(QPalette::Active, QPalette::WindowText);
    colour.setAlphaF(option->state & State_Enabled ? outline : outlineDisabled);
    const QRectF frame = QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setBrush(Qt::NoBrush);
    painter->setPen(colour);
    if (element == PE_IndicatorRadioButton)
        painter->drawEllipse(frame);
    else
        painter->drawRoundedRect(frame, corner, corner);
    painter->restore();
}

#include "KPElidedLabel.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

KPElidedLabel::KPElidedLabel(QWidget *parent) : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
}

QSize KPElidedLabel::minimumSizeHint() const
{
    return {fontMetrics().horizontalAdvance(u'…'), QLabel::minimumSizeHint().height()};
}

bool KPElidedLabel::isCut() const
{
    return fontMetrics().horizontalAdvance(text()) > contentsRect().width();
}

void KPElidedLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const QRect place = contentsRect();
    style()->drawItemText(
        &painter, place, int(QStyle::visualAlignment(layoutDirection(), alignment())), palette(),
        isEnabled(), fontMetrics().elidedText(text(), Qt::ElideRight, place.width()),
        foregroundRole());
}

bool KPElidedLabel::event(QEvent *event)
{
    if (event->type() != QEvent::ToolTip || !isCut())
        return QLabel::event(event);
    QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(), text(), this);
    return true;
}

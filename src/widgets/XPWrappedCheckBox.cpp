#include "XPWrappedCheckBox.h"

#include <QStyleOptionButton>
#include <QStyleOptionFocusRect>
#include <QStylePainter>

static constexpr int flags =
    Qt::AlignLeading | Qt::AlignTop | Qt::TextWordWrap | Qt::TextShowMnemonic;
static constexpr int narrowest = 10; // letters a line

XPWrappedCheckBox::XPWrappedCheckBox(const QString &text, QWidget *parent) : QCheckBox(text, parent)
{
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum, QSizePolicy::CheckBox);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

int XPWrappedCheckBox::boxWidth() const
{
    return style()->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, this) +
           style()->pixelMetric(QStyle::PM_CheckBoxLabelSpacing, nullptr, this);
}

int XPWrappedCheckBox::heightOfText(int width) const
{
    return fontMetrics()
        .boundingRect(0, 0, qMax(1, width), QWIDGETSIZE_MAX, flags, text())
        .height();
}

int XPWrappedCheckBox::heightForWidth(int width) const
{
    const int line = QCheckBox::sizeHint().height(); // what one line takes in this style
    const int around = line - qMin(line, fontMetrics().height());
    return qMax(line, heightOfText(width - boxWidth()) + around);
}

QSize XPWrappedCheckBox::sizeHint() const
{
    return QCheckBox::sizeHint();
}

QSize XPWrappedCheckBox::minimumSizeHint() const
{
    const int width = boxWidth() + fontMetrics().averageCharWidth() * narrowest;
    return {qMin(width, sizeHint().width()), sizeHint().height()};
}

void XPWrappedCheckBox::paintEvent(QPaintEvent *)
{
    QStylePainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    const int line = QCheckBox::sizeHint().height();
    QStyleOptionButton box = option; // beside the first line
    box.text.clear();
    box.state &= ~QStyle::State_HasFocus;
    box.rect.setHeight(qMin(line, height()));
    painter.drawControl(QStyle::CE_CheckBox, box);

    const int around = line - qMin(line, fontMetrics().height());
    QRect words = rect().adjusted(boxWidth(), around / 2, 0, 0);
    words = QStyle::visualRect(layoutDirection(), rect(), words);
    const int shown = style()->styleHint(QStyle::SH_UnderlineShortcut, &option, this)
                          ? flags
                          : flags | Qt::TextHideMnemonic;
    const int aligned = int(QStyle::visualAlignment(layoutDirection(), Qt::AlignLeading)) |
                        (shown & ~int(Qt::AlignLeading));
    style()->drawItemText(&painter, words, aligned, palette(), isEnabled(), text(),
                          QPalette::WindowText);
    if (hasFocus() && (option.state & QStyle::State_KeyboardFocusChange)) {
        QStyleOptionFocusRect focus;
        focus.initFrom(this);
        focus.rect = painter.boundingRect(words, aligned, text()).adjusted(-2, -1, 2, 1) & rect();
        painter.drawPrimitive(QStyle::PE_FrameFocusRect, focus);
    }
}

#include "WindowFaults.h"

#include "KPElidedLabel.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QAccessible>
#include <QImage>
#include <QLabel>
#include <QPainter>
#include <QTabBar>
#include <QTextDocument>
#include <QToolButton>
#include <QWidget>
#include <algorithm>
#include <cmath>

namespace {

QList<QWidget *> shownIn(QWidget *window)
{
    QList<QWidget *> shown{window};
    for (QWidget *widget : window->findChildren<QWidget *>())
        if (widget->isVisibleTo(window) && widget->window() == window && !widget->size().isEmpty())
            shown.append(widget);
    return shown;
}

QString textOf(const QWidget *widget)
{
    if (const auto *label = qobject_cast<const QLabel *>(widget))
        return label->text();
    if (const auto *button = qobject_cast<const QAbstractButton *>(widget)) {
        const auto *tool = qobject_cast<const QToolButton *>(widget);
        const bool isPicture =
            tool && tool->toolButtonStyle() == Qt::ToolButtonIconOnly && !tool->icon().isNull();
        return isPicture ? QString() : button->text();
    }
    return {};
}

QString described(const QWidget *widget, const QString &fault)
{
    const QString name =
        widget->accessibleName().isEmpty() ? widget->objectName() : widget->accessibleName();
    return QStringLiteral("%1 of %2 \"%3\" \"%4\": %5")
        .arg(QString::fromLatin1(widget->metaObject()->className()),
             QString::fromLatin1(widget->parentWidget()
                                     ? widget->parentWidget()->metaObject()->className()
                                     : "nothing"),
             name, textOf(widget).left(60), fault);
}

bool scrolls(const QWidget *widget)
{
    for (const QWidget *at = widget->parentWidget(); at; at = at->parentWidget())
        if (qobject_cast<const QAbstractScrollArea *>(at))
            return true;
    return false;
}

QSize needed(const QWidget *widget)
{
    if (const auto *label = qobject_cast<const QLabel *>(widget)) {
        if (!label->wordWrap())
            return label->sizeHint();
        return {0, label->heightForWidth(label->width())};
    }
    if (widget->hasHeightForWidth())
        return {widget->minimumSizeHint().width(), widget->heightForWidth(widget->width())};
    return widget->sizeHint();
}

bool hasLetters(const QString &text)
{
    return std::any_of(text.begin(), text.end(), [](QChar c) { return c.isLetterOrNumber(); });
}

// Not scrolled out of sight, not even in part.
bool isWholeInSight(const QWidget *widget)
{
    return widget->visibleRegion().boundingRect() == widget->rect();
}

// As WCAG 2.1 has it.
double luminance(QRgb colour)
{
    const auto part = [](int value) {
        const double v = value / 255.0;
        return v <= 0.03928 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * part(qRed(colour)) + 0.7152 * part(qGreen(colour)) +
           0.0722 * part(qBlue(colour));
}

double contrast(double one, double other)
{
    return (std::max(one, other) + 0.05) / (std::min(one, other) + 0.05);
}

// The ground is what most of the picture shows; the letters are what is furthest from it.
double contrastIn(const QImage &picture)
{
    QHash<QRgb, int> counts;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            ++counts[picture.pixel(x, y)];
    QRgb ground = 0;
    for (int most = 0; const auto &[colour, count] : counts.asKeyValueRange())
        if (count > most) {
            most = count;
            ground = colour;
        }
    double found = 1;
    const double below = luminance(ground);
    for (const auto &[colour, count] : counts.asKeyValueRange())
        if (count >= 4) // a stem, no smear
            found = std::max(found, contrast(below, luminance(colour)));
    return found;
}

} // namespace

QStringList WindowFaults::cutTexts(QWidget *window)
{
    QStringList faults;
    for (const QWidget *widget : shownIn(window)) {
        const QString text = textOf(widget);
        if (text.isEmpty() || qobject_cast<const KPElidedLabel *>(widget))
            continue;
        const QSize need = needed(widget);
        if (widget->width() < need.width() || widget->height() < need.height())
            faults += described(widget, QStringLiteral("has %1 × %2, needs %3 × %4")
                                            .arg(widget->width())
                                            .arg(widget->height())
                                            .arg(need.width())
                                            .arg(need.height()));
        else if (!scrolls(widget) && widget != window &&
                 !widget->parentWidget()->rect().contains(widget->geometry()))
            faults += described(widget, QStringLiteral("stands outside of its parent"));
    }
    return faults;
}

QStringList WindowFaults::namelessControls(QWidget *window)
{
    QStringList faults;
    for (QWidget *widget : shownIn(window)) {
        if (widget == window || !(widget->focusPolicy() & Qt::TabFocus) || widget->focusProxy())
            continue;
        const auto *item = QAccessible::queryAccessibleInterface(widget);
        if (!item || item->text(QAccessible::Name).trimmed().isEmpty())
            faults += described(widget, QStringLiteral("has no name"));
    }
    return faults;
}

QStringList WindowFaults::faintTexts(QWidget *window)
{
    constexpr int scale = 3; // letters whose stems reach their full colour
    constexpr double enough = 4.5;
    constexpr double enoughForLarge = 3;
    constexpr double largePoints = 18;
    QImage picture(window->size() * scale, QImage::Format_RGB32);
    picture.setDevicePixelRatio(scale);
    picture.fill(window->palette().color(QPalette::Window));
    window->render(&picture);
    picture.setDevicePixelRatio(1);
    QStringList faults;
    for (const QWidget *widget : shownIn(window)) {
        if (!widget->isEnabled() || !hasLetters(textOf(widget)) || !isWholeInSight(widget))
            continue;
        const QRect place = widget->rect().translated(widget->mapTo(window, QPoint()));
        const double found =
            contrastIn(picture.copy(QRect(place.topLeft() * scale, place.size() * scale)));
        const bool isLarge = widget->font().pointSizeF() >= largePoints;
        if (found < (isLarge ? enoughForLarge : enough))
            faults += described(widget, QStringLiteral("has %1 : 1").arg(found, 0, 'f', 1));
    }
    return faults;
}

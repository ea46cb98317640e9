#include "KPWindowFrame.h"

#include "UserDefaults.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QScreen>
#include <QStyle>
#include <QWidget>
#include <algorithm>

// A widget that is a window by itself would be told to assistive programs as a part of one.
static QAccessibleInterface *makeWindow(const QString &className, QObject *object)
{
    auto *widget = className == u"QWidget" ? qobject_cast<QWidget *>(object) : nullptr;
    if (widget && widget->windowType() == Qt::Window)
        return new QAccessibleWidget(widget, QAccessible::Window);
    if (widget && widget->windowType() == Qt::Dialog)
        return new QAccessibleWidget(widget, QAccessible::Dialog);
    return nullptr;
}

void KPWindowFrame::tellWindows()
{
    static const bool isInstalled = (QAccessible::installFactory(makeWindow), true);
    Q_UNUSED(isInstalled)
}

void KPWindowFrame::restore(QWidget &window, const QString &key, const QSize &usual)
{
    if (window.restoreGeometry(UserDefaults::standard().value(key).data()))
        return;
    // A window as large as the screen would end below it, as its title bar comes to it.
    const int titleBar = window.style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, &window);
    const QRect room = window.screen()->availableGeometry().adjusted(1, titleBar + 1, -1, -1);
    window.resize(usual.boundedTo(room.size()));
    const QWidget *near =
        window.parentWidget() ? window.parentWidget()->window() : QApplication::activeWindow();
    if (!near)
        return;
    QRect frame(QPoint(), window.size());
    frame.moveCenter(near->frameGeometry().center());
    window.move(std::clamp(frame.left(), room.left(), room.right() + 1 - frame.width()),
                std::clamp(frame.top(), room.top(), room.bottom() + 1 - frame.height()));
}

void KPWindowFrame::save(const QWidget &window, const QString &key)
{
    UserDefaults::standard().setValue(key, window.saveGeometry());
}

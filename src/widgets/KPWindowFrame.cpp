#include "KPWindowFrame.h"

#include "UserDefaults.h"

#include <QApplication>
#include <QScreen>
#include <QStyle>
#include <QWidget>
#include <algorithm>

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

#pragma once

#include <QToolButton>

// Threads: main.
namespace KPMenuButton {

// A click opens the button's menu. An instant popup would do so too, but assistive programs have no
// action to open one. They wait for their click, which must not last as long as the menu.
inline void openByClick(QToolButton &button)
{
    QObject::connect(&button, &QToolButton::clicked, &button, &QToolButton::showMenu,
                     Qt::QueuedConnection);
}

} // namespace KPMenuButton

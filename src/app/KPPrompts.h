#pragma once

#include "XPPrompts.h"

#include <QPointer>
#include <QWidget>

// Questions and alerts as message boxes over the main window. They return at once: no event loop
// is nested around the caller's work. All texts are plain. Threads: main.
class KPPrompts : public XPPrompts
{
public:
    // Without a window, boxes stand alone.
    explicit KPPrompts(QWidget *window);

    void ask(const Question &question, std::function<void(int)> answer) override;
    void alert(const QString &title, const QString &text) override;

private:
    QPointer<QWidget> m_window;
};

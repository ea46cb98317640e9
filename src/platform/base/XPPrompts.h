#pragma once

#include <QString>
#include <QStringList>
#include <functional>
#include <memory>

// Questions and alerts that lower layers put to the user without knowing a widget.
//
// The application installs an implementation over windows, murnctl one over the terminal.
// Threads: current(), ask() and alert() on the main thread only; answers arrive there, from the
// event loop or before ask() returns. Never call with a lock held.
class XPPrompts
{
public:
    struct Question
    {
        QString title;         // one sentence that can stand alone
        QString text;          // what will happen; plain text, shown as it is
        QStringList buttons;   // at least one; the first is the default
        int cancelButton = -1; // the answer to Escape, to a closed window and to "nobody to ask"
    };

    virtual ~XPPrompts() = default;

    // `answer` is called exactly once, with the index of the chosen button.
    virtual void ask(const Question &question, std::function<void(int)> answer) = 0;
    virtual void alert(const QString &title, const QString &text) = 0;

    // Never null: until something is installed, questions are answered with their cancel button
    // and alerts go to the log.
    static XPPrompts &current();
    static void install(std::unique_ptr<XPPrompts> prompts);
};

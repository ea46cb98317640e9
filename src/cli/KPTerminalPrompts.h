#pragma once

#include "XPPrompts.h"

class KPCommandOutput;

// Questions on the terminal, as numbered answers; alerts are failures of the command.
// Threads: main.
class KPTerminalPrompts : public XPPrompts
{
public:
    // With `yes`, each question is answered with its first button, and nobody is asked.
    KPTerminalPrompts(KPCommandOutput &output, bool yes) : m_output(output), m_yes(yes) {}

    void ask(const Question &question, std::function<void(int)> answer) override;
    void alert(const QString &title, const QString &text) override;

    // Whether somebody can be asked.
    static bool canAsk();

private:
    int askOnce(const Question &question);

    KPCommandOutput &m_output;
    const bool m_yes;
};

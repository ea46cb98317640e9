#include "KPTerminalPrompts.h"

#include "KPCommandOutput.h"
#include "XPPath.h"

#include <array>
#include <cstdio>
#include <unistd.h>

bool KPTerminalPrompts::canAsk()
{
    return ::isatty(STDIN_FILENO) == 1 && ::isatty(STDERR_FILENO) == 1;
}

// One line; nothing at the end of the input.
static std::optional<QByteArray> readLine()
{
    std::array<char, 256> buffer = {};
    if (std::fgets(buffer.data(), buffer.size(), stdin) == nullptr)
        return {};
    return QByteArray(buffer.data()).trimmed();
}

// The button that was meant, -1 when that is unclear.
int KPTerminalPrompts::askOnce(const Question &question)
{
    const auto line = readLine();
    if (!line)
        return question.cancelButton;
    bool isNumber = false;
    const int number = line->toInt(&isNumber);
    if (isNumber)
        return number >= 1 && number <= question.buttons.size() ? number - 1 : -1;
    int found = -1;
    for (int i = 0; i < question.buttons.size(); ++i) {
        if (line->isEmpty() ||
            !question.buttons[i].startsWith(QString::fromUtf8(*line), Qt::CaseInsensitive))
            continue;
        if (found >= 0)
            return -1;
        found = i;
    }
    return found;
}

void KPTerminalPrompts::ask(const Question &question, std::function<void(int)> answer)
{
    if (m_yes) {
        answer(0);
        return;
    }
    QString text = question.title + u'\n' + question.text + u'\n';
    for (int i = 0; i < question.buttons.size(); ++i)
        text += QStringLiteral("  %1) %2\n").arg(i + 1).arg(question.buttons[i]);
    std::fputs(text.toUtf8().constData(), stderr);
    int button = -1;
    while (button < 0) {
        std::fputs("> ", stderr);
        std::fflush(stderr);
        button = askOnce(question);
        if (button < 0 && std::feof(stdin) != 0)
            break; // nobody to ask, and no button that cancels
    }
    answer(button);
}

void KPTerminalPrompts::alert(const QString &title, const QString &text)
{
    m_output.fail(title + QStringLiteral(": ") + text);
}

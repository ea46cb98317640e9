#pragma once

#include <QString>
#include <chrono>

// One line on the terminal of standard error that is written over as work goes on; nothing when
// that is no terminal. It is gone when this is destroyed. Threads: one.
class KPProgressLine
{
public:
    KPProgressLine();
    ~KPProgressLine() { clear(); }
    KPProgressLine(const KPProgressLine &) = delete;
    KPProgressLine &operator=(const KPProgressLine &) = delete;

    // Whether it is time to show something: a few times in a second, after a short while.
    bool isDue() const;
    void show(const QString &text);
    void clear(); // before something else is printed

private:
    using Clock = std::chrono::steady_clock;
    const bool m_isTerminal;
    Clock::time_point m_due;
    bool m_isShown = false;
};

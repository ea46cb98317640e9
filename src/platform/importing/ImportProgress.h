#pragma once

#include <QtGlobal>
#include <chrono>
#include <optional>

// How fast waiting documents are imported and how long it will take, from looks at their number.
//
// Nothing is known before two seconds of progress. While nothing moves (importing is paused) the
// rate falls to nothing, and so there is no estimate.
// Threads: a value.
class ImportProgress
{
public:
    using Clock = std::chrono::steady_clock;

    void note(qint64 waiting, Clock::time_point now);
    std::optional<double> filesPerSecond() const { return m_rate; }
    std::optional<std::chrono::seconds> left() const;

private:
    std::optional<Clock::time_point> m_since;
    qint64 m_sinceWaiting = 0;
    qint64 m_waiting = 0;
    std::optional<double> m_rate;
};

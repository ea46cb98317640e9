#pragma once

#include <chrono>
#include <functional>

// A stop-watch that counts from its construction or its last reset().
// Threads: one at a time. The clock may be another than the system's, for tests.
class KPTimer
{
public:
    using Clock = std::function<double()>; // seconds since any moment, never going back

    explicit KPTimer(Clock clock = {}) : m_clock(clock ? std::move(clock) : Clock(systemClock))
    {
        reset();
    }
    void reset() { m_start = m_clock(); }
    double elapsedSeconds() const { return m_clock() - m_start; }

private:
    static double systemClock()
    {
        return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
            .count();
    }

    Clock m_clock;
    double m_start = 0;
};

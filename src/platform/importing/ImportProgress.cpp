#include "ImportProgress.h"

using namespace std::chrono_literals;

static constexpr auto window = 2s;
static constexpr double weightOfOld = 0.6;
// Fewer in a second than this is standing still.
static constexpr double slowest = 0.05;

void ImportProgress::note(qint64 waiting, Clock::time_point now)
{
    const bool grew = waiting > m_waiting;
    m_waiting = waiting;
    if (waiting == 0) {
        *this = {};
        return;
    }
    if (!m_since || grew) { // what came anew is no work undone
        m_since = now;
        m_sinceWaiting = waiting;
        return;
    }
    const std::chrono::duration<double> elapsed = now - *m_since;
    if (elapsed < window)
        return;
    const double rate = static_cast<double>(m_sinceWaiting - waiting) / elapsed.count();
    m_rate = m_rate ? *m_rate * weightOfOld + rate * (1 - weightOfOld) : rate;
    m_since = now;
    m_sinceWaiting = waiting;
}

std::optional<std::chrono::seconds> ImportProgress::left() const
{
    if (!m_rate || *m_rate < slowest)
        return {};
    return std::chrono::seconds(static_cast<qint64>(static_cast<double>(m_waiting) / *m_rate) + 1);
}

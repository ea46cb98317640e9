#include "KPProgressLine.h"

#include <cstdio>
#include <sys/ioctl.h>
#include <unistd.h>

using namespace std::chrono_literals;

static constexpr auto before = 300ms; // what is done sooner needs no line
static constexpr auto interval = 100ms;

KPProgressLine::KPProgressLine()
    : m_isTerminal(::isatty(STDERR_FILENO) == 1), m_due(Clock::now() + before)
{
}

bool KPProgressLine::isDue() const
{
    return m_isTerminal && Clock::now() >= m_due;
}

void KPProgressLine::show(const QString &text)
{
    if (!isDue())
        return;
    m_due = Clock::now() + interval;
    winsize size = {};
    const bool isKnown = ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 1;
    // A longer line would wrap, and could not be written over.
    const QString line = isKnown ? text.left(size.ws_col - 1) : text;
    std::fprintf(stderr, "\r\033[K%s", line.toUtf8().constData());
    std::fflush(stderr);
    m_isShown = true;
}

void KPProgressLine::clear()
{
    if (!std::exchange(m_isShown, false))
        return;
    std::fputs("\r\033[K", stderr);
    std::fflush(stderr);
}

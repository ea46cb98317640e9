#include "KPInterrupt.h"

#include <QSocketNotifier>
#include <csignal>
#include <sys/signalfd.h>
#include <unistd.h>

static int makeDescriptor()
{
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaddset(&signals, signal);
    ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    return ::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
}

KPInterrupt::KPInterrupt() : m_descriptor(makeDescriptor())
{
    auto *notifier = new QSocketNotifier(m_descriptor, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        if (happened())
            Q_EMIT interrupted();
    });
}

KPInterrupt::~KPInterrupt()
{
    ::close(m_descriptor);
}

bool KPInterrupt::happened()
{
    signalfd_siginfo info = {};
    if (::read(m_descriptor, &info, sizeof info) == sizeof info)
        m_happened = true;
    return m_happened;
}

#include "XPArrivals.h"

#include "XPPath.h"

#include <array>
#include <chrono>
#include <sys/inotify.h>
#include <unistd.h>

using namespace std::chrono_literals;

static constexpr auto quiet = 300ms; // so that many are taken at once

XPArrivals::XPArrivals(const QString &folder, QObject *parent)
    : QObject(parent), m_notices(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK))
{
    m_quiet.setSingleShot(true);
    m_quiet.setInterval(quiet);
    connect(&m_quiet, &QTimer::timeout, this, &XPArrivals::arrived);
    if (::inotify_add_watch(m_notices.get(), XPPath::encode(folder).constData(),
                            IN_CLOSE_WRITE | IN_MOVED_TO | IN_ONLYDIR) < 0)
        return;
    m_notifier = std::make_unique<QSocketNotifier>(m_notices.get(), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &XPArrivals::read);
}

void XPArrivals::read()
{
    alignas(inotify_event) std::array<char, 4096> bytes; // NOLINT(*-member-init): read into
    while (::read(m_notices.get(), bytes.data(), bytes.size()) > 0) {
    }
    m_quiet.start();
}

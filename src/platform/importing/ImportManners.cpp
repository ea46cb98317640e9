#include "ImportManners.h"

#include "XPFileDescriptor.h"

#include <QList>
#include <fcntl.h>
#include <filesystem>
#include <memory>

using namespace std::chrono_literals;

// Begins above the one and ends below the other, so that it does not flutter.
static constexpr double busyFrom = 0.8;
static constexpr double quietFrom = 0.6;
static constexpr auto longestPause = 30s;

static QByteArray contentsOf(const QByteArray &path)
{
    const XPFileDescriptor file(::open(path.constData(), O_RDONLY | O_CLOEXEC));
    char buffer[512];
    const ssize_t size = file.isOpen() ? ::read(file.get(), buffer, sizeof buffer) : 0;
    return QByteArray(buffer, std::max<ssize_t>(size, 0));
}

// power_supply(5) of the kernel's sysfs: a battery of the machine (not of a mouse) that empties,
// and no mains.
bool ImportManners::isOnBattery(const QByteArray &powerSupplies)
{
    std::error_code error;
    bool empties = false;
    const std::filesystem::path folder(powerSupplies.toStdString());
    for (std::filesystem::directory_iterator it(folder, error), end; !error && it != end;
         it.increment(error)) {
        const QByteArray supply = QByteArray::fromStdString(it->path().string());
        if (contentsOf(supply + "/online").trimmed() == "1")
            return false;
        empties = empties || (contentsOf(supply + "/type").trimmed() == "Battery" &&
                              contentsOf(supply + "/scope").trimmed() != "Device" &&
                              contentsOf(supply + "/status").trimmed() == "Discharging");
    }
    return empties;
}

// proc(5): user, nice, system, idle, iowait, irq, softirq, steal. The importer counts as nice.
std::optional<double> ImportManners::othersShare(const QByteArray &before, const QByteArray &now)
{
    const QByteArrayList from = before.simplified().split(' ');
    const QByteArrayList to = now.simplified().split(' ');
    if (from.size() < 9 || to.size() < 9 || from[0] != "cpu" || to[0] != "cpu")
        return {};
    double all = 0;
    double others = 0;
    for (qsizetype i = 1; i < 9; ++i) {
        const double ticks = static_cast<double>(to[i].toLongLong() - from[i].toLongLong());
        const bool isOthers = i == 1 || i == 3 || i >= 6;
        all += ticks;
        others += isOthers ? ticks : 0;
    }
    return all > 0 ? std::optional(others / all) : std::nullopt;
}

ImportManners::Facts ImportManners::ofThisMachine()
{
    const auto before = std::make_shared<QByteArray>();
    return {[] { return isOnBattery("/sys/class/power_supply"); },
            [before] {
                QByteArray now = contentsOf("/proc/stat");
                now.truncate(std::max<qsizetype>(now.indexOf('\n'), 0));
                return othersShare(std::exchange(*before, now), now);
            }};
}

ImportManners::ImportManners(Facts facts) : m_facts(std::move(facts))
{
}

bool ImportManners::isBusy(std::optional<double> share, Clock::time_point now)
{
    const double bound = m_busySince ? quietFrom : busyFrom;
    if (!share || *share < bound || (m_busySince && now - *m_busySince >= longestPause)) {
        m_busySince.reset();
        return false;
    }
    m_busySince = m_busySince.value_or(now);
    return true;
}

void ImportManners::look()
{
    const Clock::time_point now = Clock::now();
    bool isBusyNow = false;
    {
        const XPLocker lock(m_mutex);
        if (m_next && now < *m_next)
            return;
        m_next = now + interval;
        isBusyNow = isBusy(m_facts.othersShare(), now);
    }
    m_pause.set(ImportPause::Load, isBusyNow);
    m_pause.set(ImportPause::Battery, m_facts.isOnBattery());
}

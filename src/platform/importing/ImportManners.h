#pragma once

#include "ImportPause.h"

#include <QByteArray>
#include <chrono>
#include <functional>
#include <optional>

// When background importing stands still for the sake of others: on battery, and while other
// programs want the processor.
//
// Who imports looks here now and then, so nothing is watched while nothing is imported. On a
// machine that is busy for long, importing goes on for a moment every half minute; at idle priority
// that takes nothing from anybody, and it comes to an end some day.
// Threads: any. Outlives the importers.
class ImportManners
{
public:
    static constexpr std::chrono::milliseconds interval{2000}; // between two looks

    struct Facts
    {
        std::function<bool()> isOnBattery;
        // The share of all processors that other programs had since the last call, less what ran
        // at low priority; nothing when it is not known.
        std::function<std::optional<double>()> othersShare;
    };
    explicit ImportManners(Facts facts = ofThisMachine());

    ImportPause &pause() { return m_pause; }
    void look() XP_EXCLUDES(m_mutex);

    // sysfs and proc.
    static Facts ofThisMachine();
    static bool isOnBattery(const QByteArray &powerSupplies);
    // The first line of /proc/stat, now and before.
    static std::optional<double> othersShare(const QByteArray &before, const QByteArray &now);

private:
    using Clock = std::chrono::steady_clock;
    bool isBusy(std::optional<double> share, Clock::time_point now) XP_REQUIRES(m_mutex);

    const Facts m_facts;
    ImportPause m_pause;
    XPMutex m_mutex;
    std::optional<Clock::time_point> m_next XP_GUARDED_BY(m_mutex);
    std::optional<Clock::time_point> m_busySince XP_GUARDED_BY(m_mutex);
};

#include "KPHealingChoice.h"

using State = KPHealing::State;

bool KPHealingChoice::isOpen(const KPHealing &healing, bool accepts)
{
    if (accepts)
        return healing.state != State::Healed;
    return healing.state == State::Healed || healing.state == State::Pending;
}

// What is taken off may have been changed since, which is told and does not keep the case open.
static void apply(KPHealing &healing, bool accepts, QList<XPError> &failures)
{
    std::optional<XPError> error;
    if (accepts)
        error = healing.heal();
    else if (healing.state == State::Healed)
        error = healing.undo();
    if (error) {
        error->path = healing.path;
        failures.append(*error);
    }
    if (!error || (!accepts && error->domain != XPError::posixDomain))
        healing.state = accepts ? State::Healed : State::Undone;
}

KPHealingChoice::Result KPHealingChoice::apply(const QList<qint64> &numbers, bool accepts)
{
    Result result;
    const auto cases = KPHealingLog::read();
    if (!cases) {
        result.failures.append(cases.error());
        return result;
    }
    for (KPHealing healing : *cases) {
        if (!numbers.contains(healing.number) || !isOpen(healing, accepts))
            continue;
        ::apply(healing, accepts, result.failures);
        result.done.append(healing);
    }
    const auto error = KPHealingLog::change([&result](QList<KPHealing> &all) {
        for (KPHealing &each : all) {
            for (const KPHealing &healing : result.done) {
                if (each.number == healing.number)
                    each = healing;
            }
        }
    });
    if (error)
        result.failures.append(*error);
    return result;
}

#include "KPTypeAhead.h"

#include "UserDefaults.h"
#include "XPText.h"

#include <QKeyEvent>
#include <chrono>

bool KPTypeAhead::take(const QKeyEvent &event, const Names &names, int current, int *row)
{
    *row = -1;
    const auto others = event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier);
    const QString text = event.text();
    if (others || text.isEmpty() || !text.at(0).isPrint())
        return false;
    if (m_end.hasExpired())
        m_typed.clear();
    if (m_typed.isEmpty() && text.at(0).isSpace())
        return false;
    const QString folded = foldText(text);
    const bool isRepeated = m_typed == folded;
    if (!isRepeated)
        m_typed += folded;
    const auto delay =
        UserDefaults::standard().doubleValue(QStringLiteral("KPTypeAheadTimeoutDelay"));
    m_end.setRemainingTime(std::chrono::milliseconds(static_cast<qint64>(delay * 1000)));
    // While a word grows the document that it led to may still be the one.
    const bool staysPossible = m_typed.size() > folded.size();
    *row = find(names, staysPossible ? current : current + 1);
    return true;
}

int KPTypeAhead::find(const Names &names, int from) const
{
    for (int step = 0; step < names.count; ++step) {
        const int row = (std::max(0, from) + step) % names.count;
        if (foldText(names.at(row)).startsWith(m_typed))
            return row;
    }
    return -1;
}

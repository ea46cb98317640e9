#include "KPHistory.h"

static constexpr qsizetype usualCount = 100;

KPHistory::Entry::Entry(const KPSearchState::Ptr &state, const KPNavigator::SourceItem &source,
                        const KPNavigator::LocationItem &location)
    : m_state(state)
{
    if (state)
        m_source = source;
    if (m_source)
        m_location = location;
}

int KPHistory::Entry::count() const
{
    return (m_state ? 1 : 0) + (m_source ? 1 : 0) + (m_location ? 1 : 0);
}

KPHistory::KPHistory()
{
    m_entries.reserve(usualCount);
}

void KPHistory::addItem(const Entry &entry)
{
    if (m_position != -1 && m_position < m_entries.size() - 1)
        m_entries.resize(m_position + 1);
    m_entries.append(entry);
    ++m_position;
}

const KPHistory::Entry *KPHistory::at(qsizetype position) const
{
    return position >= 0 && position < m_entries.size() ? &m_entries.at(position) : nullptr;
}

const KPHistory::Entry *KPHistory::currentItem() const
{
    return at(m_position);
}

const KPHistory::Entry *KPHistory::backItem() const
{
    return at(m_position - 1);
}

const KPHistory::Entry *KPHistory::forwardItem() const
{
    return at(m_position + 1);
}

void KPHistory::goBack()
{
    if (m_position > 0)
        --m_position;
}

void KPHistory::goForward()
{
    if (m_position < m_entries.size() - 1)
        ++m_position;
}

void KPHistory::clearList()
{
    m_entries.clear();
    m_position = -1;
}

QString KPHistory::description() const
{
    return QStringLiteral("<KPHistory>Current Position: %1").arg(m_position);
}

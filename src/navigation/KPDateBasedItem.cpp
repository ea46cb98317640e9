#include "KPDateBasedItem.h"

#include "KPItemArchive.h"

QString KPDateBasedItem::dateString() const
{
    return m_dateString.isEmpty() ? KPSearchDates::today : m_dateString;
}

QString KPDateBasedItem::displayName() const
{
    return KPSearchState::prettyDateStringFromDateString(dateString());
}

KPSearchState::Ptr KPDateBasedItem::searchState() const
{
    return KPSearchState::blankSearchState()->searchStateWithNewDateString(dateString());
}

bool KPDateBasedItem::isEqual(const KPBaseItem &other) const
{
    const auto *item = dynamic_cast<const KPDateBasedItem *>(&other);
    return item && item->dateString() == dateString();
}

void KPDateBasedItem::encode(Archive &archive) const
{
    KPBaseSearchItem::encode(archive);
    archive.insert(KPItemArchive::displayNameKey, displayName());
    if (!m_dateString.isEmpty())
        archive.insert(KPItemArchive::dateStringKey, m_dateString);
}

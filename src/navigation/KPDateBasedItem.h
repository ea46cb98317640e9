#pragma once

#include "KPBaseItem.h"

// Documents of a range of dates, by one of the keys of KPSearchDates. Threads: main.
class KPDateBasedItem : public KPBaseSearchItem
{
public:
    explicit KPDateBasedItem(const QString &dateString) : m_dateString(dateString) {}
    // Today where an older archive named none.
    QString dateString() const;
    int sourceListItemType() const override { return 15; }
    QString persistantID() const override
    {
        return QStringLiteral("SpotlightDate:") + dateString();
    }
    QString displayName() const override;
    QString itemImage() const override { return QStringLiteral("sl_dated.tif"); }
    KPSearchState::Ptr searchState() const override;
    bool isEqual(const KPBaseItem &other) const override;

protected:
    void encode(Archive &archive) const override;
    const char *className() const override { return "KPDateBasedItem"; }

private:
    QString m_dateString;
};

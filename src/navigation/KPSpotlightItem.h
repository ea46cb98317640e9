#pragma once

#include "KPBaseItem.h"

// A search that was typed or came from another program. Threads: main.
class KPSpotlightItem : public KPBaseSearchItem
{
public:
    explicit KPSpotlightItem(const QString &displayName) : m_displayName(displayName) {}
    int sourceListItemType() const override { return 11; }
    QString persistantID() const override { return QStringLiteral("Spotlight:") + m_displayName; }
    QString displayName() const override { return m_displayName; }
    QString itemImage() const override { return QStringLiteral("KPSpotlightSearch.tif"); }
    KPSearchState::Ptr searchState() const override;
    QString noDocumentsString() const override;
    QString noDocumentsSubString() const override;
    QString noDocumentsAfterSearchString() const override;
    QString noDocumentsAfterSearchSubString() const override;

protected:
    void encode(Archive &archive) const override;
    const char *className() const override { return "KPSpotlightItem"; }

private:
    QString m_displayName;
};

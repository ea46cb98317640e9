#include "KPSpotlightItem.h"

#include "KPItemArchive.h"

#include <QCoreApplication>

KPSearchState::Ptr KPSpotlightItem::searchState() const
{
    return KPSearchState::blankSearchState();
}

QString KPSpotlightItem::noDocumentsString() const
{
    return qtTrId("KPSpotlightNoDocuments");
}

QString KPSpotlightItem::noDocumentsSubString() const
{
    return qtTrId("KPSpotlightNoDocumentsHelp");
}

QString KPSpotlightItem::noDocumentsAfterSearchString() const
{
    return qtTrId("KPSpotlightNoDocumentsAfterSearch");
}

QString KPSpotlightItem::noDocumentsAfterSearchSubString() const
{
    return qtTrId("KPSpotlightNoDocumentsHelpAfterSearch");
}

void KPSpotlightItem::encode(Archive &archive) const
{
    KPBaseSearchItem::encode(archive);
    archive.insert(KPItemArchive::displayNameKey, m_displayName);
}

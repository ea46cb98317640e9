#include "KPFilesAndFoldersItem.h"

#include "KPItemArchive.h"

#include <QCoreApplication>

QString KPFilesAndFoldersItem::displayName() const
{
    return m_goDeep ? qtTrId("KPSourceMenuFilesAndFoldersDeepTitle")
                    : qtTrId("KPSourceMenuFilesAndFoldersTitle");
}

QString KPFilesAndFoldersItem::itemImage() const
{
    return m_goDeep ? QStringLiteral("KPMurnMode.tif") : QStringLiteral("KPFinderMode.tif");
}

KPSearchState::Ptr KPFilesAndFoldersItem::searchState() const
{
    return KPSearchState::blankSearchState()->searchStateWithNewFinderListing(true, m_goDeep);
}

void KPFilesAndFoldersItem::encode(Archive &archive) const
{
    KPBaseSearchItem::encode(archive);
    archive.insert(KPItemArchive::goDeepKey, PropertyValue::boolean(m_goDeep));
}

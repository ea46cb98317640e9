#include "KPLastImportItem.h"

#include "KPItemArchive.h"
#include "XPPath.h"

#include <QCoreApplication>

KPLastImportItem::KPLastImportItem(const KPSearchState::Ptr &fileListSearchState)
    : m_searchState(fileListSearchState)
{
}

QString KPLastImportItem::persistantID() const
{
    return QStringLiteral("KPLibraryLastImportItem");
}

QString KPLastImportItem::displayName() const
{
    const QStringList paths = m_searchState ? m_searchState->fileListSearch() : QStringList();
    if (paths.size() != 1)
        return qtTrId("KPLibraryLastImportItem");
    const QString text =
        m_searchState->isDeep() ? qtTrId("KPPlacesAllFiles") : qtTrId("KPPlacesAllFilesShallow");
    return text.arg(XPPath::fileName(paths.first()));
}

QString KPLastImportItem::itemImage() const
{
    return isSelectable() ? QStringLiteral("sl_lastImport.tif")
                          : QStringLiteral("sl_lastImport_d.tif");
}

KPSearchState::Ptr KPLastImportItem::searchState() const
{
    return m_searchState ? m_searchState : KPSearchState::blankSearchState();
}

bool KPLastImportItem::isEqual(const KPBaseItem &other) const
{
    const auto *item = dynamic_cast<const KPLastImportItem *>(&other);
    return item && item->searchState()->isEqualToSearchState(*searchState());
}

void KPLastImportItem::encode(Archive &archive) const
{
    KPBaseItem::encode(archive);
    if (m_searchState)
        archive.insert(KPItemArchive::searchStateKey, m_searchState->searchStateDictionary());
}

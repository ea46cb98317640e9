#include "KPFileTypeItems.h"

#include "KPFileType.h"
#include "KPFileTypeRegistry.h"
#include "KPItemArchive.h"

#include <QCoreApplication>

static KPSearchState::Ptr ofTypes(const QStringList &types)
{
    return KPSearchState::blankSearchState()->searchStateWithNewUTIs(
        KPTagName::arrayOfUTIsToKPTagNames(types));
}

QString KPStandardFileTypesItem::displayName() const
{
    return qtTrId("KPSourceMenuStandardFileTypesTitle");
}

KPSearchState::Ptr KPStandardFileTypesItem::searchState() const
{
    return ofTypes(KPFileTypeRegistry::instance().trackingUTIs());
}

QString KPAllFileTypesItem::displayName() const
{
    return qtTrId("KPSourceMenuAllFileTypesTitle");
}

KPSearchState::Ptr KPAllFileTypesItem::searchState() const
{
    return ofTypes({KPSearchState::treePrefix + KPFileType::itemUTI});
}

KPFileTypesItem::KPFileTypesItem(const QString &displayName, const QStringList &types)
    : m_displayName(displayName), m_types(types)
{
}

KPFileTypesItem::KPFileTypesItem(const KPFileTypeGroup &group)
    : m_displayName(group.displayName()), m_types(group.utiArray()),
      m_image(group.sourceListImage())
{
}

QString KPFileTypesItem::persistantID() const
{
    return QStringLiteral("FileTypes:") + m_types.join(u' ');
}

KPSearchState::Ptr KPFileTypesItem::searchState() const
{
    return ofTypes(m_types);
}

void KPFileTypesItem::encode(Archive &archive) const
{
    KPBaseSearchItem::encode(archive);
    archive.insert(KPItemArchive::displayNameKey, m_displayName);
    archive.insert(KPItemArchive::typesKey, m_types);
}

#include "KPBaseItem.h"

#include "KPItemArchive.h"

#include <QCoreApplication>

KPBaseItem::KPBaseItem(const QString &title) : m_title(title)
{
}

KPBaseItem::~KPBaseItem() = default;

QString KPBaseItem::persistantID() const
{
    return QStringLiteral("baseItem");
}

void KPBaseItem::setParentFolder(const Ptr &parent)
{
    if (parent.get() == this || (parent && parent->hasParentOrGrandParent(this)))
        return;
    m_parentFolder = parent;
}

bool KPBaseItem::hasParentOrGrandParent(const KPBaseItem *item) const
{
    for (const KPBaseItem *above = m_parentFolder.get(); above; above = above->m_parentFolder.get())
        if (above == item)
            return true;
    return false;
}

QString KPBaseItem::tooltipString(const QString &) const
{
    return {};
}

QString KPBaseItem::noDocumentsString() const
{
    return qtTrId("KPNoDocuments");
}

QString KPBaseItem::noDocumentsSubString() const
{
    return qtTrId("KPNoDocumentsHelpZel");
}

QString KPBaseItem::noDocumentsAfterSearchString() const
{
    return qtTrId("KPNoDocumentsAfterSearch");
}

QString KPBaseItem::noDocumentsAfterSearchSubString() const
{
    return qtTrId("KPNoDocumentsAfterSearchHelp");
}

Qt::DropAction KPBaseItem::validateDropOfType(Qt::DropActions, int, const KPBaseItem *,
                                              const QMimeData &) const
{
    return Qt::IgnoreAction;
}

bool KPBaseItem::acceptDrop(const QMimeData &, Qt::DropAction, int, const Ptr &)
{
    return false;
}

bool KPBaseItem::writeItemToPasteboard(QMimeData &) const
{
    return false;
}

KPBaseItem::Archive KPBaseItem::archive() const
{
    Archive archive;
    archive.insert(KPItemArchive::classKey, QString::fromLatin1(className()));
    encode(archive);
    return archive;
}

// NOLINTNEXTLINE(misc-no-recursion): an item is never above itself
void KPBaseItem::encode(Archive &archive) const
{
    if (!m_title.isEmpty() && m_title.isValidUtf16())
        archive.insert(KPItemArchive::titleKey, m_title);
    if (m_parentFolder)
        archive.insert(KPItemArchive::parentKey, m_parentFolder->archive());
}

bool KPBaseSearchItem::isEqual(const KPBaseItem &other) const
{
    return other.sourceListItemType() == sourceListItemType() &&
           other.persistantID() == persistantID();
}

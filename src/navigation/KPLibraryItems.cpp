#include "KPLibraryItems.h"

#include "KPDocPasteboard.h"

#include <QCoreApplication>
#include <QMimeData>
#include <typeinfo>

// Documents of the library, dropped onto the item itself. Files of elsewhere are not accepted.
static bool takesDocuments(int index, const QMimeData &pasteboard)
{
    return index == -1 && KPDocPasteboard::hasDocuments(pasteboard);
}

bool KPLibraryItem::isEqual(const KPBaseItem &other) const
{
    return typeid(*this) == typeid(other);
}

QString KPAllDocumentsItem::persistantID() const
{
    return QStringLiteral("KPAllDocumentsItemsSourceListItem");
}

QString KPAllDocumentsItem::displayName() const
{
    return qtTrId("KPAllDocumentsItemsSourceListItem");
}

KPSearchState::Ptr KPAllDocumentsItem::searchState() const
{
    return KPSearchState::blankSearchState();
}

QString KPTaggedItem::persistantID() const
{
    return QStringLiteral("KPLibraryTaggedFolder");
}

QString KPTaggedItem::displayName() const
{
    return qtTrId("KPLibraryTaggedFolder");
}

KPSearchState::Ptr KPTaggedItem::searchState() const
{
    return KPSearchState::blankSearchState()->searchStateWithNewTaggedFiles(true);
}

QString KPUntaggedItem::persistantID() const
{
    return QStringLiteral("KPLibraryUntaggedFolder");
}

QString KPUntaggedItem::displayName() const
{
    return qtTrId("KPLibraryUntaggedFolder");
}

KPSearchState::Ptr KPUntaggedItem::searchState() const
{
    return KPSearchState::blankSearchState()->searchStateWithNewUntaggedFiles(true);
}

QString KPManagedItem::persistantID() const
{
    return QStringLiteral("KPLibraryManaged");
}

QString KPManagedItem::displayName() const
{
    return qtTrId("KPMangedItemsSourceLabel");
}

KPSearchState::Ptr KPManagedItem::searchState() const
{
    return KPSearchState::blankSearchState()->searchStateWithNewManagedDocuments(true);
}

QString KPFlagItem::persistantID() const
{
    return QStringLiteral("KPLibraryFlaggedItem");
}

QString KPFlagItem::displayName() const
{
    return qtTrId("KPLibraryFlaggedItem");
}

KPSearchState::Ptr KPFlagItem::searchState() const
{
    return KPSearchState::blankSearchState()->searchStateWithNewTags({QStringLiteral("flagged")});
}

bool KPFlagItem::isEqual(const KPBaseItem &other) const
{
    return typeid(*this) == typeid(other);
}

Qt::DropAction KPFlagItem::validateDropOfType(Qt::DropActions possible, int index,
                                              const KPBaseItem *dragged,
                                              const QMimeData &pasteboard) const
{
    if (takesDocuments(index, pasteboard))
        return Qt::CopyAction;
    return KPBaseSearchItem::validateDropOfType(possible, index, dragged, pasteboard);
}

bool KPFlagItem::acceptDrop(const QMimeData &pasteboard, Qt::DropAction action, int index,
                            const Ptr &dragged)
{
    if (!takesDocuments(index, pasteboard))
        return KPBaseSearchItem::acceptDrop(pasteboard, action, index, dragged);
    xpGuiThread.assertHere();
    KPDoc::setFlagged(KPDocPasteboard::paths(pasteboard), true);
    return true;
}

QString KPHiddenItem::persistantID() const
{
    return QStringLiteral("KPLibraryHiddenItem");
}

QString KPHiddenItem::displayName() const
{
    return qtTrId("KPLibraryHiddenItem");
}

KPSearchState::Ptr KPHiddenItem::searchState() const
{
    return KPSearchState::blankSearchState()
        ->searchStateWithNewTags({QStringLiteral("hidden")})
        ->searchStateWithNewSearchUserTags(true);
}

bool KPHiddenItem::isEqual(const KPBaseItem &other) const
{
    return typeid(*this) == typeid(other);
}

Qt::DropAction KPHiddenItem::validateDropOfType(Qt::DropActions possible, int index,
                                                const KPBaseItem *dragged,
                                                const QMimeData &pasteboard) const
{
    if (takesDocuments(index, pasteboard))
        return Qt::CopyAction;
    return KPBaseItem::validateDropOfType(possible, index, dragged, pasteboard);
}

bool KPHiddenItem::acceptDrop(const QMimeData &pasteboard, Qt::DropAction action, int index,
                              const Ptr &dragged)
{
    if (!takesDocuments(index, pasteboard))
        return KPBaseItem::acceptDrop(pasteboard, action, index, dragged);
    xpGuiThread.assertHere();
    KPDoc::setHidden(KPDocPasteboard::paths(pasteboard), true);
    return true;
}

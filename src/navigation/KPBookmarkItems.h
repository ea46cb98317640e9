#pragma once

#include "KPBaseItem.h"
#include "KPBookmarks.h"

// Saved searches as rows of the source list and of the bookmarks panel. They read the list each
// time they are asked, so that a renamed one shows its new name.
// Threads: main. Ownership: the list must outlive them.

class KPBookmarkItem : public KPBaseSearchItem
{
public:
    KPBookmarkItem(KPBookmarks &bookmarks, const QString &identifier);
    const QString &identifier() const { return m_identifier; }
    const KPBookmark *bookmark() const { return m_bookmarks.find(m_identifier); } // null: gone
    int sourceListItemType() const override { return 22; }
    QString persistantID() const override { return QStringLiteral("Bookmark:") + m_identifier; }
    QString displayName() const override;
    QString itemImage() const override { return QStringLiteral("saved"); }
    QString tooltip() const override; // the search in words
    QStringList menu() const override;
    bool isDeletable() const override { return true; }
    bool isEditable() const override { return true; }
    KPSearchState::Ptr searchState() const override;
    bool writeItemToPasteboard(QMimeData &pasteboard) const override;

protected:
    KPBookmarks &m_bookmarks;

private:
    QString m_identifier;
};

// Takes saved searches and folders, locations, and documents, of which it makes a saved search.
class KPBookmarkFolderItem : public KPBookmarkItem
{
public:
    using KPBookmarkItem::KPBookmarkItem; // an empty identifier: the list itself
    int sourceListItemType() const override { return 23; }
    QString displayName() const override;
    QString itemImage() const override { return QStringLiteral("folder"); }
    QString tooltip() const override { return {}; }
    QStringList menu() const override;
    int numberOfChildren() const override;
    bool showsDisclosureTriangle() const override { return true; }
    bool isSelectable() const override { return false; }
    KPSearchState::Ptr searchState() const override { return nullptr; }
    Qt::DropAction validateDropOfType(Qt::DropActions possible, int index,
                                      const KPBaseItem *dragged,
                                      const QMimeData &pasteboard) const override;
    bool acceptDrop(const QMimeData &pasteboard, Qt::DropAction action, int index,
                    const Ptr &dragged) override;
    bool writeItemToPasteboard(QMimeData &pasteboard) const override;

    // What a drag of ours carries: the identifiers, and their stored form for another window.
    static void write(QMimeData &pasteboard, const KPBookmarks &bookmarks,
                      const QStringList &identifiers);
    static QStringList identifiersOf(const QMimeData &pasteboard);
    // What a drop of documents or of a location would save; nothing: it is something else.
    static std::optional<KPBookmark> madeOf(const QMimeData &pasteboard);
};

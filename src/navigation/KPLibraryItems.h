#pragma once

#include "KPBaseItem.h"

// The fixed rows of the library: each is one search, and any two rows of a class are equal.
// Threads: main.

class KPLibraryItem : public KPBaseSearchItem
{
public:
    using KPBaseSearchItem::KPBaseSearchItem;
    bool isEqual(const KPBaseItem &other) const override;
    QString itemImage() const override { return QStringLiteral("libraryGroupIcon.tif"); }
};

class KPAllDocumentsItem : public KPLibraryItem
{
public:
    using KPLibraryItem::KPLibraryItem;
    int sourceListItemType() const override { return 5; }
    QString persistantID() const override;
    QString displayName() const override;
    KPSearchState::Ptr searchState() const override;

protected:
    const char *className() const override { return "KPAllDocumentsItem"; }
};

class KPTaggedItem : public KPLibraryItem
{
public:
    using KPLibraryItem::KPLibraryItem;
    int sourceListItemType() const override { return 6; }
    QString persistantID() const override;
    QString displayName() const override;
    KPSearchState::Ptr searchState() const override;

protected:
    const char *className() const override { return "KPTaggedItem"; }
};

class KPUntaggedItem : public KPLibraryItem
{
public:
    using KPLibraryItem::KPLibraryItem;
    int sourceListItemType() const override { return 7; }
    QString persistantID() const override;
    QString displayName() const override;
    KPSearchState::Ptr searchState() const override;

protected:
    const char *className() const override { return "KPUntaggedItem"; }
};

class KPManagedItem : public KPLibraryItem
{
public:
    using KPLibraryItem::KPLibraryItem;
    int sourceListItemType() const override { return 17; }
    QString persistantID() const override;
    QString displayName() const override;
    KPSearchState::Ptr searchState() const override;

protected:
    const char *className() const override { return "KPManagedItem"; }
};

// Documents of the library that are dropped onto it are flagged.
class KPFlagItem : public KPBaseSearchItem
{
public:
    using KPBaseSearchItem::KPBaseSearchItem;
    int sourceListItemType() const override { return 13; }
    QString persistantID() const override;
    QString displayName() const override;
    QString itemImage() const override { return QStringLiteral("KPTag_flag.tif"); }
    KPSearchState::Ptr searchState() const override;
    bool isEqual(const KPBaseItem &other) const override;
    Qt::DropAction validateDropOfType(Qt::DropActions possible, int index,
                                      const KPBaseItem *dragged,
                                      const QMimeData &pasteboard) const override;
    bool acceptDrop(const QMimeData &pasteboard, Qt::DropAction action, int index,
                    const Ptr &dragged) override;

protected:
    const char *className() const override { return "KPFlagItem"; }
};

// Documents of the library that are dropped onto it are hidden.
class KPHiddenItem : public KPBaseItem
{
public:
    using KPBaseItem::KPBaseItem;
    int sourceListItemType() const override { return 12; }
    QString persistantID() const override;
    QString displayName() const override;
    QString itemImage() const override { return QStringLiteral("KPTag_hide.tif"); }
    KPSearchState::Ptr searchState() const override;
    bool isEqual(const KPBaseItem &other) const override;
    Qt::DropAction validateDropOfType(Qt::DropActions possible, int index,
                                      const KPBaseItem *dragged,
                                      const QMimeData &pasteboard) const override;
    bool acceptDrop(const QMimeData &pasteboard, Qt::DropAction action, int index,
                    const Ptr &dragged) override;

protected:
    const char *className() const override { return "KPHiddenItem"; }
};

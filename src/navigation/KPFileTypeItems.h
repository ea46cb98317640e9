#pragma once

#include "KPBaseItem.h"

class KPFileTypeGroup;

// Rows that stand for types of files. Threads: main.

// The types of all groups that are switched on.
class KPStandardFileTypesItem : public KPBaseSearchItem
{
public:
    using KPBaseSearchItem::KPBaseSearchItem;
    QString displayName() const override;
    KPSearchState::Ptr searchState() const override;

protected:
    const char *className() const override { return "KPStandardFileTypesItem"; }
};

// Whatever is a file.
class KPAllFileTypesItem : public KPBaseSearchItem
{
public:
    using KPBaseSearchItem::KPBaseSearchItem;
    QString displayName() const override;
    KPSearchState::Ptr searchState() const override;

protected:
    const char *className() const override { return "KPAllFileTypesItem"; }
};

// One type, or the types of a group.
class KPFileTypesItem : public KPBaseSearchItem
{
public:
    // Types as a group's entries: an identifier, or "tree_" and one.
    KPFileTypesItem(const QString &displayName, const QStringList &types);
    explicit KPFileTypesItem(const KPFileTypeGroup &group);
    const QStringList &types() const { return m_types; }
    int sourceListItemType() const override { return 8; }
    QString persistantID() const override;
    QString displayName() const override { return m_displayName; }
    QString itemImage() const override { return m_image; } // a resource
    KPSearchState::Ptr searchState() const override;

protected:
    void encode(Archive &archive) const override;
    const char *className() const override { return "KPFileTypesItem"; }

private:
    QString m_displayName;
    QStringList m_types;
    QString m_image;
};

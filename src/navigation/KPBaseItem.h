#pragma once

#include "KPSearchState.h"

#include <memory>
#include <optional>

class QMimeData;

// A row of the source list, or a step of the crumb trail: what it is called, how it looks, what it
// searches, and what may be dropped onto it. The defaults are those of a row that does nothing.
//
// Stored as a dictionary: its class under "class", and its fields by name. Pictures are named as
// the items name them; the views know what is drawn for a name.
// Threads: main. Ownership: shared; an item holds its parent, never its children.
class KPBaseItem
{
public:
    using Ptr = std::shared_ptr<KPBaseItem>;
    using Archive = PropertyValue::Dictionary;

    explicit KPBaseItem(const QString &title = {});
    virtual ~KPBaseItem();
    KPBaseItem(const KPBaseItem &) = delete;
    KPBaseItem &operator=(const KPBaseItem &) = delete;

    // --- What it is

    virtual int sourceListItemType() const { return 0; }
    virtual QString persistantID() const; // (spelled so)
    virtual QString displayName() const { return m_title; }
    virtual bool isEqual(const KPBaseItem &other) const { return this == &other; }
    virtual KPSearchState::Ptr searchState() const { return nullptr; }
    virtual std::optional<QStringList> foldersForKPFinder() const { return {}; }
    // Filters that are made while it is selected are stored under this identifier.
    virtual QString ownerForNewFiltersWhenThisItemIsSelected() const { return persistantID(); }
    virtual QString savedSearchPath() const { return {}; }
    virtual bool needToSave() const { return false; }
    virtual void saveParentToPrefs() {}

    const Ptr &parentFolder() const { return m_parentFolder; }
    // An item that is below this one cannot become its parent, and is refused.
    void setParentFolder(const Ptr &parent);
    bool hasParentOrGrandParent(const KPBaseItem *item) const;

    // --- How it looks

    virtual double rowHeight() const { return 20; } // points
    virtual QString itemImage() const { return {}; }
    virtual QByteArray newItemImageCG() const { return {}; } // a picture of its own, as SVG
    virtual QStringList menu() const { return {}; }          // ids of the texts of its commands
    virtual QString tooltip() const { return {}; }
    virtual QString tooltipString(const QString &path) const;
    // The name of the palette's role: the colour of what has the keyboard.
    virtual QString controlColorForDropping() const { return QStringLiteral("highlight"); }

    // --- What can be done with it

    virtual int numberOfChildren() const { return -1; } // -1: is no container
    virtual bool showsDisclosureTriangle() const { return false; }
    virtual bool isExpandable() const { return numberOfChildren() != -1; }
    virtual bool isDeletable() const { return false; }
    virtual bool isEditable() const { return false; }
    virtual bool isSelectable() const { return true; }
    virtual bool isGoDeepItem() const { return false; }
    virtual bool kpFinderAllItemsSelectable() const { return false; }
    virtual bool isEverywhereItem() const { return false; }

    // --- What the grid says where there is nothing

    virtual QString noDocumentsString() const;
    virtual QString noDocumentsSubString() const;
    virtual QString noDocumentsAfterSearchString() const; // the search was narrowed
    virtual QString noDocumentsAfterSearchSubString() const;

    // --- Dragging. `index` is the place among the children, -1 the item itself; `dragged` the
    // item that is dragged, null for other things.

    virtual Qt::DropAction validateDropOfType(Qt::DropActions possible, int index,
                                              const KPBaseItem *dragged,
                                              const QMimeData &pasteboard) const;
    // `action` is what validateDropOfType() answered.
    virtual bool acceptDrop(const QMimeData &pasteboard, Qt::DropAction action, int index,
                            const Ptr &dragged);
    virtual bool writeItemToPasteboard(QMimeData &pasteboard) const;

    // --- The stored form

    Archive archive() const;
    // Null: of a class that is not known.
    static Ptr unarchived(const Archive &archive);

protected:
    // The fields of a class, its bases' included.
    virtual void encode(Archive &archive) const;
    virtual const char *className() const { return "KPBaseItem"; }

private:
    QString m_title;
    Ptr m_parentFolder;
};

// The base of the items that stand for a search.
class KPBaseSearchItem : public KPBaseItem
{
public:
    using KPBaseItem::KPBaseItem;
    bool isEqual(const KPBaseItem &other) const override;

protected:
    const char *className() const override { return "KPBaseSearchItem"; }
};

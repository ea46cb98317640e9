#pragma once

#include "KPBaseItem.h"

// Where a search looks: one or several folders, or one of the places of KPSearchFolders
// ("KPQueryScopeEverywhere", …). Two of the same folders are equal, whatever they are called.
// Documents that are dropped onto a folder are moved or copied there, with filing's questions.
// Threads: main. No file call, but for what acceptDrop() begins.
class KPLocationItem : public KPBaseSearchItem
{
public:
    using Location = std::shared_ptr<KPLocationItem>;

    // Without a name it is called after its folder or place.
    explicit KPLocationItem(const QStringList &folders, const QString &displayName = {});
    static Location withFolder(const QString &folder);
    static Location everywhere();
    static Location searchFolders();
    // Of a state; null: it names no folders.
    static Location ofState(const KPSearchState &state);

    const QStringList &folders() const { return m_folders; }
    // The one folder that it stands for; nothing: it is several, or a place.
    std::optional<QString> singleFolder() const;
    // Where it is, for a title: the first folder of a place too.
    std::optional<QString> path() const;
    // The folder above; null: there is none.
    Location parentLocation() const;

    int sourceListItemType() const override { return 20; }
    QString persistantID() const override;
    QString displayName() const override;
    QString itemImage() const override;
    QString tooltip() const override;
    bool isEverywhereItem() const override;
    KPSearchState::Ptr searchState() const override; // all documents there
    std::optional<QStringList> foldersForKPFinder() const override { return m_folders; }
    bool isEqual(const KPBaseItem &other) const override;
    // Moves on request or where that is possible, else copies.
    Qt::DropAction validateDropOfType(Qt::DropActions possible, int index,
                                      const KPBaseItem *dragged,
                                      const QMimeData &pasteboard) const override;
    // Documents of the library are moved or copied into a folder; what comes from another program
    // becomes a document there, or in today's folder on the rows of filed documents.
    bool acceptDrop(const QMimeData &pasteboard, Qt::DropAction action, int index,
                    const Ptr &dragged) override;
    bool writeItemToPasteboard(QMimeData &pasteboard) const override;
    // What writeItemToPasteboard() wrote; null: something else.
    static Location fromPasteboard(const QMimeData &pasteboard);

protected:
    void encode(Archive &archive) const override;
    const char *className() const override { return "KPLocationItem"; }

private:
    std::optional<QString> folderForImports() const;
    QStringList m_folders;
    QString m_displayName;
};

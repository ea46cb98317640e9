#pragma once

#include "KPBaseItem.h"

// What was imported last: a list of files. Without one it is shown and cannot be selected.
// Threads: main.
class KPLastImportItem : public KPBaseItem
{
public:
    // initWithFileListSearchState:; null: nothing was imported yet.
    explicit KPLastImportItem(const KPSearchState::Ptr &fileListSearchState);
    int sourceListItemType() const override { return 16; }
    QString persistantID() const override;
    // Of one file: the place that it stands for.
    QString displayName() const override;
    QString itemImage() const override;
    bool isSelectable() const override { return m_searchState != nullptr; }
    std::optional<QStringList> foldersForKPFinder() const override { return {}; }
    KPSearchState::Ptr searchState() const override;
    bool isEqual(const KPBaseItem &other) const override;

protected:
    void encode(Archive &archive) const override;
    const char *className() const override { return "KPLastImportItem"; }

private:
    KPSearchState::Ptr m_searchState;
};

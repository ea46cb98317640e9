#pragma once

#include "KPBaseItem.h"

// All files of a folder as they lie on the disk: those in it, or all below it. Which folder, the
// location says. Threads: main.
class KPFilesAndFoldersItem : public KPBaseSearchItem
{
public:
    explicit KPFilesAndFoldersItem(bool goDeep) : m_goDeep(goDeep) {} // initWithDepth:
    bool goDeep() const { return m_goDeep; }
    QString displayName() const override;
    QString itemImage() const override;
    KPSearchState::Ptr searchState() const override;
    bool isGoDeepItem() const override { return m_goDeep; }
    bool kpFinderAllItemsSelectable() const override { return m_goDeep; }

protected:
    void encode(Archive &archive) const override;
    const char *className() const override { return "KPFilesAndFoldersItem"; }

private:
    bool m_goDeep;
};

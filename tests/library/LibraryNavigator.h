#pragma once

#include "KPNavigator.h"
#include "KPSearcher.h"

// What a library asks of the window around it.
struct LibraryNavigator : public KPNavigator
{
    explicit LibraryNavigator(KPSearcher &own) : m_searcher(own) {}
    KPSearcher &searcher() override { return m_searcher; }
    void setSearchStateAndUpdateUI(const KPSearchState::Ptr &state, bool, const SourceItem &,
                                   const LocationItem &) override
    {
        asked = state;
    }
    void doSearch(const QString &, bool, bool) override {}
    void showSimilarDocuments(const KPDoc::Docs &) override {}
    bool userIsCurrentlyTyping() const override { return false; }
    void manageWindowTitle() override {}
    void showTagMenu(KPTagName *, const QPoint &) override {}

    KPSearchState::Ptr asked;

private:
    KPSearcher &m_searcher;
};

#pragma once

#include "KPDocMetaData.h"
#include "KPNavigator.h"
#include "KPSearcher.h"

// A window that shows nothing but what the searcher finds.
class CloudNavigator : public KPNavigator
{
public:
    explicit CloudNavigator(IndexSource &source) : m_searcher(source)
    {
        KPDocMetaData::holdFilledValues();
    }
    KPSearcher &searcher() override { return m_searcher; }
    void setSearchStateAndUpdateUI(const KPSearchState::Ptr &state, bool addToHistory,
                                   const SourceItem &, const LocationItem &) override
    {
        m_searcher.setSearchState(KPSearcher::allDocumentsOf(state), addToHistory);
    }
    void doSearch(const QString &, bool, bool) override {}
    void showSimilarDocuments(const KPDoc::Docs &) override {}
    bool userIsCurrentlyTyping() const override { return false; }
    void manageWindowTitle() override {}
    void showTagMenu(KPTagName *, const QPoint &) override {}

private:
    KPSearcher m_searcher;
};

#pragma once

#include "IndexedFolder.h"
#include "KPCrumbController.h"
#include "KPSearcher.h"

#include <memory>

// The main window as views see it, over a searcher of its own: it keeps what was applied last.
class TestNavigator : public KPNavigator
{
public:
    explicit TestNavigator(IndexSource &source)
        : m_searcher(source), crumbs(std::make_unique<KPCrumbController>(*this))
    {
    }

    KPSearcher &searcher() override { return m_searcher; }
    void setSearchStateAndUpdateUI(const KPSearchState::Ptr &state, bool addToHistory,
                                   const SourceItem &source, const LocationItem &location) override
    {
        ++applied;
        wasRemembered = addToHistory;
        crumbs->setSourceItem(source);
        crumbs->setLocationItem(location);
        crumbs->addToRecentLocations(location);
        const KPSearchState::Ptr whole =
            KPCrumbController::stateInLocation(state ? state : m_searcher.searchState(), location);
        m_searcher.setSearchState(whole, addToHistory);
    }
    void doSearch(const QString &, bool, bool) override {}
    void showSimilarDocuments(const KPDoc::Docs &) override {}
    bool userIsCurrentlyTyping() const override { return false; }
    void manageWindowTitle() override {}
    void showTagMenu(KPTagName *, const QPoint &) override {}

    KPSearchState::Ptr state() const { return m_searcher.searchState(); }

    int applied = 0;
    bool wasRemembered = false;

private:
    KPSearcher m_searcher;

public:
    std::unique_ptr<KPCrumbController> crumbs;
};

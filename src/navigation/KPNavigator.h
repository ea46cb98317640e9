#pragma once

#include "KPDoc.h"
#include "KPSearchState.h"

#include <memory>

class KPBaseItem;
class KPLocationItem;
class KPSearcher;
class QPoint;

// The main window as views and items see it: "show this state", and what goes with it. The
// application installs the one implementation; a view asks here and is told by the searcher what
// holds, so that none keeps a state of its own.
// Threads: main. Ownership: items are shared with the history.
class KPNavigator
{
public:
    using SourceItem = std::shared_ptr<KPBaseItem>;
    using LocationItem = std::shared_ptr<KPLocationItem>;

    virtual ~KPNavigator();

    virtual KPSearcher &searcher() = 0;

    // The single place through which a search is applied. A null state: the present one is run
    // again; null items: the present ones stay. A state that names no folders looks in those of
    // the location.
    virtual void setSearchStateAndUpdateUI(const KPSearchState::Ptr &state, bool addToHistory,
                                           const SourceItem &sourceItem = {},
                                           const LocationItem &locationItem = {}) = 0;
    virtual void doSearch(const QString &text, bool enterStringIntoControl,
                          bool clearStateFirst) = 0;
    virtual void showSimilarDocuments(const KPDoc::Docs &documents) = 0;
    // The search field was typed into a moment ago: views keep still until the results are there.
    virtual bool userIsCurrentlyTyping() const = 0;
    virtual void manageWindowTitle() = 0;
    // What can be done with a tag, or a type, that was clicked somewhere.
    virtual void showTagMenu(KPTagName *tag, const QPoint &globalPosition) = 0;
};

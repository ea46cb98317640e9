#pragma once

#include "KPNavigator.h"
#include "KPRecentLocations.h"

#include <QObject>

// What the window shows beside its search: the source item that the search came from and the
// location that it looks in, with the commands that change them. The state itself is the
// searcher's alone; KPCrumbs says what it consists of.
//
// The navigator owns it, and calls setSourceItem() and setLocationItem() as it applies a search;
// the commands here apply theirs through the navigator.
// Threads: main. Ownership: the navigator must outlive it.
class KPCrumbController : public QObject
{
    Q_OBJECT

public:
    using SourceItem = KPNavigator::SourceItem;
    using LocationItem = KPNavigator::LocationItem;

    // Begins with all documents in the place that the settings name.
    explicit KPCrumbController(KPNavigator &navigator, QObject *parent = nullptr);
    ~KPCrumbController() override;

    const SourceItem &sourceItem() const { return m_sourceItem; } // never null
    void setSourceItem(const SourceItem &item);                   // null: stays
    const LocationItem &locationItem() const { return m_locationItem; }
    void setLocationItem(const LocationItem &item);
    void addToRecentLocations(const LocationItem &item);
    const QList<LocationItem> &recentLocations() const { return m_recent.locations(); }
    void clearRecentLocations();
    // The items that are always at hand.
    const SourceItem &taggedItem() const { return m_taggedItem; }
    const SourceItem &allDocumentsItem() const { return m_allDocumentsItem; }

    // What to hand to the searcher for a state and a location: a state looks in its own folders
    // where it names some, else in the location's. With `moves` the location's replace them.
    // A list of files has no location. Null without a state.
    static KPSearchState::Ptr stateInLocation(const KPSearchState::Ptr &state,
                                              const LocationItem &location, bool moves = false);

    // Commands.
    void spotlightSearchAction();  // what is typed, everywhere
    void useDefaultSearchAction(); // all documents of the home folder
    bool canGoUp() const;
    void parentLocationAction();
    void showLocation(const LocationItem &location);  // the same search there
    void showSource(const SourceItem &item);          // its search, in this location
    void applyState(const KPSearchState::Ptr &state); // remembered in the history

    // Where the search looks, for the window's title. Nothing: nowhere in particular.
    struct Place
    {
        QString path;
        bool isSingleFolder = false;
    };
    std::optional<Place> currentLocation() const;
    // Of the searcher, blank before the first.
    KPSearchState::Ptr searchState() const;
    KPNavigator &navigator() const { return m_navigator; }

    void writeOutState() const; // writeOutStateWhenQuiting
    // The items of the last session; null: none was stored.
    SourceItem storedSourceItem() const;
    LocationItem storedLocationItem() const;

Q_SIGNALS:
    void itemsChanged();
    void recentLocationsChanged();
    void canGoUpChanged(bool canGoUp);

private:
    KPNavigator &m_navigator;
    SourceItem m_taggedItem;
    SourceItem m_allDocumentsItem;
    SourceItem m_sourceItem;
    LocationItem m_locationItem;
    KPRecentLocations m_recent;
};

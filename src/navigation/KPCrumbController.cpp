#include "KPCrumbController.h"

#include "KPLibraryItems.h"
#include "KPSearchFolders.h"
#include "KPSearchStateKeys.h"
#include "KPSearcher.h"
#include "KPSpotlightItem.h"
#include "UserDefaults.h"

#include <QCoreApplication>

static const QString sourceItemKey = QStringLiteral("KPSourceItem");
static const QString locationItemKey = QStringLiteral("KPLocationItem");

KPCrumbController::KPCrumbController(KPNavigator &navigator, QObject *parent)
    : QObject(parent), m_navigator(navigator), m_taggedItem(std::make_shared<KPTaggedItem>()),
      m_allDocumentsItem(std::make_shared<KPAllDocumentsItem>()), m_sourceItem(m_allDocumentsItem),
      m_locationItem(KPLocationItem::withFolder(KPSearchFolders::homeFolder()))
{
}

KPCrumbController::~KPCrumbController() = default;

void KPCrumbController::setSourceItem(const SourceItem &item)
{
    if (!item || item == m_sourceItem)
        return;
    m_sourceItem = item;
    Q_EMIT itemsChanged();
}

void KPCrumbController::setLocationItem(const LocationItem &item)
{
    if (!item || item == m_locationItem)
        return;
    const bool couldGoUp = canGoUp();
    m_locationItem = item;
    Q_EMIT itemsChanged();
    if (canGoUp() != couldGoUp)
        Q_EMIT canGoUpChanged(canGoUp());
}

void KPCrumbController::addToRecentLocations(const LocationItem &item)
{
    if (m_recent.add(item))
        Q_EMIT recentLocationsChanged();
}

void KPCrumbController::clearRecentLocations()
{
    m_recent.clear();
    Q_EMIT recentLocationsChanged();
}

KPSearchState::Ptr KPCrumbController::stateInLocation(const KPSearchState::Ptr &state,
                                                      const LocationItem &location, bool moves)
{
    if (!state || !location || state->isFileListSearch())
        return state;
    const QStringList own = state->strings(KPSearchStateKey::constraintFolders);
    if (own == location->folders() || (!own.isEmpty() && !moves))
        return state;
    return state->searchStateWithNewContstraintFolders(location->folders());
}

KPSearchState::Ptr KPCrumbController::searchState() const
{
    const KPSearchState::Ptr state = m_navigator.searcher().searchState();
    return state ? state : KPSearchState::blankSearchState();
}

void KPCrumbController::spotlightSearchAction()
{
    const KPSearchState::Ptr present = searchState();
    const auto item = std::make_shared<KPSpotlightItem>(qtTrId("KPSpotlightSearch"));
    const LocationItem everywhere = KPLocationItem::everywhere();
    const KPSearchState::Ptr state = item->searchState()->searchStateWithNewSearchString(
        present->searchString(), present->searchContents(), present->searchMetaData(),
        present->searchFileNames());
    m_navigator.setSearchStateAndUpdateUI(stateInLocation(state, everywhere), true, item,
                                          everywhere);
}

void KPCrumbController::useDefaultSearchAction()
{
    const LocationItem home = KPLocationItem::withFolder(KPSearchFolders::homeFolder());
    m_navigator.setSearchStateAndUpdateUI(stateInLocation(m_allDocumentsItem->searchState(), home),
                                          true, m_allDocumentsItem, home);
}

bool KPCrumbController::canGoUp() const
{
    return m_locationItem->parentLocation() != nullptr;
}

void KPCrumbController::parentLocationAction()
{
    if (const LocationItem parent = m_locationItem->parentLocation())
        showLocation(parent);
}

void KPCrumbController::showLocation(const LocationItem &location)
{
    // A folder that the results were narrowed to belongs to the location that is left.
    KPSearchState::Ptr state = searchState();
    if (!location->isEqual(*m_locationItem))
        state = state->searchStateWithNewPostContstraintFolders({});
    if (state->isFileListSearch()) // chosen files are where they are: it is left for the folder
        state = KPSearchState::blankSearchState();
    m_navigator.setSearchStateAndUpdateUI(stateInLocation(state, location, true), true, nullptr,
                                          location);
}

void KPCrumbController::showSource(const SourceItem &item)
{
    if (const auto location = std::dynamic_pointer_cast<KPLocationItem>(item)) {
        m_navigator.setSearchStateAndUpdateUI(location->searchState(), true, m_allDocumentsItem,
                                              location);
        return;
    }
    m_navigator.setSearchStateAndUpdateUI(stateInLocation(item->searchState(), m_locationItem),
                                          true, item, nullptr);
}

void KPCrumbController::applyState(const KPSearchState::Ptr &state)
{
    // A place that stays keeps the name that it was given.
    LocationItem location = KPLocationItem::ofState(*state);
    if (location && location->isEqual(*m_locationItem))
        location = nullptr;
    m_navigator.setSearchStateAndUpdateUI(state, true, nullptr, location);
}

std::optional<KPCrumbController::Place> KPCrumbController::currentLocation() const
{
    const auto path = m_locationItem->path();
    if (!path)
        return {};
    return Place{*path, m_locationItem->singleFolder().has_value()};
}

void KPCrumbController::writeOutState() const
{
    UserDefaults &defaults = UserDefaults::standard();
    defaults.setValue(sourceItemKey, m_sourceItem->archive());
    // Files that were opened are not shown again, so their name must not stand over others.
    if (searchState()->isFileListSearch())
        defaults.remove(locationItemKey);
    else
        defaults.setValue(locationItemKey, m_locationItem->archive());
}

KPCrumbController::SourceItem KPCrumbController::storedSourceItem() const
{
    return KPBaseItem::unarchived(UserDefaults::standard().value(sourceItemKey).dictionary());
}

KPCrumbController::LocationItem KPCrumbController::storedLocationItem() const
{
    return std::dynamic_pointer_cast<KPLocationItem>(
        KPBaseItem::unarchived(UserDefaults::standard().value(locationItemKey).dictionary()));
}

// KPSearcher: the state and its way to the search thread and back.
#include "KPSearcher.h"

#include "KPSortedResults.h"
#include "UserDefaults.h"

#include <chrono>

using namespace std::chrono_literals;

const QString KPSearcher::resultsChanged = QStringLiteral("KPNotificationSearchResultsChanged");
const QString KPSearcher::stateChanged = QStringLiteral("KPNotificationSearchStateChanged");
const QString KPSearcher::lookMayHaveChanged =
    QStringLiteral("KPNotificationSearchStateMayHaveChangedLook");
const QString KPSearcher::done = QStringLiteral("KPNotificationSearchDone");
const QString KPSearcher::folderNumbersChanged =
    QStringLiteral("KPNotificationNumberOfItemsToDisplayInFoldersDidChange");
const QString KPSearcher::tagSetsChanged = QStringLiteral("KPTagSetsChanged");

static constexpr auto untilResultsAreSet = 10ms;
static constexpr auto untilLastResultsAreSet = 200ms;
static constexpr auto untilTheyAreShown = untilResultsAreSet + 2ms;
static constexpr auto untilTagsAreBuilt = 100ms;

static void post(const QString &name)
{
    XPNotificationCenter::instance().post(name);
}

KPSearcher::KPSearcher(IndexSource &source, const KPThreadedSearcher::Setup &setup, QObject *parent)
    : QObject(parent), m_threaded(std::make_unique<KPThreadedSearcher>(
                           source, static_cast<KPThreadedSearcher::Delegate *>(this), setup))
{
    m_setResults.setSingleShot(true);
    m_setResults.setTimerType(Qt::PreciseTimer);
    connect(&m_setResults, &QTimer::timeout, this, &KPSearcher::actuallySetResults);
    m_buildTags.setSingleShot(true);
    m_buildTags.setInterval(untilTagsAreBuilt);
    connect(&m_buildTags, &QTimer::timeout, this, &KPSearcher::buildTagSets);
    observeSettings();
    m_threaded->startSearchThread();
}

KPSearcher::~KPSearcher() = default;

void KPSearcher::observeSettings()
{
    // How a state looks depends on the first, what the query asks on the others.
    m_observations.push_back(UserDefaults::standard().addObserver(
        QStringLiteral("values.KPShowXMPKeywords"), [this](const PropertyValue &) {
            m_buildTags.start();
            post(lookMayHaveChanged);
            refresh(); // other keywords count and match
        }));
    for (const char *key :
         {"values.KMDMurn2ShowItemKeywords", "values.KPAutoImportOffice",
          "values.KPAutoImportiWork", "values.KPAutoImportPDFs", "values.KPFollowSymLinksGoDeep"})
        m_observations.push_back(UserDefaults::standard().addObserver(
            QLatin1String(key), [this](const PropertyValue &) { refresh(); }));
    auto &centre = XPNotificationCenter::instance();
    m_observations.push_back(
        centre.addObserver(KPDoc::deletedNotification, [this](const XPNotification &notification) {
            if (const auto *path = std::get_if<QString>(&notification.object))
                documentDeleted(*path);
        }));
    m_observations.push_back(
        centre.addObserver(QStringLiteral("KPNotificationFileSystemMayHaveChanged"),
                           [this](const XPNotification &) { metaDataHasChanged(); }));
}

void KPSearcher::metaDataHasChanged()
{
    if (needToRedoNonLiveSearches() && !m_isStopped)
        m_threaded->metaDataHasChanged();
}

// --- The state

void KPSearcher::setSearchStateObject(const KPSearchState::Ptr &state)
{
    m_searchState = state;
}

void KPSearcher::setSearchState(const KPSearchState::Ptr &state, bool addToHistory)
{
    setSearchStateObject(state);
    restartSearchFromScratch();
    if (addToHistory && state)
        Q_EMIT stateToRemember(state);
}

void KPSearcher::setSearchStateAddToHistoryIfChanged(const KPSearchState::Ptr &state)
{
    const bool isSame = state == m_searchState ||
                        (state && m_searchState && state->isEqualToSearchState(*m_searchState));
    setSearchState(state, !isSame);
}

KPSearchState::Ptr KPSearcher::entireSearchState() const
{
    if (!m_searchState)
        return nullptr;
    return m_searchState->searchStateWithNewSearchUserTags(tagTypeUserEntered())
        ->searchStateWithNewSearchReadOnlyKeywords(tagTypeKeywords());
}

KPSearchState::Ptr KPSearcher::allDocumentsOf(const KPSearchState::Ptr &state)
{
    if (!state || state->needToDoMDQuery() || state->isFinderListing() || state->isFileListSearch())
        return state;
    return state->searchStateWithNewSearchString(QStringLiteral("mdq:kMDItemFSName == *"), false,
                                                 false, true);
}

KPSearchState::Ptr KPSearcher::shownOf(const KPSearchState::Ptr &state)
{
    KPSearchState::Ptr all = allDocumentsOf(state);
    const QString hidden = KPTagName::hiddenUserTag()->displayName();
    // What has no tags is not hidden, and excluding a tag would end that mode.
    if (!all || all->isFileListSearch() || all->isShowingUntaggedDocuments() ||
        all->hasSearchTag(hidden) || all->hasExcludeTag(hidden))
        return all;
    return all->searchStateByAddingExcludeTag(hidden);
}

KPSearchState::Ptr KPSearcher::stateToChange(bool clearFirst) const
{
    return m_searchState && !clearFirst ? m_searchState : KPSearchState::blankSearchState();
}

void KPSearcher::addWithTag(const QString &tag, bool addToHistory)
{
    setSearchState(stateToChange(false)->searchStateByAddingTag(tag), addToHistory);
}

void KPSearcher::addExcludeTag(const QString &tag, bool addToHistory)
{
    setSearchState(stateToChange(false)->searchStateByAddingExcludeTag(tag), addToHistory);
}

void KPSearcher::clearTagName(const QString &tag, bool addToHistory)
{
    setSearchState(stateToChange(false)->searchStateByClearingTag(tag), addToHistory);
}

void KPSearcher::setFileTypeFilter(const KPSearchState::Tags &types, bool addToHistory,
                                   bool clearStateFirst)
{
    setSearchState(stateToChange(clearStateFirst)->searchStateWithNewUTIs(types), addToHistory);
}

void KPSearcher::setConstraintFolders(const QStringList &folders, bool addToHistory,
                                      bool clearStateFirst)
{
    setSearchState(stateToChange(clearStateFirst)->searchStateWithNewContstraintFolders(folders),
                   addToHistory);
}

void KPSearcher::setPostConstraintFolders(const QStringList &folders, bool addToHistory,
                                          bool clearStateFirst)
{
    setSearchState(
        stateToChange(clearStateFirst)->searchStateWithNewPostContstraintFolders(folders),
        addToHistory);
}

void KPSearcher::setShowTaggedDocuments(bool on, bool addToHistory)
{
    setSearchState(stateToChange(false)->searchStateWithNewTaggedFiles(on), addToHistory);
}

void KPSearcher::setShowUntaggedDocuments(bool on, bool addToHistory)
{
    setSearchState(stateToChange(false)->searchStateWithNewUntaggedFiles(on), addToHistory);
}

// --- Control

void KPSearcher::stop()
{
    m_isStopped = true;
    m_isSearching = false;
    m_onDeck.clear();
    m_threaded->killQuery();
    m_threaded->newSearchState(nullptr);
    m_searched = nullptr;
}

void KPSearcher::restart()
{
    m_isStopped = false;
    restartSearchAction();
}

void KPSearcher::refresh()
{
    if (m_isStopped || !m_searchState)
        return;
    forceNewSearchNextTime();
    restartSearchAction();
}

void KPSearcher::restartSearchFromScratch()
{
    m_isStopped = false;
    restartSearchAction();
}

void KPSearcher::forceNewSearchNextTime()
{
    m_forceNewSearch = true;
}

void KPSearcher::clearSearchTimers()
{
    m_setResults.stop();
    m_buildTags.stop();
}

bool KPSearcher::needToRedoNonLiveSearches() const
{
    return m_searchState && (m_searchState->isFinderListing() || m_searchState->isFileListSearch());
}

void KPSearcher::restartSearchAction()
{
    if (m_isStopped)
        m_forceNewSearch = false;
    clearSearchTimers();
    const KPSearchState::Ptr before = m_searched;
    KPSearchState::Ptr state = m_isStopped ? nullptr : entireSearchState();
    if (m_answersForView)
        state = shownOf(state);
    if (state && !state->isSearchGoodEnoughToPerformSearch())
        state = nullptr;
    if (state && std::exchange(m_forceNewSearch, false))
        m_threaded->forceNewSearchNextTime();
    const bool isNew = m_threaded->newSearchState(
        state, m_current ? m_current->documents.docs : std::make_shared<const KPDocArray>());
    m_searched = state;
    if (!state) {
        m_onDeck.clear();
        m_filesScanned = 0;
        setTheCurrentSearchResults(nullptr);
        searchDone({});
    } else if (isNew) {
        // Results of an older state that are on deck are not those of this one.
        m_onDeck.clear();
        m_isSearching = true;
        m_filesScanned = 0;
        m_problems.clear();
        Q_EMIT searchStarted();
    } else if (!m_onDeck.empty()) {
        m_setResults.start(untilResultsAreSet);
    }
    if (!before || !state || !before->isEqualToSearchState(*state))
        post(stateChanged);
    post(lookMayHaveChanged);
}

void KPSearcher::setResultsOrder(const KPSortOrder &order)
{
    if (m_order == order)
        return;
    m_order = order;
    m_threaded->setResultsOrder(std::make_unique<KPSortedResults>(order));
}

void KPSearcher::pathChanged(const QString &oldPath, const QString &newPath)
{
    m_threaded->pathChanged(oldPath, newPath);
}

void KPSearcher::documentDeleted(const QString &path)
{
    m_threaded->documentDeleted(path);
}

// --- Results

void KPSearcher::updatedResults(const KPResultsDelivery::Ptr &delivery)
{
    if (m_isStopped)
        return;
    m_onDeck.push_back(delivery);
    if (!m_setResults.isActive())
        m_setResults.start(untilResultsAreSet);
}

std::chrono::milliseconds KPSearcher::restBeforeDone() const
{
    return untilTheyAreShown;
}

void KPSearcher::actuallySetResults()
{
    for (const KPResultsDelivery::Ptr &delivery : std::exchange(m_onDeck, {}))
        setTheCurrentSearchResults(delivery);
}

void KPSearcher::setTheCurrentSearchResults(const KPResultsDelivery::Ptr &delivery)
{
    using Numbers = QHash<KPPooledString, qsizetype>;
    const bool hasNewNumbers = (delivery ? delivery->activeFolders : Numbers()) !=
                               (m_current ? m_current->activeFolders : Numbers());
    m_current = delivery;
    Q_EMIT delivered(delivery);
    post(resultsChanged);
    if (hasNewNumbers)
        foldersDone();
    if (!m_buildTags.isActive())
        m_buildTags.start();
}

// What is on deck comes first, by a timer that leaves the last deliveries time to come together.
void KPSearcher::searchDone(const QStringList &problems)
{
    m_isSearching = false;
    m_problems = problems;
    post(done);
    if (!m_onDeck.empty())
        m_setResults.start(untilLastResultsAreSet);
    Q_EMIT finished(problems);
}

void KPSearcher::foldersDone()
{
    post(folderNumbersChanged);
}

void KPSearcher::fileListSearchProgress(qint64 filesScanned)
{
    m_filesScanned = filesScanned;
    Q_EMIT fileListProgress(filesScanned);
}

const KPDocArray &KPSearcher::currentSearchResults() const
{
    static const KPDocArray none;
    return m_current ? *m_current->documents.docs : none;
}

bool KPSearcher::currentSearchIsMaxxedOut() const
{
    return m_current && (m_current->isMaxxedOutSpotlight || m_current->isMaxxedOutFolder);
}

bool KPSearcher::currentSearchIsMaxxedOutGoDeepSearch() const
{
    return m_current && m_current->isMaxxedOutFolder;
}

bool KPSearcher::bigGoDeepSearchInProgress() const
{
    return m_isSearching && m_searched && m_searched->isFinderListing() && m_searched->isDeep();
}

qsizetype KPSearcher::numberOfItemsInFolder(const QString &folder) const
{
    bool isKnown = false;
    const KPPooledString pooled = KPPool::existingString(folder, &isKnown);
    return m_current && isKnown ? m_current->activeFolders.value(pooled) : 0;
}

KPSearcher::Bookmark KPSearcher::currentSearchAsBookmark(const QString &title) const
{
    return {title, m_searchState ? m_searchState->searchStateDictionary()
                                 : KPSearchState::SavedDictionary()};
}

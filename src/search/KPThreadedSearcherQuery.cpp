// KPThreadedSearcher: the query, on the search thread.
#include "KPDocCache.h"
#include "KPFolderListing.h"
#include "KPThreadedSearcher.h"
#include "XPPath.h"

#include <QTimer>
#include <array>

// Results at which showing all of them at once is not quick any more.
static constexpr qsizetype manyResults = 1000;
static constexpr double unlimited = 1000; // seconds
static constexpr std::array passBudgets = {0.25, 5.5, 10.0, 10.0, 10.0, 15.0, 20.0, 20.0};
// Results of which the index's values are taken over what the attribute caches know.
static constexpr qsizetype fewResults = 150;
static constexpr size_t rowsAReading = 64;

MDQuery::BatchingParameters KPThreadedSearcher::defaultBatchingParams(IndexSource &source)
{
    static const MDQuery::BatchingParameters parameters = [&] {
        const auto probe =
            MDQuery::create(source, QStringLiteral("kMDItemDisplayName == a Search"));
        if (probe)
            return (*probe)->batchingParameters();
        MDQuery::BatchingParameters fallback;
        fallback.firstMaxCount = 1000;
        fallback.progressMaxCount = 1000;
        fallback.updateMaxMs = 1000;
        return fallback;
    }();
    return parameters;
}

// --- Starting and ending

void KPThreadedSearcher::startMDQuery(const QString &text, const QStringList &scope)
{
    cleanUpMDQuery();
    {
        const XPLocker lock(m_mutex);
        m_mdQueryString = text;
        m_mdQueryScope = scope;
    }
    {
        const XPLocker lock(m_deletedMutex);
        m_recentlyDeletedPaths.clear();
    }
    m_filter = std::make_unique<KPIndexFilter>(m_searchStateInUse);
    m_itemsOnly = !m_setup.makesRecords && !m_setup.live && !m_filter->needsRecord();
    const KPIndexFilter::Scope &places = m_filter->scope();
    if (m_filter->findsNothing() || (places.folders.isEmpty() && !places.everywhere))
        return;
    auto query =
        MDQuery::create(m_source, m_filter->text(), {QStringLiteral("kMDItemDisplayName")});
    if (!query) {
        m_problems.append(qtTrId("KPSearchRefused").arg(query.error().message));
        return;
    }
    m_mdQuery = *std::move(query);
    m_mdQuery->setMaxCount(m_setup.firstMaximum);
    m_mdQuery->setBatchingParameters(defaultBatchingParams(m_source));
    connect(m_mdQuery.get(), &MDQuery::progress, m_onThread,
            [this] { guard([this] { progressMDQuery(); }); });
    connect(m_mdQuery.get(), &MDQuery::finished, m_onThread,
            [this] { guard([this] { finishedMDQuery(); }); });
    connect(m_mdQuery.get(), &MDQuery::updated, m_onThread,
            [this](const auto &added, const auto &changed, const auto &removed) {
                guard([&] { updatedMDQuery(added, changed, removed); });
            });
    if (!places.everywhere)
        m_mdQuery->setSearchScope(KPIndexFilter::reduced(places.folders));
    m_mdQuery->setMaxCount(m_setup.maximum); // this one counts
    m_passTimer.reset();
    m_mdQuery->execute(m_setup.live ? MDQuery::Options(MDQuery::WantsUpdates) : MDQuery::Options());
}

void KPThreadedSearcher::cleanUpMDQuery()
{
    m_mdQuery.reset();
    m_removalTimer->stop();
    m_set.clear();
    m_docCache = {};
    m_noDocCache = {};
    m_waitingItems = {};
    m_foundItems.clear();
    m_roots.clear();
    m_queued = 0;
    m_pass = 0;
    m_pendingProgressCallNeeded = false;
    m_maxxedOutSpotlight = false;
    m_isListingComplete = false;
    m_listing.reset();
    const XPLocker lock(m_mutex);
    m_mdQueryString.clear();
    m_mdQueryScope.clear();
}

// Has all results judged once more.
bool KPThreadedSearcher::judgesAgain()
{
    if (!m_mdQuery || m_itemsOnly)
        return false;
    m_waitingItems.clear();
    for (qsizetype i = 0; i < m_mdQuery->resultCount(); ++i)
        m_waitingItems.push_back(m_mdQuery->itemAt(i));
    m_queued = m_mdQuery->resultCount();
    m_noDocCache.clear();
    m_pass = 0;
    m_passTimer.reset();
    return true;
}

// --- What the query says

void KPThreadedSearcher::progressMDQuery()
{
    progressOrFinishedMDResults();
}

void KPThreadedSearcher::finishedMDQuery()
{
    if (isGivenUp())
        return;
    progressOrFinishedMDResults();
    if (!isGivenUp())
        finishedOrProgressBaseQuery(true);
}

void KPThreadedSearcher::updatedMDQuery(const QList<IndexItem> &added,
                                        const QList<IndexItem> &changed,
                                        const QList<IndexItem> &removed)
{
    if (isGivenUp())
        return;
    learnRoots();
    bool isNews = false;
    for (qsizetype i = 0; i < changed.size(); i += rowsAReading) {
        const auto count = std::min<size_t>(rowsAReading, static_cast<size_t>(changed.size() - i));
        for (const Row &row : rows(changed.data() + i, count)) {
            if (!row.path.isEmpty())
                isNews = takeChangedRow(row) || isNews;
            else
                forget(row.item);
        }
    }
    for (const IndexItem item : removed)
        forget(item);
    if (!removed.isEmpty()) {
        m_pendingProgressCallNeeded = true;
        m_removalTimer->start();
    }
    m_waitingItems.insert(m_waitingItems.end(), added.begin(), added.end());
    m_queued = m_mdQuery->resultCount();
    m_pass = 0;
    m_passTimer.reset();
    if (!added.isEmpty())
        progressOrFinishedMDResults();
    else if (isNews)
        finishedOrProgressBaseQuery(true);
}

void KPThreadedSearcher::delayedProgressOrFinishedResults()
{
    if (m_pendingProgressCallNeeded && m_mdQuery && !isGivenUp())
        progressOrFinishedMDResults();
}

void KPThreadedSearcher::forget(IndexItem item)
{
    m_noDocCache.remove(item);
    if (KPDoc *doc = m_docCache.take(item))
        m_set.remove(doc);
}

// --- Passes

void KPThreadedSearcher::progressOrFinishedMDResults()
{
    m_pendingProgressCallNeeded = false;
    learnRoots();
    const qsizetype count = m_mdQuery->resultCount();
    m_maxxedOutSpotlight = (m_setup.maximum > 0 && count == m_setup.maximum) ||
                           (m_setup.firstMaximum > 0 && count >= m_setup.firstMaximum);
    m_isSmall = count < fewResults;
    for (; m_queued < count; ++m_queued)
        m_waitingItems.push_back(m_mdQuery->itemAt(m_queued));
    const bool isComplete = m_mdQuery->isGatheringComplete();
    if (count < manyResults && isComplete)
        m_pass = passBudgets.size();
    for (;;) {
        const double budget = m_pass < passBudgets.size() ? passBudgets[m_pass] : unlimited;
        const bool isAll = processMDResults(budget);
        if (isGivenUp())
            return;
        // More comes at once, into the same pass. The first of another search are shown before:
        // nobody waits for all. (The same search, run again, would lose its place by that.)
        if (!std::exchange(m_showsFirst, false) && isAll && !isComplete)
            return;
        finishedOrProgressBaseQuery(isAll);
        if (isAll)
            return;
        ++m_pass;
        m_passTimer.reset();
    }
}

// False: the time was over before all were looked at.
bool KPThreadedSearcher::processMDResults(double budget)
{
    std::vector<IndexItem> items;
    while (!m_waitingItems.empty()) {
        const size_t count = std::min(rowsAReading, m_waitingItems.size());
        items.assign(m_waitingItems.begin(),
                     m_waitingItems.begin() + static_cast<std::ptrdiff_t>(count));
        for (const Row &row : rows(items.data(), items.size())) {
            if (isGivenUp() || m_passTimer.elapsedSeconds() > budget)
                return false;
            m_waitingItems.pop_front();
            takeRow(row, false);
        }
    }
    return true;
}

// All in one look; what they lead to is done without.
std::vector<KPThreadedSearcher::Row> KPThreadedSearcher::rows(const IndexItem *items,
                                                              size_t count) const
{
    std::vector<Row> rows(count);
    const bool wantsValues = !m_itemsOnly || m_filter->hidesUnreadableTags();
    const IndexLook look(m_source);
    for (size_t i = 0; i < count; ++i) {
        Row &row = rows[i];
        row.item = items[i];
        const auto indexed = look.at(row.item);
        if (!indexed)
            continue;
        row.path = indexed->path();
        row.info = indexed->info();
        if (row.info.isDirectory())
            row.type = indexed->type();
        if (wantsValues)
            row.values = KPDocValues::ofRow(*indexed);
    }
    return rows;
}

void KPThreadedSearcher::takeRow(const Row &row, bool isChanged)
{
    if (row.path.isEmpty() || m_noDocCache.contains(row.item))
        return;
    if (m_docCache.contains(row.item)) {
        takeChangedRow(row);
        return;
    }
    KPResultCounts::Values counted;
    KPDoc *doc = mdQueryItemToDocCreate(row, &counted, isChanged);
    if (doc == nullptr) {
        if (!m_itemsOnly)
            m_noDocCache.insert(row.item);
        return;
    }
    m_docCache.insert(row.item, doc);
    m_set.add(doc, counted);
}

KPDoc *KPThreadedSearcher::mdQueryItemToDocCreate(const Row &row, KPResultCounts::Values *counted,
                                                  bool isChanged)
{
    const QString path = XPPath::decode(row.path);
    if (!m_filter->mayHold(row.path, path, row.info, row.type) ||
        (m_filter->hidesUnreadableTags() && row.values.hasUnreadableTags()))
        return nullptr;
    if (m_itemsOnly) {
        m_foundItems.push_back(row.item);
        return nullptr;
    }
    const KPPooledString pooled = KPPool::pooledString(path);
    if (isLeftOut(row, pooled))
        return nullptr;
    KPDoc *doc = KPDocCache::docAtPath(pooled, &row.info);
    if (doc == nullptr || !m_filter->passes(*doc))
        return nullptr;
    // Beyond their limit the caches hear of no change, so what changed replaces what they know.
    *counted = row.values.fill(pooled, m_isSmall || isChanged ? KPDocMetaData::Known::Replaced
                                                              : KPDocMetaData::Known::Kept);
    counted->type = doc->utiTagName();
    counted->facts = KPResultCounts::Values::factsOf(row.info);
    return doc;
}

// What was deleted stays out although the index may tell of it once more; not what came back (out
// of the trash, say): of that the disk is asked, as the index may be late.
bool KPThreadedSearcher::isLeftOut(const Row &row, KPPooledString path)
{
    {
        const XPLocker lock(m_deletedMutex);
        if (!m_recentlyDeletedPaths.contains(path))
            return false;
    }
    const auto there = XPFileInfo::read(XPPath::decode(row.path));
    if (!there || there->inode != row.info.inode)
        return true;
    const XPLocker lock(m_deletedMutex);
    m_recentlyDeletedPaths.remove(path);
    return false;
}

// True: something is to be told.
bool KPThreadedSearcher::takeChangedRow(const Row &row)
{
    KPDoc *before = m_docCache.value(row.item);
    if (before != nullptr && before->isGone()) {
        forget(row.item); // a record does not come back, its file may
        before = nullptr;
    }
    if (before == nullptr) {
        m_noDocCache.remove(row.item);
        takeRow(row, true);
        return m_docCache.contains(row.item);
    }
    // The record goes with its file.
    const KPPooledString path = KPPool::pooledString(XPPath::decode(row.path));
    if (before->pooledPath() != path)
        before->setFilePath(path.toString(), &row.info);
    KPResultCounts::Values counted;
    KPDoc *doc = mdQueryItemToDocCreate(row, &counted, true);
    if (doc == before)
        return m_set.change(doc, counted);
    m_docCache.remove(row.item);
    if (doc != nullptr) {
        m_docCache.insert(row.item, doc);
        m_set.add(doc, counted);
    } else {
        m_noDocCache.insert(row.item);
    }
    m_set.remove(before);
    return true;
}

// Folders may come to be indexed, or cease to be, while a search everywhere lives.
void KPThreadedSearcher::learnRoots()
{
    if (!m_filter->scope().everywhere)
        return;
    QStringList paths;
    {
        const IndexLook look(m_source);
        if (m_roots == look.roots())
            return;
        m_roots = look.roots();
        for (const IndexItem root : m_roots) {
            if (const auto row = look.at(root))
                paths.append(XPPath::decode(row->path()));
        }
    }
    m_filter->setRoots(paths);
}

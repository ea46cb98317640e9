// KPThreadedSearcher: listings, and what is delivered, on the search thread.
#include "KPFolderListing.h"
#include "KPIndexCoverage.h"
#include "KPSearchFolders.h"
#include "KPThreadedSearcher.h"
#include "XPPath.h"
#include "XPVolumes.h"

// Between two deliveries of a listing that goes on.
static constexpr double moreUntilUpdate = 9.5;
static constexpr qint64 callsAClockLook = 100;

void KPThreadedSearcher::refreshDBDocsThatPassSearch()
{
    m_isListingComplete = false;
    m_listing.reset();
    m_set.clear();
    KPFolderListing::Setup setup;
    setup.state = m_searchStateInUse;
    setup.live = m_setup.live;
    setup.readsValues = m_setup.countsTags;
    setup.maximum = m_setup.firstMaximum;
    setup.isAbandoned = [this] { return m_abandonListing || isGivenUp(); };
    setup.looked = [this] { allowPartialUpdate(); };
    setup.found = [this](KPDoc *doc, const auto &values) { m_set.add(doc, values); };
    setup.changed = [this](KPDoc *doc, const auto &values) { m_set.change(doc, values); };
    setup.gone = [this](KPDoc *doc) { m_set.remove(doc); };
    m_listing = std::make_unique<KPFolderListing>(setup);
    connect(m_listing.get(), &KPFolderListing::updated, m_onThread, [this] {
        guard([this] {
            // What was waited for is there: what was said of it does not hold any more.
            if (!m_listing->isWaiting() && std::exchange(m_wasToldToWait, false))
                m_wasToldDone = false;
            if (!isGivenUp())
                finishedOrProgressBaseQuery(true);
        });
    });
    m_isListingComplete = m_listing->start();
    m_doUpdatesDuringManualSearch = false;
    if (m_searchStateInUse->isFileListSearch()) {
        Message message;
        message.scanned = m_listing->scannedCount();
        post(message);
    }
}

void KPThreadedSearcher::allowPartialUpdate()
{
    static std::atomic<qint64> calls = 0;
    if (!m_doUpdatesDuringManualSearch || ++calls % callsAClockLook != 0 ||
        m_timer.elapsedSeconds() <= m_delayUntilUpdate)
        return;
    m_timer.reset();
    m_delayUntilUpdate += moreUntilUpdate;
    if (m_searchStateInUse->isFileListSearch() && m_listing) {
        Message message;
        message.scanned = m_listing->scannedCount();
        post(message);
    }
    finishedOrProgressBaseQuery(false);
}

void KPThreadedSearcher::finishedOrProgressBaseQuery(bool done)
{
    if (isGivenUp() || !m_searchStateInUse)
        return;
    auto delivery = std::make_shared<KPResultsDelivery>();
    delivery->state = m_searchStateInUse;
    {
        QSet<KPPooledString> deleted;
        {
            const XPLocker lock(m_deletedMutex);
            deleted = m_recentlyDeletedPaths;
        }
        m_set.fillDelivery(*delivery, deleted);
    }
    delivery->items = std::exchange(m_foundItems, {});
    delivery->isMaxxedOutSpotlight = m_maxxedOutSpotlight;
    delivery->isMaxxedOutFolder = m_listing && m_listing->isMaxxedOut();
    // A volume that does not answer holds up nobody who follows the results anyway.
    const bool isWaiting = m_listing && m_listing->isWaiting();
    m_wasToldToWait = m_wasToldToWait || isWaiting;
    delivery->isDone =
        done && (!m_mdQuery || m_mdQuery->isGatheringComplete()) && (m_setup.live || !isWaiting);
    const bool isNewlyDone = delivery->isDone && !std::exchange(m_wasToldDone, delivery->isDone);
    if (delivery->isDone)
        delivery->problems = currentProblems();
    if (isGivenUp())
        return;
    const bool isNews = !delivery->difference.isEmpty() || !delivery->rows.isEmpty() ||
                        !delivery->items.empty() || isNewlyDone;
    Message message;
    message.isDone = isNewlyDone;
    message.problems = delivery->problems;
    message.delivery = std::move(delivery);
    if (isNews)
        post(std::move(message));
}

// None is left, or the entries of the state stand for no folder at all. A volume that may hang is
// not asked.
static bool areFoldersGone(const QStringList &folders)
{
    const bool areNear = std::none_of(folders.begin(), folders.end(), [](const QString &folder) {
        return XPVolumes::isOnSlowVolume(folder);
    });
    return folders.isEmpty() || (areNear && KPSearchFolders::instance().allAreGone(folders));
}

QStringList KPThreadedSearcher::currentProblems() const
{
    if (m_listing)
        return m_listing->problems();
    if (!m_filter || m_filter->findsNothing())
        return m_problems;
    const KPIndexFilter::Scope &scope = m_filter->scope();
    QStringList problems = m_problems;
    for (const QString &path : scope.folders + scope.uncovered) {
        if (const QString problem = KPIndexCoverage::problem(m_source, path); !problem.isEmpty())
            problems.append(problem);
    }
    if (problems.isEmpty() && !scope.everywhere && areFoldersGone(scope.folders))
        problems.append(qtTrId("KPIndexSearchWithoutFolder"));
    return problems + unreadableDocuments();
}

// Those that may be missing, as what the state asks of them cannot be read.
QStringList KPThreadedSearcher::unreadableDocuments() const
{
    const auto filter = m_mdQuery ? m_filter->unreadable() : nullptr;
    if (!filter)
        return {};
    const auto query = MDQuery::create(m_source, filter->text());
    if (!query)
        return {};
    (*query)->setSearchScope(m_filter->scope().folders);
    (*query)->execute(MDQuery::Synchronous);
    std::vector<IndexItem> items;
    for (qsizetype i = 0; i < (*query)->resultCount(); ++i)
        items.push_back((*query)->itemAt(i));
    QStringList problems;
    for (const IndexItem item : items) {
        if (m_docCache.contains(item))
            continue;
        KPDocValues values;
        QByteArray path;
        XPFileInfo info;
        QString type;
        {
            const IndexLook look(m_source);
            const auto row = look.at(item);
            if (!row)
                continue;
            path = row->path();
            info = row->info();
            type = row->type();
            values = KPDocValues::ofRow(*row);
        }
        const QString text = XPPath::decode(path);
        if (filter->mayHold(path, text, info, type))
            problems.append(text + QStringLiteral(": ") + values.problem());
    }
    return problems;
}

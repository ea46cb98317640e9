#include "KPFolderFollower.h"

#include "KPBookmarks.h"
#include "KPCrumbController.h"
#include "KPLocationItem.h"
#include "KPSearchFolders.h"
#include "KPSearchStateKeys.h"
#include "KPSearcher.h"
#include "XPInBackground.h"

// Changes come in groups: a start, a folder of saved searches that is imported.
static constexpr std::chrono::seconds untilRemembered{2};
// Each key that is typed is a search.
static constexpr std::chrono::milliseconds untilFollowed{200};

KPFolderFollower::KPFolderFollower(KPCrumbController &controller, const KPBookmarks &bookmarks,
                                   QObject *parent)
    : QObject(parent), m_controller(controller), m_bookmarks(bookmarks)
{
    m_remember.setSingleShot(true);
    m_remember.setInterval(untilRemembered);
    connect(&m_remember, &QTimer::timeout, this, &KPFolderFollower::remember);
    m_follow.setSingleShot(true);
    m_follow.setInterval(untilFollowed);
    connect(&m_follow, &QTimer::timeout, this, &KPFolderFollower::follow);
    const auto soon = qOverload<>(&QTimer::start);
    connect(&bookmarks, &KPBookmarks::changed, &m_remember, soon);
    connect(&controller, &KPCrumbController::recentLocationsChanged, &m_remember, soon);
    for (const QString &notice :
         {KPSearcher::stateChanged, KPSearchFolders::fileSystemMayHaveChanged})
        m_observations.push_back(XPNotificationCenter::instance().addObserver(
            notice, [this](const XPNotification &) { m_follow.start(); }));
    m_remember.start();
}

KPFolderFollower::~KPFolderFollower() = default;

static QStringList foldersOf(const KPSearchState::Ptr &state)
{
    return state ? state->strings(KPSearchStateKey::constraintFolders) : QStringList();
}

KPSearchState::Ptr KPFolderFollower::stateNow(const KPSearchState::Ptr &state)
{
    const QStringList folders = foldersOf(state);
    const QStringList now = KPSearchFolders::instance().foldersNow(folders);
    return now == folders ? state : state->searchStateWithNewContstraintFolders(now);
}

void KPFolderFollower::remember()
{
    QStringList folders;
    for (const KPBookmarks::Named &each : m_bookmarks.all())
        folders += foldersOf(each.bookmark->searchState());
    for (const auto &location : m_controller.recentLocations())
        folders += location->folders();
    folders.removeDuplicates();
    const auto work = [folders] {
        KPSearchFolders::instance().rememberFolders(folders);
        return true;
    };
    xpInBackground(this, work, [](bool) {});
}

void KPFolderFollower::follow()
{
    const QStringList folders = foldersOf(m_controller.searchState());
    if (folders.isEmpty())
        return;
    xpInBackground(
        this, [folders] { return KPSearchFolders::instance().foldersNow(folders); },
        [this, folders](const QStringList &now) { moved(folders, now); });
}

void KPFolderFollower::moved(const QStringList &before, const QStringList &now)
{
    const KPSearchState::Ptr state = m_controller.searchState();
    if (now == before || foldersOf(state) != before) // another search was shown meanwhile
        return;
    const KPSearchState::Ptr followed = state->searchStateWithNewContstraintFolders(now);
    m_controller.navigator().setSearchStateAndUpdateUI(followed, false, nullptr,
                                                       KPLocationItem::ofState(*followed));
}

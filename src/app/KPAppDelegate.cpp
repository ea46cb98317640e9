#include "KPAppDelegate.h"

#include "KPAppServices.h"
#include "KPBadgeCache.h"
#include "KPController.h"
#include "KPCrashHandler.h"
#include "KPCrashReports.h"
#include "KPDocCache.h"
#include "KPDocIcons.h"
#include "KPDocPrefs.h"
#include "KPDropZoneDelegate.h"
#include "KPFileTypeRegistry.h"
#include "KPFilingCommands.h"
#include "KPFilingUpkeep.h"
#include "KPIndexSession.h"
#include "KPLastImport.h"
#include "KPLaunchSettings.h"
#include "KPPreferencesWindow.h"
#include "KPProgress.h"
#include "KPPrompts.h"
#include "KPQuickLook.h"
#include "KPSearchFolders.h"
#include "KPSearcher.h"
#include "KPSidePanels.h"
#include "KPStatusItem.h"
#include "KPTagBackup.h"
#include "KPUntaggedBadge.h"
#include "KPWelcome.h"
#include "Karvex.h"
#include "KarvexBackupFile.h"
#include "KarvexPrefs.h"
#include "KarvexSync.h"
#include "UserDefaults.h"
#include "XPApplicationBus.h"
#include "XPDropZoneController.h"
#include "XPFiledDocuments.h"
#include "XPFolders.h"
#include "XPGlobalShortcut.h"
#include "XPLog.h"
#include "XPMoveRecovery.h"
#include "XPPath.h"

#include <QApplication>
#include <QMimeData>
#include <QTimer>
#include <unistd.h>

using namespace std::chrono_literals;

static constexpr std::chrono::seconds longestWait = 12s; // for searches that do not stop
static constexpr std::chrono::milliseconds afterLaunch = 3s;
static constexpr qint64 launchesBeforeAsking = 3;

static const QString importNotification = QStringLiteral("XPFileListImport");
static const QString restoreNotification = QStringLiteral("TagSyncDoneAgressive");
static const QString refreshInfoNotification = QStringLiteral("KPRefreshInfoWindows");

static KPAppDelegate *theDelegate = nullptr;
static bool terminating = false;

KPAppDelegate *KPAppDelegate::instance()
{
    return theDelegate;
}

bool KPAppDelegate::isTerminating()
{
    return terminating;
}

KPAppDelegate::KPAppDelegate(const KPCommandLine &line, XPApplicationBus *bus)
    : m_line(line), m_bus(bus), m_patience(longestWait)
{
    Q_ASSERT_X(theDelegate == nullptr, "KPAppDelegate", "there is one already");
    theDelegate = this;
    KPTagName::intializeGlobals();
    KPDocCache::intializeGlobals();
    KPFileTypeRegistry::instance().readFileTypesPlist();
    KPLaunchSettings::setupDefaults();
    auto &centre = XPNotificationCenter::instance();
    m_observations.push_back(
        centre.addObserver(importNotification, [this](const XPNotification &notification) {
            if (const auto *paths = std::get_if<PropertyValue>(&notification.object))
                importFileList(paths->strings(), {});
        }));
    m_observations.push_back(
        centre.addObserver(restoreNotification, [this](const XPNotification &notification) {
            deepRestoreDone(notification.userInfo.value(QStringLiteral("numDone")).integerValue());
        }));
}

KPAppDelegate::~KPAppDelegate()
{
    theDelegate = nullptr;
}

// --- Launching

void KPAppDelegate::applicationWillFinishLaunching()
{
    xpGuiThread.assertHere();
    KPDocIcons::registerIcons();
    m_index = std::make_unique<KPIndexSession>();
    installServices();
    m_backup = std::make_unique<KPTagBackup>(m_index->source()); // with its two timers
    convertTagsFor109();
    KarvexPrefs::chooseDomain();
    Karvex::registerUsualKXAttributes();
    removeWebCache();
    KPDoc::startMetaDataSearching(m_index->source());
    KPQuickLook::initializeGlobals(KPQuickLook::usualSetup(&m_index->importPause()));
    KPQuickLook::updateCachedPrefs();
    connectBus();
    KPLaunchSettings::markRunning();
    KPBadgeCache::instance().setFolders(KPBadgeCache::readOnlyFolder(),
                                        KPBadgeCache::writableFolder());
}

void KPAppDelegate::installServices()
{
    auto services = std::make_unique<KPAppServices>();
    connect(services.get(), &KPAppServices::revealAsked, this, [this](const QStringList &paths) {
        if (m_controller)
            m_controller->showDocuments(paths);
    });
    connect(services.get(), &KPAppServices::infoAsked, this, [this](const QStringList &paths) {
        if (m_controller)
            m_controller->showInformation(paths);
    });
    connect(services.get(), &KPAppServices::importAsked, this,
            [this](const QMimeData *data, const QString &folder, bool copies) {
                if (m_controller)
                    m_controller->importDropped(data, {.folder = folder, .copies = copies});
            });
    connect(services.get(), &KPAppServices::imported, this, [this](const QStringList &paths) {
        if (m_controller)
            m_controller->sides().lastImport().setPaths(paths);
    });
    connect(services.get(), &KPAppServices::pathMoved, this,
            [this](const QString &oldPath, const QString &newPath) {
                if (!m_controller)
                    return;
                m_controller->searcher().pathChanged(oldPath, newPath);
                m_controller->sides().lastImport().pathChanged(oldPath, newPath);
            });
    KPDocServices::install(std::move(services));
    KPDocServices::current().runFileWork([] { (void)XPMoveRecovery::run(); }, [] {});
}

// Deliberately only where the regular backup is switched off.
void KPAppDelegate::convertTagsFor109()
{
    if (!UserDefaults::standard().boolValue(QStringLiteral("KPSyncTagsForBackup")))
        KarvexSync::syncWithFiles(m_index->source(), {KarvexBackupFile::defaultPath()}, false);
}

// Nothing that was loaded from the web stays on the disk; the program itself loads nothing.
void KPAppDelegate::removeWebCache()
{
    const QByteArray cache = XPPath::encode(XPFolders::ourCaches() + QStringLiteral("/Cache.db"));
    KPDocServices::current().runFileWork([cache] { ::unlink(cache.constData()); }, [] {});
}

void KPAppDelegate::applicationDidFinishLaunching()
{
    xpGuiThread.assertHere();
    UserDefaults &defaults = UserDefaults::standard();
    openMainWindow();
    observeSettings();
    defaults.setValue(QStringLiteral("KPDropZoneOverlapWithScreen"), PropertyValue::boolean(false));
    makeDropZone();
    m_isFinishedLaunching = true;
    m_controller->searcher().restartSearchAction();
    m_controller->show();
    QTimer::singleShot(afterLaunch, m_upkeep.get(), &KPFilingUpkeep::checkFormatAndOfferChange);
    const bool isFirst = KPLaunchSettings::isFirstLaunch();
    const qint64 launches = KPLaunchSettings::countLaunch();
    KPCrashHandler::installExceptionHandler();
    if (defaults.boolValue(QStringLiteral("bugsnagCanSendReports")))
        offerCrashReports();
    else if (launches >= launchesBeforeAsking &&
             !defaults.boolValue(QStringLiteral("bugsnagHaveAsked")) && m_line.screenshot.isEmpty())
        askForCrashReports();
    if (isFirst && m_line.screenshot.isEmpty())
        (new KPWelcome(m_controller.get()))->open(); // deletes itself
}

void KPAppDelegate::openMainWindow()
{
    xpGuiThread.assertHere();
    m_controller =
        std::make_unique<KPController>(m_index->source(), m_line.folders, &m_index->monitor());
    XPPrompts::install(std::make_unique<KPPrompts>(m_controller.get()));
    XPProgress::install(std::make_unique<KPProgress>(m_controller.get()));
    connect(m_backup.get(), &KPTagBackup::changed, m_controller.get(), [this] { showBackup(); });
    KPSearchFolders::instance().setSpotlightPreferences(
        [this] { showPreferences(XPSetting::Page::Index); });
    m_upkeep = std::make_unique<KPFilingUpkeep>();
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this,
            [this](Qt::ApplicationState state) {
                if (state == Qt::ApplicationActive)
                    applicationDidBecomeActive();
                else
                    applicationDidResignActive();
            });
    connect(qGuiApp, &QGuiApplication::commitDataRequest, m_controller.get(),
            &KPController::writeOutStateWhenQuiting);
    if (const QStringList files = std::exchange(m_pendingFiles, {}); !files.isEmpty())
        openFiles(files);
    for (const QString &url : std::exchange(m_pendingUrls, {}))
        handleOpenUrl(url);
}

void KPAppDelegate::observeSettings()
{
    UserDefaults &defaults = UserDefaults::standard();
    const auto follow = [&](const QString &key,
                            const std::function<void(const PropertyValue &)> &observer) {
        m_observations.push_back(defaults.addObserver(QStringLiteral("values.") + key, observer));
        observer(defaults.value(key));
    };
    // The search folders and the layout of the managed folder are followed by KPSearchFolders and
    // KPFilingUpkeep.
    follow(QStringLiteral("KPGlobalShortcut"),
           [this](const PropertyValue &key) { followHotKey(key); });
    follow(QStringLiteral("KPShowStatusItem"),
           [this](const PropertyValue &on) { followStatusItem(on.boolValue()); });
    m_untagged = std::make_unique<KPUntaggedBadge>(m_index->source());
    connect(m_untagged.get(), &KPUntaggedBadge::numberChanged, this,
            &KPAppDelegate::updateApplicationBadgeWithNumber);
}

void KPAppDelegate::askForCrashReports()
{
    xpGuiThread.assertHere();
    XPPrompts::current().ask({qtTrId("KPCrashReportsTitle"),
                              qtTrId("KPCrashReportsText"),
                              {qtTrId("KPYes"), qtTrId("KPNo")},
                              1},
                             [](int button) {
                                 UserDefaults &defaults = UserDefaults::standard();
                                 defaults.setValue(QStringLiteral("bugsnagHaveAsked"),
                                                   PropertyValue::boolean(true));
                                 defaults.setValue(QStringLiteral("bugsnagCanSendReports"),
                                                   PropertyValue::boolean(button == 0));
                                 if (button == 0)
                                     KPCrashHandler::start(KPCrashReports::folder());
                             });
}

// Reports are files of the user's; they are shown to him once, and never sent.
void KPAppDelegate::offerCrashReports()
{
    xpGuiThread.assertHere();
    KPCrashHandler::start(KPCrashReports::folder());
    const QStringList reports = KPCrashReports::takeNew();
    m_hasCrashReports = !KPCrashReports::all().isEmpty();
    if (reports.isEmpty())
        return;
    XPPrompts::current().ask({qtTrId("KPCrashedTitle"),
                              qtTrId("KPCrashedText"),
                              {qtTrId("KPCrashedShow"), qtTrId("KPCrashedClose")},
                              1},
                             [newest = reports.last()](int button) {
                                 xpGuiThread.assertHere();
                                 if (KPDoc *report = KPDocCache::docAtPath(newest);
                                     button == 0 && report != nullptr)
                                     (void)report->openDocExternal();
                             });
}

void KPAppDelegate::deepRestoreDone(qint64 count)
{
    xpGuiThread.assertHere();
    XPPrompts::current().alert(qtTrId("KPRestoreDoneTitle"),
                               qtTrId("KPRestoreDone", static_cast<int>(count)));
}

// --- Coming and going

void KPAppDelegate::applicationDidBecomeActive()
{
    xpGuiThread.assertHere();
    if (terminating || !m_controller)
        return;
    auto &centre = XPNotificationCenter::instance();
    centre.post(KPSearchFolders::fileSystemMayHaveChanged);
    KPDocServices::current().runFileWork(
        [] { KPSearchFolders::instance().rebuildSearchFoldersList(); }, [] {});
    m_upkeep->becomeActive();
    centre.post(refreshInfoNotification);
}

void KPAppDelegate::applicationDidResignActive()
{
    xpGuiThread.assertHere();
    if (terminating || !m_controller)
        return;
    KPQuickLook::updateCachedPrefs();
    m_controller->writeOutStateWhenQuiting();
}

// --- The end

bool KPAppDelegate::applicationShouldTerminate()
{
    if (m_controller && !m_controller->mayQuit())
        return false;
    terminating = true;
    if (m_bus != nullptr)
        m_bus->release(); // who is started from now on is on his own
    if (m_controller) {
        m_controller->raise();
        m_controller->findDocumentsAction();
    }
    return true;
}

// Ends what was asked for, by searches and file calls.
void KPAppDelegate::stopServices()
{
    xpGuiThread.assertHere();
    m_index->stopFollowing();
    XPProgress::install(nullptr); // asks what is shown there to stop
    KPDoc::stopMetaDataSearching();
    KPThreadedSearcher::terminate();
    if (!KPThreadedSearcher::waitForSearchThreads(m_patience))
        qCWarning(xpLog) << "Thread failed to quit - could be a problem";
    KPDocServices::install(nullptr); // returns when the file calls asked for are done
}

static void logFailure(const std::optional<XPError> &error)
{
    if (error)
        qCWarning(xpLog).noquote() << error->message;
}

void KPAppDelegate::applicationWillTerminate()
{
    xpGuiThread.assertHere();
    terminating = true;
    m_controller->hide();
    m_preferences.reset();
    m_shortcut.reset();
    m_statusItem.reset();
    if (m_dropZone)
        m_dropZone->writeOutStateWhenQuiting();
    m_dropZone.reset();
    XPPrompts::install(nullptr); // nobody is there to answer
    logFailure(KPFileTypeRegistry::instance().writeFileTypesPlist());
    stopServices();
    KPLaunchSettings::countEnd();
    m_controller->writeOutStateWhenQuiting();
    m_controller->searchModeSpotlight();
    logFailure(KPDocPrefs::saveState());
    XPFiledDocuments::cleanup();
    m_observations.clear();
    m_upkeep.reset();
    m_untagged.reset();
    updateApplicationBadgeWithNumber(0); // nobody counts any more
    m_controller.reset();
    m_backup.reset();
    KPQuickLook::shutDown();
    m_index.reset();
    KPLaunchSettings::markEnded();
}

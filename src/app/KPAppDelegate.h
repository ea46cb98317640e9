#pragma once

#include "KPCommandLine.h"
#include "KPCommandTable.h"
#include "KPDoc.h"
#include "KPSearchState.h"
#include "XPActivation.h"
#include "XPNotificationCenter.h"
#include "XPSetting.h"

#include <QObject>
#include <chrono>
#include <memory>
#include <vector>

class KPAppServices;
class KPController;
class KPDropZoneDelegate;
class KPFilingUpkeep;
class KPIndexSession;
class KPPreferencesWindow;
class KPStatusItem;
class KPTagBackup;
class KPUntaggedBadge;
class XPApplicationBus;
class XPDropZoneController;
class XPGlobalShortcut;
class XPPasteboard;

// The application's one coordinator: what happens at its start and end, when it comes to the front
// and leaves it, and what other programs hand to it.
//
// A life: init (the constructor), applicationWillFinishLaunching(), ...DidFinish...() once, which
// makes the window; files and addresses that come before are kept and shown then; at the end
// applicationShouldTerminate() and, behind the event loop, applicationWillTerminate(), which lets
// go of the window. Threads: main. Exactly one exists.
class KPAppDelegate : public QObject
{
    Q_OBJECT

public:
    // `bus`, from which requests of other programs come, may be null; it outlives this.
    KPAppDelegate(const KPCommandLine &line, XPApplicationBus *bus) XP_REQUIRES(xpGuiThread);
    ~KPAppDelegate() override;
    static KPAppDelegate *instance(); // null in programs and tests without one

    void applicationWillFinishLaunching();
    void applicationDidFinishLaunching();
    bool isFinishedLaunching() const { return m_isFinishedLaunching; }

    void applicationDidBecomeActive();
    void applicationDidResignActive();

    // True: the program may end now.
    bool applicationShouldTerminate();
    void applicationWillTerminate();
    // The program is ending: no work is begun any more. Never taken back.
    static bool isTerminating();
    // How long the end waits for searches that do not stop.
    void setPatience(std::chrono::milliseconds patience) { m_patience = patience; }

    // Files that were opened on the program are marked where they lie and shown; a list of folders
    // is shown as it is. False: there is nothing, or the last one does not exist. Before there is a
    // window: true, and they are shown once there is one.
    bool openFiles(const QStringList &paths);
    // False: no address that is understood, or that of a file which does not exist.
    bool handleOpenUrl(const QString &url);
    // Several at once; files among them as one list.
    void openUrls(const QStringList &urls, const XPActivation &activation);
    // The services: an empty text stands for what is selected, or else copied, in any program.
    void searchInMurnService(const QString &text, const XPActivation &activation);
    void createFiledFile(const XPActivation &activation);
    // Files that another program names: shown, their tags to be edited, or filed after asking, as
    // XPApplicationBus calls the actions.
    void documentsAsked(const QString &action, const QStringList &urls,
                        const XPActivation &activation);
    void shouldHandleReopen(const XPActivation &activation);

    void hideShowMainWindowAction();
    void allAction();
    void colourDefaultsAction();
    void preferencesAction();
    void showPreferences(XPSetting::Page page);
    // A number on the program's icon in the dock and in the tray; 0 takes it away.
    void updateApplicationBadgeWithNumber(int number);
    // This feature's commands, for the window's menus.
    QList<KPCommand> commands();

    // The program is to be started once more when it has ended.
    bool startsAgain() const { return m_startsAgain; }

    // Null before applicationDidFinishLaunching() and after the end.
    KPController *controller() const { return m_controller.get(); }

private:
    void installServices();
    void convertTagsFor109();
    void removeWebCache();
    void openMainWindow();
    void observeSettings();
    void connectBus();
    void askForCrashReports();
    void offerCrashReports();
    void bringToFront(const XPActivation &activation);
    void followHotKey(const PropertyValue &key);
    void followStatusItem(bool isWanted);
    void makeDropZone();
    void showWayBack();
    void deepRestoreDone(qint64 count);
    void stopServices();
    void showBackup();
    void restoreBackup(QWidget *window);
    void rebuildIndex();

    void fileCopied(const XPPasteboard &pb);
    void importFileList(const QStringList &paths, const QString &displayName);
    void markAndShow(const QStringList &paths, const QString &displayName);
    void showFileList(const QStringList &paths, const QString &displayName);
    void selectLater(const QStringList &paths, bool editsTags);
    void select(const QStringList &paths, bool editsTags);
    void showFolders(const QStringList &folders);
    void showUrlState(const KPSearchState::Ptr &state);

    const KPCommandLine m_line;
    XPApplicationBus *const m_bus;
    bool m_isFinishedLaunching = false;
    std::chrono::milliseconds m_patience;
    QStringList m_pendingFiles;
    QStringList m_pendingUrls;
    int m_badge = 0;
    bool m_hasCrashReports = false;
    bool m_startsAgain = false;

    std::unique_ptr<KPIndexSession> m_index;
    std::unique_ptr<KPTagBackup> m_backup;
    std::unique_ptr<KPController> m_controller;
    std::unique_ptr<KPFilingUpkeep> m_upkeep;
    std::unique_ptr<KPPreferencesWindow> m_preferences; // made when it is first asked for
    std::unique_ptr<KPStatusItem> m_statusItem;
    std::unique_ptr<KPUntaggedBadge> m_untagged;
    std::unique_ptr<KPDropZoneDelegate> m_zoneDelegate;
    std::unique_ptr<XPDropZoneController> m_dropZone;
    std::unique_ptr<XPGlobalShortcut> m_shortcut;
    std::vector<XPObservation> m_observations;
};

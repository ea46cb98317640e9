// KPSearchFolders: what is done on the main thread: changing the setting, following what changes.
#include "KPSearchFolders.h"

#include "KPFolderBookmarks.h"
#include "KPIndexRoots.h"
#include "KPSearchFolderSetting.h"
#include "KPSearchVolumes.h"
#include "MetadataIndex.h"
#include "XPFileDescriptor.h"
#include "XPFolders.h"
#include "XPNotificationCenter.h"
#include "XPPath.h"
#include "XPPrompts.h"
#include "XPVolumes.h"

#include <QCoreApplication>
#include <QSocketNotifier>
#include <fcntl.h>

const QString KPSearchFolders::fileSystemMayHaveChanged =
    QStringLiteral("KPNotificationFileSystemMayHaveChanged");

// --- The list

bool KPSearchFolders::pathOKToAddToSearchFolders(const QString &path)
{
    return path != u"/Network" && !path.startsWith(u"/Network/");
}

std::optional<XPError> KPSearchFolders::addSearchFolder(const QString &path)
{
    if (!pathOKToAddToSearchFolders(path))
        return XPError::make(XPError::Kind::InvalidArgument, qtTrId("KPSearchFolderTooLarge"),
                             path);
    const auto folder = XPFolders::realFolder(path);
    if (!folder)
        return folder.error();
    QStringList folders = userSearchFolders();
    if (!folders.contains(*folder)) {
        folders.append(*folder);
        KPSearchFolderSetting::setFolders(folders);
        rebuildSearchFoldersList();
    }
    if (KPIndexRoots::add(*folder) && m_index)
        m_index->settingsChanged();
    updateIndexAvailability();
    return {};
}

void KPSearchFolders::removeSearchFolder(const QString &path)
{
    const QString wanted = XPPath::absolute(XPFolders::expandTilde(path));
    QStringList kept;
    // The setting names a folder that was renamed meanwhile by its former path.
    for (const QString &folder : KPSearchFolderSetting::folders()) {
        if (folder != wanted && m_bookmarks->previouslyResolvedBookmark(folder) != wanted)
            kept.append(folder);
    }
    KPSearchFolderSetting::setFolders(kept);
    rebuildSearchFoldersList();
}

void KPSearchFolders::addSearchFolderAction(const QString &path,
                                            const std::function<void(bool)> &done)
{
    const auto add = [this, path, done] {
        xpGuiThread.assertHere();
        const auto error = addSearchFolder(path);
        if (error)
            XPPrompts::current().alert(
                qtTrId("KPSearchFolderNotAdded").arg(XPPath::printable(path)), error->reason());
        done(!error);
    };
    if (!XPVolumes::volumeOf(XPPath::absolute(path)).network || !pathOKToAddToSearchFolders(path)) {
        add();
        return;
    }
    XPPrompts::Question question;
    question.title = qtTrId("KPSearchFolderNetworkTitle").arg(XPPath::printable(path));
    question.text = qtTrId("KPSearchFolderNetworkText");
    question.buttons = {qtTrId("KPSearchFolderNetworkAdd"), qtTrId("KPCancel")};
    question.cancelButton = 1;
    XPPrompts::current().ask(question, [add, done](int button) {
        if (button == 0)
            add();
        else
            done(false);
    });
}

// --- What changes

void KPSearchFolders::didMount()
{
    XPVolumes::lookAgain();
    rebuildSearchFoldersList();
    updateIndexAvailability();
    XPNotificationCenter::instance().post(fileSystemMayHaveChanged);
}

void KPSearchFolders::setSpotlightPreferences(std::function<void()> open)
{
    m_openPreferences = std::move(open);
}

void KPSearchFolders::openSpotlightPreferencesAction()
{
    if (m_openPreferences)
        m_openPreferences();
}

struct KPSearchFolders::Observers
{
    Observers() : mountTable(::open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC)) {}

    std::vector<XPObservation> settings;
    // The kernel reports a change of the table as exceptional on the open file (proc(5)).
    XPFileDescriptor mountTable;
    std::unique_ptr<QSocketNotifier> mounts;
};

void KPSearchFolders::setIndex(MetadataIndex *index)
{
    m_index = index;
    if (index)
        m_bookmarks->setFinder(
            [index](const QString &name) { return KPIndexRoots::foldersNamed(*index, name); });
    else
        m_bookmarks->setFinder({});
}

void KPSearchFolders::startObserving()
{
    m_observers = std::make_shared<Observers>();
    const auto follow = [this](const QString &key, std::function<void()> change) {
        xpGuiThread.assertHere();
        m_observers->settings.push_back(UserDefaults::standard().addObserver(
            QStringLiteral("values.") + key,
            [change = std::move(change)](const PropertyValue &) { change(); }));
    };
    const auto tell = [] { XPNotificationCenter::instance().post(fileSystemMayHaveChanged); };
    follow(KPSearchFolderSetting::key, [this, tell] {
        rebuildSearchFoldersList();
        tell();
    });
    follow(QStringLiteral("KPSearchStateHiddenFilesInGoDeep"), tell);
    m_observers->mounts = std::make_unique<QSocketNotifier>(m_observers->mountTable.get(),
                                                            QSocketNotifier::Exception);
    QObject::connect(m_observers->mounts.get(), &QSocketNotifier::activated, [this] {
        xpGuiThread.assertHere();
        didMount();
    });
}

void KPSearchFolders::stopObserving()
{
    m_observers.reset();
}

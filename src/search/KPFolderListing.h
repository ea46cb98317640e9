#pragma once

#include "IndexWatcher.h"
#include "KPDocValues.h"
#include "KPSearchState.h"
#include "KPSlowFolders.h"

#include <QHash>
#include <QObject>
#include <QTimer>

// The documents of a state that lists a folder, or files by name: looked for on the disk and
// judged by the state's own tests, without the index.
//
// What a listing shows of a folder is what a file browser would: files, folders, packages and
// links that are not hidden. A deep one goes down into the folders instead of showing them, and
// into packages if the state asks for it; links are followed if the setting
// "KPFollowSymLinksGoDeep" is on, each folder once. Files by name are shown whatever they are.
// Folders on volumes that may hang are read elsewhere (KPSlowFolders) and come later. Live,
// the folders are watched, and where one that was asked for is not there, the nearest one above
// it; where there is no watch, problems() says so.
// Threads: one, with an event loop. Blocking file calls on local volumes.
class KPFolderListing : public QObject
{
    Q_OBJECT

public:
    struct Setup
    {
        KPSearchState::Ptr state;
        bool live = true;
        bool readsValues = false; // and types of all files, for counts; else what the tests need
        qsizetype maximum = 0;    // documents; 0: all
        std::function<bool()> isAbandoned;
        // After each entry that was looked at.
        std::function<void()> looked;
        std::function<void(KPDoc *, const KPResultCounts::Values &)> found, changed;
        std::function<void(KPDoc *)> gone;
    };
    explicit KPFolderListing(Setup setup);
    ~KPFolderListing() override;

    // Lists; false: abandoned before the end.
    bool start();
    bool isWaiting() const { return m_slow && m_slow->isBusy(); }
    bool isMaxxedOut() const { return m_isMaxxedOut; }
    qint64 scannedCount() const { return m_scanned; }
    QStringList problems() const;

    // Folders that count as documents, by their name.
    static bool isPackageAtPath(QByteArrayView path);
    static bool isInvisible(QByteArrayView name, QByteArrayView fullPath);

Q_SIGNALS:
    void updated();                     // found, changed or gone documents since start()
    void eventsWaiting(QPrivateSignal); // from the watcher's thread

private:
    struct Item
    {
        KPDoc *doc = nullptr;
        qint64 changed = 0; // of the file's status, when it was looked at
        bool isShown = false;
        bool isFolder = false; // listed too
    };
    struct Folder
    {
        QHash<KPPooledString, Item> items;
        std::optional<QSet<QByteArray>> only;
        QString problem;
        bool isRoot = false;
    };
    using Names = std::optional<QSet<QByteArray>>; // none: all

    void readAll();
    void want(const QByteArray &folder, const Names &only, bool isRoot);
    void readWanted();
    void look(const QByteArray &folder, const Names &only);
    void take(const KPFolderContents &contents);
    // Of a folder that is being taken: whether it is there, and the folders in it.
    struct Taking
    {
        QByteArray start; // of its entries' paths
        QString startText;
        QSet<KPPooledString> present;
        std::vector<QByteArray> below;
    };
    void takeEntry(Folder &folder, const KPFolderContents &contents,
                   const KPFolderContents::Entry &entry, Taking &taking);
    void takeDocument(Item &item, KPDoc *doc, const QByteArray &path,
                      const KPFolderContents::Entry &entry);
    void await(const QByteArray &root);
    bool judge(KPDoc *doc, const QByteArray &path, bool hasAttributes,
               KPResultCounts::Values *counted);
    bool looksLikeOkFile(const QByteArray &path, const XPFileInfo &info, bool isPackage,
                         bool isFolder) const;
    bool goesInto(const QByteArray &path, const XPFileInfo &info, bool isPackage);
    void dropItem(Folder &folder, KPPooledString path);
    void dropFolder(const QByteArray &path);
    void takeEvents();
    void lookAgain();
    bool isSlow(const QByteArray &folder) const;

    const Setup m_setup;
    const bool m_needsValues;
    const bool m_followsLinks;
    QHash<QByteArray, Folder> m_folders;
    std::vector<QByteArray> m_wanted;
    QSet<std::pair<quint64, quint64>> m_visited; // device and inode, where links are followed
    std::vector<QByteArray> m_goneFolders;
    QHash<QByteArray, QSet<QByteArray>> m_awaited; // roots that are not there, by what is watched
    QHash<KPPooledString, QString> m_unreadable;
    std::unique_ptr<KPSlowFolders> m_slow;
    qsizetype m_shown = 0;
    qint64 m_scanned = 0;
    bool m_isMaxxedOut = false;
    bool m_lacksWatches = false;

    XPMutex m_mutex;
    std::vector<IndexWatcher::Event> m_events XP_GUARDED_BY(m_mutex);
    QHash<QByteArray, Names> m_dirty;
    QTimer m_again;                          // a burst of events is one look
    std::unique_ptr<IndexWatcher> m_watcher; // last: stops before what it calls goes
};

#pragma once

#include "KPDocKeys.h"
#include "KPDocLock.h"
#include "KPPathFilters.h"
#include "KPTagName.h"
#include "XPFileInfo.h"

#include <QDateTime>
#include <QSizeF>
#include <functional>
#include <memory>

class IndexSource;
class QObject;

// One file of the user's library: the one record of its path in this process, made by KPDocCache
// alone and never freed.
//
// Holds the path and what lstat said, nothing else: tags, rating, keywords, web addresses and
// comments come from the attribute caches (KPDocMetaData), by path. The path changes when the
// file is moved, and is "gone" once the file is: a view that holds the record keeps it and
// treats it as absent. Equal paths are one record, so records are compared by address; isEqual()
// also asks the size.
// Threads: any, unless said otherwise. "Blocking" means file calls. Texts of paths refer to the
// pool's memory and stay good for the process.
class KPDoc : public KPDocKeys
{
public:
    using Docs = QList<KPDoc *>;
    using Done = std::function<void(std::optional<XPError>)>;
    using Trashed = std::function<void(const XPResult<QString> &inTrash)>;

    // Identity.
    QString filePath() const { return pooledPath().toString(); }
    QString parentPath() const { return pooledParentPath().toString(); }
    KPPooledString pooledPath() const { return m_filePath.load(std::memory_order_acquire); }
    KPPooledString pooledParentPath() const { return m_parentPath.load(std::memory_order_acquire); }
    bool isGone() const; // the path is gonePath()
    static KPPooledString gonePath();
    // The path's bytes; empty when it has none.
    QByteArray fileSystemRepresentation() const;
    QString fsName() const; // the last component
    // The same record, or one that stands for the same path with the same size.
    bool isEqual(const KPDoc *other) const;
    size_t hash() const { return pooledPath().textHash(); }
    // Name, modification time and size in one text: what is cached under it notices changes.
    QString cacheID() const;

    // Facts of the file, as last heard of. Sizes in bytes.
    quint32 unixFileMode() const { return m_mode.load(std::memory_order_relaxed); }
    qint64 unixFileSize() const { return m_size.load(std::memory_order_relaxed); }
    // Nanoseconds since 1970.
    qint64 unixModificationTime() const { return m_modified.load(std::memory_order_relaxed); }
    QDateTime unixFileModificationDate() const; // UTC; invalid when unknown
    // Seconds; 0 when unknown, before 1970 or after 2033.
    double creationTimeSince1970() const { return m_created.load(std::memory_order_relaxed); }
    QDateTime creationDate() const; // UTC; invalid when not known
    void modificationYearMonthDay(int *year, int *month, int *day) const; // local time
    bool isRegularFile() const { return S_ISREG(unixFileMode()); }
    bool isDirectory() const; // a folder that is no package
    bool isPackage() const;
    bool isDirectoryOrPackage() const { return S_ISDIR(unixFileMode()); }
    bool isAliasFile() const;
    bool isInTrash() const;
    QString volumeID() const;         // where the file's volume is mounted
    qint64 fileSize() const;          // with the resource fork, once that was added
    qint64 actualFileSize() const;    // from the disk, everything in a folder summed up. Blocking
    void addResourceForkInfoToSize(); // Blocking
    bool passesExcludePaths() const { return (m_passes.load() & PassesExclude) != 0; }
    bool passesMDQueryExcludePaths() const { return (m_passes.load() & PassesMDQuery) != 0; }

    // Type. Blocking in the rare cases where KPFileType is.
    QString fileType() const;          // the content type
    QString fileTypeExtension() const; // the type's preferred one, else the name's
    KPTagName *utiTagName() const;     // nullptr when gone
    bool isPDF() const { return conformsTo(QStringLiteral("com.adobe.pdf")); }
    bool isImage() const { return conformsTo(QStringLiteral("public.image")); }
    bool isMovie() const { return conformsTo(QStringLiteral("public.movie")); }
    bool conformsTo(const QString &uti) const;
    bool isEmailMessage() const;
    bool isAddressBookCard() const;
    bool isBookmark() const;

    // Names. The display name is the name on disk.
    QString fsDisplayName() const { return fsName(); }
    QString fsDisplayNameLC() const; // decomposed
    // Renames the file: asks where the extension would change, never replaces a file, then tells
    // with no error or why not (Cancelled too). Main thread; `done` comes there.
    void setFsDisplayName(const QString &name, const Done &done) XP_REQUIRES(xpGuiThread);
    // Renames the file to exactly this name, as undo does: no rule for typed names, no question.
    void renameTo(const QString &fsName, const Done &done) XP_REQUIRES(xpGuiThread);
    // A name as a user types it, as a file's name: ":" to a space, then "/" to ":", no line breaks.
    static QString displayFileNameToFSName(const QString &name);
    static QString changeCharsForNameToFinderDisplayMode(const QString &name); // ":" to "/"
    // What a message, card or bookmark calls itself, once setTitleFrom… read it; else the name.
    QString documentTitle() const;
    QString title() const; // not to be called
    bool canChangeTitle() const;
    void setTitleFromEmailMessage();    // Blocking
    void setTitleFromAddressBookCard(); // Blocking
    void setTitleFromBookmark();        // Blocking

    // Tags and rating, from the caches: at once, and none where nothing is known yet.
    KPTagName::Tags tagNamesOfTypeUserEntered() const;
    // From the file. Blocking. An editor must refuse on a failure, as it would write over what is
    // there.
    XPResult<KPTagName::Tags> tagNamesOfTypeUserEnteredForEditing() const;
    // Why tags or rating are there and cannot be read; the answers above are empty then.
    std::optional<XPError> unreadableMetaData() const;
    KPTagName::Tags tagNamesOfTypeReadOnly() const;
    KPTagName::Tags tagNamesOfTypeUTType() const; // the type and what it conforms to
    KPTagName::Tags allTagNames() const;
    bool hasTag(KPTagName *tag) const;
    bool hasUserEnteredTag(KPTagName *tag) const;
    bool hasFileTypeTag(KPTagName *tag) const;
    bool hasReadOnlyTag(KPTagName *tag) const;
    bool hasAllTagsLC_Pooled(const KPTagName::PooledTags &tags) const;
    bool hasANYTagsLC_Pooled(const KPTagName::PooledTags &tags) const;
    // User tags of the documents that share one with this, most often met first, without its own.
    KPTagName::Tags relatedTags() const;
    double rating() const;
    double ratingFast() const { return rating(); }
    int starsToShow() const { return ratingsToStars(rating()); }
    static int ratingsToStars(double rating);        // 0 to 5, whatever another writer stored
    std::optional<XPError> setRating(double rating); // Blocking
    QString url() const;                             // the first web address
    QStringList getURLsForEditing() const;
    std::optional<XPError> setURLs(const QStringList &urls); // Blocking
    QString spotlightComment() const;
    bool isFlagged() const;
    bool isManaged() const;       // from the file: two calls. Blocking
    bool isManagedSlower() const; // Blocking
    bool isTakenOut() const;      // has a mark that says it is none of the library's. Blocking
    // Many documents at once, through KPDocServices. Main thread.
    static void addTags(const KPTagName::Tags &tags, const Docs &docs,
                        QObject *reportChangesOverView) XP_REQUIRES(xpGuiThread);
    static void setFlagged(const QStringList &paths, bool flagged) XP_REQUIRES(xpGuiThread);
    static void setManaged(const QStringList &paths, bool managed) XP_REQUIRES(xpGuiThread);
    static void setHidden(const QStringList &paths, bool hidden) XP_REQUIRES(xpGuiThread);
    // How many documents were taken out of the library in this session; whoever takes a mark away
    // counts.
    static qsizetype numDocsRemovedFromLibrary();
    static void countRemovedFromLibrary();

    // Whether one word of a search is in the name or, asked for, in tags, comment or addresses.
    // `textLC` is `text` decomposed in lower case.
    bool searchForText(const QString &text, bool searchMeta, const QString &textLC) const;

    // The attribute caches: started with the index, which must outlive them, once per process.
    static void startMetaDataSearching(IndexSource &source) XP_REQUIRES(xpGuiThread);
    static void stopMetaDataSearching() XP_REQUIRES(xpGuiThread);
    static void updateUserTagCacheForFilePaths(const QStringList &paths);

    // For people, in their language.
    QString parentFolderForDisplay() const;
    QString compactFolderPath() const; // with "~"
    QString compactFilePath() const;
    QString fileSizeString() const;
    QString fileSizeGroup() const; // the key of a size group
    int pageCount() const;         // what the index holds; 0: unknown
    QString pageCountString() const;
    QString descriptionForUser() const; // lines of plain text
    // A table's row, or one line for running text; everything from the file escaped.
    QString htmlTableLineDescriptionForTable(bool forTable, bool includeTime) const;

    // Actions. Main thread.
    std::optional<XPError> openDoc() const XP_REQUIRES(xpGuiThread);
    std::optional<XPError> openDocExternal() const XP_REQUIRES(xpGuiThread);
    // By the name of its desktop entry, "org.example.App.desktop".
    std::optional<XPError> openDocWithApp(const QString &app) const XP_REQUIRES(xpGuiThread);
    void revealInFinder() const XP_REQUIRES(xpGuiThread);
    void revealInMurn() const XP_REQUIRES(xpGuiThread);
    void openFinderInfoWindow() const XP_REQUIRES(xpGuiThread);
    // Told where the file is then, for XPTrash::putBack().
    void moveFileToTrash(const Trashed &done) XP_REQUIRES(xpGuiThread);
    // The record is gone after it, and "KPNotificationDocumentDeleted" posted with the old path.
    // A file that cannot be moved to the trash stays, and so does its record. Told an empty path
    // where nothing was to be moved.
    static void deleteDoc(KPDoc *doc, bool moveFileToTrash, const Trashed &done)
        XP_REQUIRES(xpGuiThread);

    // The file changed: what is cached of it goes, observers are told.
    void dataChanged();
    static void docsDoneChanging(const Docs &docs);

    // What views keep with a document until its path changes.
    QSizeF lastDrawnThumbnailSize() const;
    void setLastDrawnThumbnailSize(QSizeF size);
    // Of the results that it was last shown among; it lives for the process.
    const void *cachedGroup() const { return m_group.load(std::memory_order_acquire); }
    void setCachedGroup(const void *group) { m_group.store(group, std::memory_order_release); }
    qint64 cachedDescriptorHash() const { return m_descriptorHash.load(std::memory_order_relaxed); }
    void setCachedDescriptorHash(qint64 hash) { m_descriptorHash.store(hash); }

    XPFileInfo facts() const; // as lstat said them: mode, size, modification and birth
    // Takes what lstat says now.
    void updateFromLStat(const XPFileInfo &info);
    void updateFileInfo(); // Blocking; without a file the facts stay
    // A rename or move of the file that has happened: nothing on disk is touched. Without `info`
    // the file is read first. Blocking then.
    void setFilePath(const QString &path, const XPFileInfo *info = nullptr);

    // Posted before and after a change of a value, the path as object and "key" in the user
    // information; by dataChanged() the second alone, without a key.
    static const QString willChangeNotification;
    static const QString didChangeNotification;
    static const QString deletedNotification;            // "KPNotificationDocumentDeleted"
    static const QString refreshInfoWindowsNotification; // "KPRefreshInfoWindows"
    static const QString pathChangedNotification;        // "documentPathChanged"
    static const QString changingNotification;           // "documentChanging"

    // A path made ready without a lock held. For KPDocCache alone, which makes records.
    struct Place
    {
        Place() = default;
        explicit Place(KPPooledString pooled);

        KPPooledString path;
        KPPooledString parent;
        QByteArray representation;
        quint8 passes = 0;
    };
    KPDoc(Place place, const XPFileInfo &info);
    KPDoc(const KPDoc &) = delete;
    KPDoc &operator=(const KPDoc &) = delete;

private:
    friend class KPDocCache;

    enum Passes : quint8 { PassesExclude = 1, PassesMDQuery = 2 };
    // What few records have, made when first needed.
    struct Rare
    {
        QString displayNameLC;
        QString title;
        QSizeF thumbnailSize;
        qint64 resourceForkSize = 0;
        int pageCount = 0;
    };
    // Which of these are valid.
    enum CachedInfo : quint32 { DisplayNameLC = 1, Title = 2, PageCount = 4, ThumbnailSize = 8 };

    void setLStatInfo(const XPFileInfo &info) XP_REQUIRES(m_lock);
    void setPlace(Place place) XP_EXCLUDES(m_lock);
    void forgetCachedValues() XP_EXCLUDES(m_lock);
    void dropCachesOf(KPPooledString oldPath);
    Rare &rare() const XP_REQUIRES(m_lock);
    // What is found out by looking at the file takes time; it is kept only if the record is still
    // of the same file in the same state as when it was begun.
    quint32 stateNumber() const XP_EXCLUDES(m_lock);
    void setTitle(const QString &title, quint32 asOf) XP_EXCLUDES(m_lock);
    QString typeExtension() const;

    // What is compared for each result of a search stands first, together.
    std::atomic<KPPooledString> m_filePath;
    std::atomic<qint64> m_modified = 0;
    std::atomic<qint64> m_size = 0;
    std::atomic<double> m_created = 0;
    std::atomic<quint16> m_mode = 0;
    std::atomic<quint8> m_passes = 0;
    mutable KPDocLock m_lock;
    std::atomic<KPPooledString> m_parentPath;
    QByteArray m_representation XP_GUARDED_BY(m_lock);
    mutable std::atomic<KPTagName *> m_utiTagName = nullptr;
    std::atomic<qint64> m_descriptorHash = -1;
    std::atomic<const void *> m_group = nullptr;
    mutable std::unique_ptr<Rare> m_rare XP_GUARDED_BY(m_lock);
    mutable quint32 m_cachedInfo XP_GUARDED_BY(m_lock) = 0;
    quint32 m_state XP_GUARDED_BY(m_lock) = 0; // another one after each change of path or facts
};

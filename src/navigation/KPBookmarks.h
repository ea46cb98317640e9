#pragma once

#include "KPBookmark.h"
#include "XPError.h"

#include <QFileSystemWatcher>
#include <QObject>
#include <functional>

// A place in the list: the folder (empty: the list itself) and the number in it.
struct KPBookmarkPlace
{
    QString folder = {};
    qsizetype index = -1; // -1, or too large: at the end
};

// The list of saved searches and folders of them, as its file holds it.
//
// Each change is made to what the file holds at that moment, under a lock that other processes
// respect, and the file is replaced as a whole; so two programs never undo each other's changes,
// and a crash leaves the old file or the new one. A damaged file is set aside, never taken for an
// empty list; one that cannot be read, or that a newer program wrote, is never written.
// What other processes change is noticed.
// Threads: main; blocking file calls of a small file.
class KPBookmarks : public QObject
{
    Q_OBJECT

public:
    explicit KPBookmarks(const QString &file = filePath(), QObject *parent = nullptr);
    ~KPBookmarks() override;
    static QString filePath(); // "bookmarks.plist" in the program's support folder

    // Its children are the list (_bookmarksAndFoldersArray).
    const KPBookmark &root() const { return m_root; }
    const KPBookmark *find(const QString &identifier) const;
    // One of the list, with the titles of the folders it is in: "Work/Invoices". Valid until the
    // list changes.
    struct Named
    {
        QString name;
        const KPBookmark *bookmark;
    };
    QList<Named> all() const; // in the order of the list, a folder before what is in it
    // Why the list is empty, or cannot be changed; nothing: it is as the file has it.
    const std::optional<XPError> &problem() const { return m_problem; }
    void reload();

    using Place = KPBookmarkPlace;
    std::optional<Place> placeOf(const QString &identifier) const;

    // --- Changes. NotFound where the bookmark, or the folder, is not there any more.

    std::optional<XPError> insert(const QList<KPBookmark> &bookmarks, const Place &place = {});
    std::optional<XPError> rename(const QString &identifier, const QString &title);
    std::optional<XPError> setState(const QString &identifier,
                                    const KPSearchState::SavedDictionary &state);
    std::optional<XPError> remove(const QStringList &identifiers);
    // Not into itself. The place is counted before anything is moved.
    std::optional<XPError> move(const QStringList &identifiers, const Place &place);

    // --- Other files of the same form

    // What the file holds, under identifiers of its own, at the end of the list.
    std::optional<XPError> importFile(const QString &path);
    // All, or those; a file that exists is replaced.
    std::optional<XPError> exportFile(const QString &path,
                                      const QStringList &identifiers = {}) const;

Q_SIGNALS:
    void changed();

private:
    using Edit = std::function<std::optional<XPError>(KPBookmark &root)>;
    std::optional<XPError> change(const Edit &edit);
    XPResult<KPBookmark> readFile();
    void take(const KPBookmark &root);
    void watch();

    const QString m_file;
    KPBookmark m_root;
    std::optional<XPError> m_problem;
    QFileSystemWatcher m_watcher;
};

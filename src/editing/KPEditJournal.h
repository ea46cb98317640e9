#pragma once

#include "KPFileEdit.h"
#include "KPTagRename.h"

#include <QDateTime>
#include <memory>
#include <vector>

// The edits on disk, so that what was written can be undone however the program ended.
//
// One file an edit, in the folder "edits" of the program's support folder: lines of JSON, the first
// about the edit, then one a file with its tags or rating before and after, written before the file
// itself is. Undoing compares with the file, so that a line whose write never came harms nobody.
// The ending ".edit" is renamed to ".undone" while the edit is undone. The oldest are forgotten.
// Threads: one at a time; blocking file calls. Errors are logged: an edit goes on without a
// journal.
class KPEditJournal
{
public:
    struct Saved
    {
        QString file;
        QString text; // what undo says it takes back
    };

    struct Contents
    {
        std::vector<KPFileChange> changes;
        std::optional<KPTagRename> rename; // that the edit was, of a tag in the whole library
    };

    // Begins the file of an edit; null (and a line in the log) where none can be made.
    static std::unique_ptr<KPEditJournal> begin(const QString &text,
                                                const std::optional<KPTagRename> &rename = {});
    ~KPEditJournal();
    KPEditJournal(const KPEditJournal &) = delete;
    KPEditJournal &operator=(const KPEditJournal &) = delete;

    const QString &file() const { return m_file; }
    void append(const KPFileChange &change);

    // Says whether the edit is undone; the file's new name.
    static QString mark(const QString &file, bool undone);
    static void remove(const QString &file);
    // What stands there. A line that was cut off ends it.
    static XPResult<Contents> contents(const QString &file);
    static Contents parse(const QByteArray &bytes); // the whole of a file
    // Those that can be undone, the oldest first. Forgets the older and the undone ones.
    static QList<Saved> saved();

private:
    KPEditJournal(QString file, int descriptor);

    QString m_file;
    int m_descriptor;
    bool m_failed = false;
};

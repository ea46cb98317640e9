#pragma once

#include "KPCommandTable.h"
#include "KPPasteboardFetch.h"
#include "XPFileDeeds.h"
#include "XPMutex.h"

#include <QObject>
#include <QPointer>
#include <optional>

class KPDoc;
class KPDocumentTargets;
class QMimeData;
class QUndoStack;

// What becomes of that which is pasted or dropped.
struct KPImport
{
    QString folder = {};   // empty: today's, or where files that come are, as the user prefers
    QStringList tags = {}; // for the documents
    bool isDrop = false;   // what another program drags and drops at this moment
    bool copies = false;   // of files: the originals stay
    // Told of the documents; else they are shown in the library.
    std::function<void(const QStringList &paths)> done = {};
};

// The window's commands that file, move, copy, rename and throw away the documents selected, and
// take them in and out of the library. All file work is the filing store's, on the file worker;
// what was done can be undone in the window's history.
// Ownership: none of the targets and the history, which outlive it. Threads: main.
class KPFilingCommands : public QObject
{
    Q_OBJECT

public:
    KPFilingCommands(KPDocumentTargets &targets, QUndoStack &history, QObject *parent = nullptr);

    QList<KPCommand> commands();
    // By itself, as it belongs beside the window's command that copies.
    KPCommand pasteCommand();

    // As the user prefers: marks, files or asks; while `optionKey` is held, copies.
    void addSelectedToLibrary(bool optionKey) XP_REQUIRES(xpGuiThread);
    // Into today's folder: what lies on another volume is copied by the first, moved by the second.
    void putInFiledDocuments() XP_REQUIRES(xpGuiThread);
    void moveSelectedToFiledDocumentsFolder() XP_REQUIRES(xpGuiThread);
    void manageSelected() XP_REQUIRES(xpGuiThread);

    // Asks for the folder, beginning with the last one.
    void moveCopySelectedTo(bool doCopy) XP_REQUIRES(xpGuiThread);
    void moveCopySelectedTo(const QString &folder, bool doCopy) XP_REQUIRES(xpGuiThread);
    // Beside the originals, under free names.
    void duplicateSelected() XP_REQUIRES(xpGuiThread);
    // The name is typed where the document is shown.
    void rename(KPDoc *doc, const QString &typed) XP_REQUIRES(xpGuiThread);
    // What is on the clipboard, as documents in today's folder.
    void paste() XP_REQUIRES(xpGuiThread);
    // The one road by which content becomes documents. What another program offers is fetched
    // while the window goes on; of a drop this returns when the source is needed no more. Files
    // that are dropped are marked, filed or asked about, as the user prefers; those that are
    // pasted are marked where they lie. False: nothing that could be a document.
    bool import(const QMimeData *data, const KPImport &how) XP_REQUIRES(xpGuiThread);
    void import(const XPPasteboard &pb, const KPImport &how) XP_REQUIRES(xpGuiThread);

    // While the command key is held to the trash, asked about as the setting "KPConfirmDelete" says
    // and when it is ten or more; else the documents only leave the library.
    void removeOrDeleteSelected(bool commandKey) XP_REQUIRES(xpGuiThread);

    // Thrown away without a question where none is wanted; more are always asked about.
    static constexpr qsizetype mostDeletedUnasked = 9;

Q_SIGNALS:
    void clipboardChanged(); // there may be something else to paste, or nothing

private:
    QStringList paths() const;
    void unmanageSelected() XP_REQUIRES(xpGuiThread);
    void deleteSelected() XP_REQUIRES(xpGuiThread);
    bool canMark(bool managed) const;
    bool canPutInFiledDocuments() const;
    QMenu *recentMenu(bool doCopy);
    void fillRecentMenu(QMenu *menu, bool doCopy) XP_REQUIRES(xpGuiThread);
    void moveCopy(const QStringList &paths, const QString &folder, bool doCopy)
        XP_REQUIRES(xpGuiThread);
    void done(const XPFileReport &report, const char *undoText) XP_REQUIRES(xpGuiThread);
    // The same for what is in the library now.
    void filed(const XPFileReport &report, const char *undoText) XP_REQUIRES(xpGuiThread);
    void remember(const QList<XPFileDeeds::Chain> &deeds, const char *undoText)
        XP_REQUIRES(xpGuiThread);
    void deleteNow(const QList<KPDoc *> &docs) XP_REQUIRES(xpGuiThread);
    void importFetched(const KPPasteboardFetch::Fetched &fetched, const KPImport &how)
        XP_REQUIRES(xpGuiThread);
    void importFiles(const QStringList &paths, const KPImport &how) XP_REQUIRES(xpGuiThread);
    void moveFiles(const QStringList &paths, const KPImport &how) XP_REQUIRES(xpGuiThread);
    void imported(const QStringList &paths, const KPImport &how) XP_REQUIRES(xpGuiThread);
    static void tell(const QStringList &paths, const KPImport &how);
    void made(const XPResult<QStringList> &paths, const KPImport &how) XP_REQUIRES(xpGuiThread);
    bool canPaste();

    KPDocumentTargets &m_targets;
    QUndoStack &m_history;
    std::optional<bool> m_canPaste; // asked of the clipboard's owner once for each content
};

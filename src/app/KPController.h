#pragma once

#include "KPCommandTable.h"
#include "KPFileEdit.h"
#include "KPHistory.h"
#include "KPNavigator.h"
#include "KPWindowPanels.h"
#include "XPNotificationCenter.h"

#include <QMainWindow>
#include <QPointer>
#include <QTimer>
#include <memory>
#include <vector>

class IndexSource;
class KPArchiveCommands;
class KPCrumbController;
class KPDocumentCommands;
class KPEditHistory;
class KPEditWorker;
class KPFilingCommands;
class KPIndexMonitor;
class KPHistoryDialog;
class KPInfoWindow;
class KPInspector;
class KPInspectorController;
class KPLibraryController;
class KPLibraryModel;
class KPPreviewController;
class KPQuickLook;
class KPSearchField;
class KPSearchPopup;
class KPSidePanels;
class KPStatusLine;
class KPTagEditing;
class KPTagsWindow;
class KPToolBar;
class XPScanController;
class QMimeData;
struct KPEditReport;
struct KPImport;

// The controller of the one main window: owns the search, its history and the search field, puts
// the parts into their places and composes menus and toolbar from the features' commands.
//
// A search is applied by setSearchStateAndUpdateUI() alone; views ask for one as KPNavigator and
// hear from the searcher what holds.
// Threads: main. Ownership: the index's source and the monitor outlive the window.
class KPController : public QMainWindow, public KPNavigator
{
    Q_OBJECT

public:
    // The folders that are searched; empty: what was searched last. `index`: null where there is
    // none. KPQuickLook has to be there already, and to outlive it.
    KPController(IndexSource &source, const QStringList &folders, KPIndexMonitor *index);
    ~KPController() override;
    static KPController *instance(); // null: there is no window

    // --- Searching

    KPSearcher &searcher() override { return *m_searcher; }
    KPCrumbController &crumbController() { return *m_crumbs; }
    void setSearchStateAndUpdateUI(const KPSearchState::Ptr &state, bool addToHistory,
                                   const SourceItem &sourceItem = {},
                                   const LocationItem &locationItem = {}) override;
    void doSearch(const QString &text, bool enterStringIntoControl, bool clearStateFirst) override;
    void showSimilarDocuments(const KPDoc::Docs &documents) override;
    bool userIsCurrentlyTyping() const override { return m_typingTimer.isActive(); }
    void manageWindowTitle() override;
    void showTagMenu(KPTagName *tag, const QPoint &globalPosition) override;

    // The present state is one that can be kept as a bookmark.
    bool isCurrentSearchSavable() const;
    // From another program: 1 to 74 characters search, if nothing else is being looked for here.
    void performSpotlightSearchFromExternalAppWithString(const QString &text);
    void globalHotKeyPressed(); // the same with the clipboard's text

    const KPHistory &history() const { return m_history; }
    void backAction();
    void forwardAction();
    void allAction();
    void goToTodaysFiledDocuments();
    void searchModeSpotlight();

    // --- The window

    KPWindowPanels &panels() { return *m_panels; }
    KPSidePanels &sides() { return *m_sides; }
    KPCommands &commands() { return *m_commands; }
    // False: pages of a scan are not filed. The user is asked, and his answer ends the program.
    bool mayQuit();
    // Saves what is to be remembered: at every deactivation and at the end.
    void writeOutStateWhenQuiting();
    // The close button hides the window, as something else brings it back; else it ends the
    // program.
    void setHidesOnClose(bool hides) { m_hidesOnClose = hides; }
    // Nothing is being read, searched, drawn or written any more.
    bool isSettled() const;
    // What a backup does and what became of the last one; quietly. Empty: nothing to say.
    void showBackup(const QString &activity, const QString &problem);

    // --- Documents

    void selectByName(const QString &beginning);
    void findDocumentsAction();
    // Selects them, or shows the folder of the first where none is among the results.
    void showDocuments(const QStringList &paths);
    // In a window of its own for each, or one for all of many.
    void showInformation(const QStringList &paths);
    // What another program drops somewhere, by the one road of KPFilingCommands.
    bool importDropped(const QMimeData *dropped, KPImport how);
    KPFilingCommands &filing() { return *m_filing; }
    void editTags();
    // Selects them among what is shown; asks for their tags where wanted.
    void selectDocuments(const QStringList &paths, bool editsTags);

Q_SIGNALS:
    void currentSearchSavableChanged(bool isSavable);

protected:
    void closeEvent(QCloseEvent *event) override;
    void changeEvent(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    // Building.
    void buildWindow();
    void buildCommands();
    QList<KPCommand> fileCommands();
    QList<KPCommand> endCommands();
    QList<KPCommand> editCommands();
    QList<KPCommand> searchCommands();
    QList<KPCommand> panelCommands();
    QList<KPCommand> goCommands();
    QList<KPCommand> helpCommands();
    QList<KPCommand> documentCommands();
    QList<KPCommand> tagCommands();
    void connectSearchField(KPSearchField *field);
    void connectSearcher();
    void connectLibrary();
    void connectEditing();
    void connectTagEditing();
    void observe();
    void restoreSettings();
    void setMinWindowSize();
    void modifiersChanged(Qt::KeyboardModifiers modifiers);
    void showHistory();

    // Searching.
    void spotlightReplacementAction();
    void showUntaggedDocumentsAction(); // with Alt held: the tagged ones
    void searchModeFilenameFilter();
    void refreshSearch();
    void scanAction(); // the scan window
    void setSearchFieldString(const QString &text);
    void userTypingIntoSearchField();
    void userDoneTyping();
    void fieldEdited(const QString &text);
    KPSearchState::Ptr withWords(const KPSearchState::Ptr &state, const QString &text) const;
    KPSearchState::Ptr currentState() const; // never null
    void addToHistory(const KPSearchState::Ptr &state);
    void historyGoBack();
    void forgetSearchesAction();
    void setSearchMode(bool isSpotlight);
    void searchContentsOrFilenamesChanged();
    void showSearchMode();
    void setRecentSearches(const QStringList &searches);
    void goTo(const KPHistory::Entry &entry, void (KPHistory::*step)());
    void showStateOfSearch();
    KPSearchState::Ptr movedTo(const LocationItem &location, const KPSearchState::Ptr &state) const;
    void beginSearching(const QStringList &folders);
    void searchFinished(const QStringList &problems);
    void stopSearch();

    // What the window says.
    void showEmptyText();
    void showActivity();
    void showProblems();
    void showIndex();
    QStringList foldersNotIndexed() const;

    // Documents.
    void cancel(); // Escape
    void openFolder();
    void showAllIn(const QStringList &folders);
    void indexFolders();
    void renameTyped(KPDoc *doc, const QString &typed);
    void connectPreview();
    void closeFront();
    void showInfoWindow(const KPDoc::Docs &documents);
    void showInformation(const KPDoc::Docs &documents);
    void selectionShown();
    void showCounts();
    void report(const KPEditReport &report);
    QStringList suggestedTags() const;
    QStringList pathsOfSelection() const;
    KPDoc::Docs selectedDocs() const;
    QStringList pathsOfResults() const;
    void tagButtonShow(KPTagName *tag, bool isWanted);
    void removeTagFromSelected(KPTagName *tag);
    void quit();
    QStringList indexInWords() const;
    void userGuideAction() XP_REQUIRES(xpGuiThread);

    KPIndexMonitor *m_index;
    std::unique_ptr<KPSearcher> m_searcher;
    KPHistory m_history;
    std::unique_ptr<KPCrumbController> m_crumbs;
    QTimer m_typingTimer;
    bool m_isWaiting = false; // for the last delivery of a search
    bool m_hidesOnClose = false;
    bool m_wasSavable = false;
    QStringList m_problems; // of the search
    QString m_backupActivity;
    QString m_backupProblem;

    KPQuickLook &m_looks;
    // Data before views: destroyed after them.
    std::unique_ptr<KPLibraryModel> m_model;
    std::unique_ptr<KPEditWorker> m_worker;
    std::unique_ptr<KPEditHistory> m_edits;
    std::unique_ptr<KPTagEditing> m_tagEditing;
    std::unique_ptr<KPTagsWindow> m_tagsWindow; // made when it is first asked for
    std::unique_ptr<KPSidePanels> m_sides;
    std::unique_ptr<KPLibraryController> m_library;
    std::unique_ptr<KPInspectorController> m_inspection;
    std::unique_ptr<KPPreviewController> m_preview;
    std::unique_ptr<KPCommands> m_commands;
    std::unique_ptr<KPFilingCommands> m_filing;
    std::unique_ptr<KPDocumentCommands> m_documents;
    std::unique_ptr<KPArchiveCommands> m_archive;
    std::unique_ptr<KPSearchPopup> m_popup;
    std::unique_ptr<XPScanController> m_scans; // made when it is first asked for

    KPSearchField *m_searchField;
    KPWindowPanels *m_panels;
    KPToolBar *m_toolBar = nullptr;
    KPInspector *m_inspector;
    KPStatusLine *m_status;
    QPointer<KPHistoryDialog> m_historyDialog;
    std::vector<XPObservation> m_observations;
};

#pragma once

#include "KPFileEdit.h"

#include <QList>
#include <QMainWindow>
#include <QTimer>
#include <memory>

class KPDocsView;
class KPEditHistory;
class KPEditWorker;
class KPFilterBar;
class KPIndexMonitor;
class KPInspector;
class KPLibraryModel;
class KPQuickLook;
class KPSearcher;
class KPStatusLine;
class KPWindowActions;
class QDockWidget;
class QSlider;
class QToolButton;
struct KPEditReport;
struct KPSortKey;

// The main window: places its parts and connects them.
//
// Search: filter bar -> state -> searcher -> model -> grid. Edit: inspector or grid ->
// history -> worker, which tells the records, and the live search confirms it. Exactly one exists.
// Threads: main.
class KPController : public QMainWindow
{
    Q_OBJECT

public:
    // The folders that are searched; empty: the user's home. Starts searching at once. `index`
    // outlives the window; null where there is none. KPQuickLook has to be there already, and to
    // outlive it.
    KPController(std::unique_ptr<KPSearcher> searcher, const QStringList &folders,
                 KPIndexMonitor *index);
    ~KPController() override;

    // Nothing is being read, searched, drawn or written any more.
    bool isSettled() const;
    void selectByName(const QString &beginning);
    // Selects them, or shows the folder of the first where none is among the results.
    void showDocuments(const QStringList &paths);
    void showInformation(const QStringList &paths);
    // What a backup does and what became of the last one; quietly. Empty: nothing to say.
    void showBackup(const QString &activity, const QString &problem);

    // Commands, by the table in KPWindowActions.cpp.
    void openFolder();
    void indexFolders();
    void openSelected();
    void revealSelected();
    void renameSelected();
    void trashSelected();
    void fileSelected(); // with Alt held: copies into the managed folder
    void moveSelected();
    void copySelectedTo();
    void copySelected();
    void selectAll();
    void search();
    void filterTags();
    void quit();
    void editTags();
    void rateSelected(int stars);
    void undo();
    void redo();
    void zoomIn();
    void zoomOut();
    void setOrder(const KPSortKey &key);
    void toggleInspector();
    void showAbout();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void buildToolBar();
    void buildInspector();
    void connectSearch();
    void connectEditing();
    void connectIndex();
    void restoreSettings();
    void saveSettings() const;

    void renameTyped(const QString &path, const QString &oldName, const QString &typed);
    void startSearch();
    void stopSearch();
    void searchFinished(const QStringList &problems);
    void showEmptyText();
    void showIndex();
    void showActivity();
    void showProblems();
    QStringList foldersNotIndexed() const;
    void showSelection();
    void showCounts();
    void report(const KPEditReport &report);
    void bringSelected(bool copies);
    void showFolders();
    QStringList suggestedTags() const;

    std::unique_ptr<KPSearcher> m_searcher;
    KPIndexMonitor *m_index;
    QStringList m_folders;
    QStringList m_problems; // of the search
    QString m_backupActivity;
    QString m_backupProblem;
    QString m_shownPath; // whose picture the inspector shows
    bool m_searching = false;

    KPQuickLook &m_looks;
    // Data before views: destroyed after them.
    std::unique_ptr<KPLibraryModel> m_model;
    std::unique_ptr<KPEditWorker> m_worker;
    std::unique_ptr<KPEditHistory> m_history;

    KPFilterBar *m_filter;
    KPDocsView *m_view;
    KPInspector *m_inspector;
    KPStatusLine *m_status;
    QDockWidget *m_dock = nullptr;
    QSlider *m_zoom = nullptr;
    QToolButton *m_folderButton = nullptr;
    std::unique_ptr<KPWindowActions> m_actions;
    QTimer m_selectionTimer; // a burst of changes is shown once
};

#pragma once

#include "KPArrangedDocs.h"
#include "KPCommandTable.h"
#include "KPDocumentTargets.h"
#include "KPFileEdit.h"
#include "KPResultsDelivery.h"
#include "KPSearchState.h"
#include "KPSortOrder.h"
#include "XPNotificationCenter.h"

#include <QObject>
#include <QPointer>
#include <QSet>
#include <QTimer>
#include <memory>
#include <vector>

class KPBaseItem;
class KPDocsKeys;
class KPDocsList;
class KPDocsView;
class KPLibraryModel;
class KPLoupeController;
class KPNavigator;
class KPQuickLook;
class QKeyEvent;
class QAbstractScrollArea;
class QMimeData;
class QStackedWidget;
class QWidget;

// The centre of the main window: the documents found, as a grid, in groups or as a list, what of
// them is selected, the zoom, the order, and the commands on documents that need nothing but them.
//
// What else a view wants goes out as signals: edits of tags and ratings, renaming, deleting, files
// dropped; the window connects them with editing and filing.
// Threads: main. Ownership: navigator, model and pictures outlive it; the widget belongs to whom
// it is given to.
class KPLibraryController : public QObject, public KPDocumentTargets
{
    Q_OBJECT

public:
    enum LibraryMode {
        LibraryMode_NotSet = -1,
        LibraryMode_Thumbnails = 0,
        LibraryMode_List = 1,
        LibraryMode_Groups = 2
    };

    // Begins with the settings of the last time.
    KPLibraryController(KPNavigator &navigator, KPLibraryModel &model, KPQuickLook &pictures,
                        QObject *parent = nullptr);
    ~KPLibraryController() override;

    // What the window shows in its middle, and what takes the keys there.
    QWidget *widget() const;
    QAbstractScrollArea *resultsView() const;
    KPDocsView *docsView() const { return m_grid; }
    KPDocsList *docsTable() const { return m_list; }
    KPArrangedDocs &currentSearchController() { return m_docs; }
    KPLoupeController &loupeController() { return *m_loupe; }
    QList<KPCommand> commands();

    // --- Modes

    int libraryMode() const { return m_mode; }
    void setLibraryMode(int mode);

    // --- Zoom: the value of the window's slider, 0 to 1

    double currentSliderMagnification() const { return m_magnification; }
    void setCurrentSliderMagnification(double magnification);
    void zoomIn();
    void zoomOut();
    void maxZoom();
    void minZoom();

    // --- Order

    const KPSortOrder &sortOrder() const { return m_order; }
    KPSortKey::Field currentSortDescriptorKey() const { return m_order.keys.first().field; }
    bool currentSortIsAscending() const { return m_order.keys.first().ascending; }
    void arrangeByColumnAction(KPSortKey::Field field);
    void arrangeBySortAscendingAction() { setAscending(true); }
    void arrangeBySortDescendingAction() { setAscending(false); }

    // --- Selection

    bool hasSelection() const { return !m_docs.selection().isEmpty(); }
    qsizetype numberOfSelections() const { return m_docs.selection().count(); }
    bool hasMultipleSelection() const { return numberOfSelections() > 1; }
    void setSelections(const KPDoc::Docs &docs, bool scrollFirstToVisible);
    void scrollSelectionToVisible();
    // Those that are not shown yet are selected as soon as they are.
    void selectDocsAndEditTags(const KPDoc::Docs &docs);
    // Files that the present search is still to find, unless something else is selected or
    // searched before.
    void selectWhenShown(const QStringList &paths);
    void selectAll();

    // --- Commands on the selection

    void openSelectedExternallyAction() XP_REQUIRES(xpGuiThread);
    void openDocumentsExternally(const KPDoc::Docs &docs) XP_REQUIRES(xpGuiThread);
    // As "KPOpenWithMode" says.
    void openSelectedUsingUsersPreferredMethodAction() XP_REQUIRES(xpGuiThread);
    void openSelectedWithOtherAction(); // asks for the program
    void showPackageContentsAction();
    void revealSelectedAction();
    void editTitleForSelected();
    bool isSelectionFlagged() const;
    void flagSelectedAction() XP_REQUIRES(xpGuiThread); // takes flags off when all have one
    bool isSelectionHidden() const;
    void hideSelectedAction() XP_REQUIRES(xpGuiThread); // shows them again when all are hidden
    void setRatingsForSelected(int stars);
    void showAllDocumentsInFolderAction();
    void onlyShowSelectedDocumentsAction();
    void showSimilarToSelectedAction();
    void rebuildSelectedThumbnails() XP_REQUIRES(xpGuiThread);
    void rebuildAllThumbnails() XP_REQUIRES(xpGuiThread);

    // Whatever keeps the results from being drawn may be over.
    void redraw();
    // What is said where there is no document.
    void setSourceItem(const std::shared_ptr<KPBaseItem> &item);
    void setStartQueryRunning(bool isRunning);
    // Why there is nothing, and a command for it; an empty title: no reason but the search's.
    void setEmptyReason(const QString &title, const QString &hint = {}, QAction *remedy = nullptr);
    void writeOutStateWhenQuiting();

    // --- For commands of other features

    QList<KPDoc *> documents() const override { return m_docs.selectedDocs(); }
    qsizetype documentCount() const override { return numberOfSelections(); }
    QWidget *window() const override;
    void filesMovedOrDeleted() override;

    static constexpr double zoomStep = 0.02;
    static constexpr qsizetype mostOpenedUnasked = 5;

Q_SIGNALS:
    void libraryModeChanged(int mode);
    void magnificationChanged(double magnification);
    // The toolbar's pop-up is to show it (matchSortOrderPopupToCurrentSearchOrder).
    void sortOrderChanged(const KPSortOrder &order);
    void selectionChanged();
    // A burst of changes of the selected documents, told once.
    void selectedDocumentsChanged(const QList<KPDoc *> &docs);

    void editRequested(const KPFileEdit &edit);
    void tagEditorRequested(const QList<KPDoc *> &docs);
    void renameRequested(KPDoc *doc, const QString &name);
    void removeOrDeleteRequested(bool commandKey);
    // What another program dropped among the documents.
    void dropped(const QMimeData *data, bool copies); // valid in the call only
    void contextMenuRequested(const QPoint &globalPosition);
    void previewRequested(); // the space bar
    void cancelled();        // Escape

private:
    struct Wanted
    {
        KPDoc::Docs docs; // to be selected as soon as they are shown
        bool editsTags = false;
    };
    struct WantedFiles
    {
        QStringList paths;
        KPSearchState::Ptr state; // that is to find them
    };

    void connectViews();
    void connectModel();
    void installKeys() XP_REQUIRES(xpGuiThread);
    bool handleKeyDown(const QKeyEvent &event) XP_REQUIRES(xpGuiThread);
    void restoreState();
    void applyOrder();
    void setAscending(bool isAscending);
    void takeDelivery(const KPResultsDelivery::Ptr &delivery);
    void takeChanged(int first, int last);
    void tellChanged();
    void selectWanted();
    void selectWantedFiles();
    KPSearchState::Ptr freshState() const;
    void showEmptyFacts();
    void clearFilters();
    void startDrag(int row);
    template <typename Test>
    bool areAllSelected(Test test) const;
    QList<KPCommand> viewCommands();
    QList<KPCommand> documentCommands();
    QMenu *makeSortMenu();
    QMenu *makeRateMenu();
    QMenu *makeOpenWithMenu();

    KPNavigator &m_navigator;
    KPLibraryModel &m_model;
    KPQuickLook &m_pictures;
    KPArrangedDocs m_docs;
    std::unique_ptr<KPDocsKeys> m_keys;
    QPointer<QStackedWidget> m_stack;
    KPDocsView *m_grid;
    KPDocsList *m_list;
    std::unique_ptr<KPLoupeController> m_loupe;
    int m_mode = LibraryMode_Thumbnails;
    double m_magnification = 0;
    KPSortOrder m_order;
    KPSearchState::Ptr m_shownState; // of the last delivery
    Wanted m_wanted;
    WantedFiles m_wantedFiles;
    std::shared_ptr<KPBaseItem> m_sourceItem;
    bool m_isStartQueryRunning = false;
    std::optional<std::pair<QString, QString>> m_reason;
    QTimer m_telling;
    QSet<KPDoc *> m_changed; // since they were last told of
    bool m_areAllChanged = false;
    std::vector<XPObservation> m_observations;
};

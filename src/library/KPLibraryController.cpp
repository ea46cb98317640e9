#include "KPLibraryController.h"

#include "KPBaseItem.h"
#include "KPDocCache.h"
#include "KPDocsKeys.h"
#include "KPDocsList.h"
#include "KPDocsView.h"
#include "KPEmptyPlace.h"
#include "KPLoupeController.h"
#include "KPNavigator.h"
#include "KPQuickLook.h"
#include "KPSearcher.h"
#include "UserDefaults.h"
#include "XPLog.h"

#include <QDrag>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QMimeData>
#include <QStackedWidget>
#include <algorithm>
#include <chrono>

using namespace std::chrono_literals;

static const QString modeKey = QStringLiteral("KPLibraryMode");
static const QString sizeKey = QStringLiteral("KPThumbnailSize");
static const QString sortKey = QStringLiteral("KPSavedSortDescriptorsDataRep");

KPLibraryController::KPLibraryController(KPNavigator &navigator, KPLibraryModel &model,
                                         KPQuickLook &pictures, QObject *parent)
    : QObject(parent), m_navigator(navigator), m_model(model), m_pictures(pictures),
      m_keys(std::make_unique<KPDocsKeys>(m_docs)), m_stack(new QStackedWidget),
      m_grid(new KPDocsView(m_docs, pictures, *m_keys)),
      m_list(new KPDocsList(model, m_docs, *m_keys)),
      m_loupe(std::make_unique<KPLoupeController>(*m_grid, pictures))
{
    xpGuiThread.assertHere();
    m_stack->addWidget(m_grid);
    m_stack->addWidget(m_list);
    m_stack->setFocusProxy(m_grid);
    m_grid->setKeepsStill([this] { return m_navigator.userIsCurrentlyTyping(); });
    m_telling.setSingleShot(true);
    connect(&m_telling, &QTimer::timeout, this, &KPLibraryController::tellChanged);
    installKeys();
    connectViews();
    connectModel();
    for (const char *key :
         {"KPShowTitle", "KPShowTags", "KPShowRating", "KPSizeThumbnailsToFit",
          "KPLibraryBackgroundColour", "KPLibraryTextColour", "KPDefaultGroupState"}) {
        m_observations.push_back(UserDefaults::standard().addObserver(
            QStringLiteral("values.") + QLatin1String(key),
            [this](const PropertyValue &) { m_grid->updateSettings(); }));
    }
    for (const char *key : {"KPCacheSizeMB", "KPCacheDaysOld", "KPQuicklookCacheSlowImages",
                            "KPQuicklookBordersImages", "KPQuicklookBordersMovies",
                            "KPQuicklookBordersOther", "KPQuicklookBordersOnLargeThumbs"}) {
        m_observations.push_back(UserDefaults::standard().addObserver(
            QStringLiteral("values.") + QLatin1String(key), [this](const PropertyValue &) {
                xpGuiThread.assertHere();
                KPQuickLook::updateCachedPrefs();
                m_grid->updateSettings();
            }));
    }
    restoreState();
}

// The views use what is here: they go first, if nobody else did away with them.
KPLibraryController::~KPLibraryController()
{
    m_loupe.reset();
    delete m_stack;
}

QWidget *KPLibraryController::widget() const
{
    return m_stack;
}

QAbstractScrollArea *KPLibraryController::resultsView() const
{
    return m_mode == LibraryMode_List ? static_cast<QAbstractScrollArea *>(m_list) : m_grid;
}

QWidget *KPLibraryController::window() const
{
    return m_stack->window();
}

void KPLibraryController::connectViews()
{
    const auto open = [this] {
        xpGuiThread.assertHere();
        openSelectedUsingUsersPreferredMethodAction();
    };
    connect(m_grid, &KPDocsView::openRequested, this, open);
    connect(m_list, &KPDocsList::openRequested, this, open);
    connect(m_grid, &KPDocsView::zoomRequested, this,
            [this](int steps) { steps > 0 ? zoomIn() : zoomOut(); });
    connect(m_grid, &KPDocsView::contextMenuRequested, this,
            &KPLibraryController::contextMenuRequested);
    connect(m_list, &KPDocsList::contextMenuRequested, this,
            &KPLibraryController::contextMenuRequested);
    connect(m_grid, &KPDocsView::renameRequested, this, &KPLibraryController::renameRequested);
    connect(m_list, &KPDocsList::renameRequested, this, &KPLibraryController::renameRequested);
    connect(m_grid, &KPDocsView::dropped, this, &KPLibraryController::dropped);
    connect(m_list, &KPDocsList::dropped, this, &KPLibraryController::dropped);
    connect(m_list, &KPDocsList::dragRequested, this, &KPLibraryController::startDrag);
    connect(m_list, &KPDocsList::sortRequested, this, [this](int column) {
        if (const auto field = KPLibraryModel::sortFieldOf(KPLibraryModel::Column(column)))
            arrangeByColumnAction(*field);
    });
    connect(m_list, &KPDocsList::flagClicked, this, [](const KPDoc *doc) {
        xpGuiThread.assertHere();
        KPDoc::setFlagged({doc->filePath()}, !doc->isFlagged());
    });
    connect(m_list, &KPDocsList::ratingClicked, this, [this](const KPDoc *doc, int stars) {
        Q_EMIT editRequested({{doc->filePath()}, {}, stars});
    });
    connect(&m_docs, &KPArrangedDocs::selectionChanged, this,
            &KPLibraryController::selectionChanged);
    connect(&m_docs, &KPArrangedDocs::scrollWanted, this, [this](int row) {
        m_grid->scrollToRow(row);
        m_list->scrollToRow(row);
    });
    connect(&m_grid->emptyPlace(), &KPEmptyPlace::clearFiltersRequested, this,
            &KPLibraryController::clearFilters);
}

void KPLibraryController::connectModel()
{
    connect(&m_model, &QAbstractItemModel::dataChanged, this,
            [this](const QModelIndex &first, const QModelIndex &last) {
                takeChanged(first.row(), last.row());
            });
    const KPSearcher &searcher = m_navigator.searcher();
    // The model took it before.
    connect(&searcher, &KPSearcher::delivered, this, &KPLibraryController::takeDelivery);
    connect(&searcher, &KPSearcher::searchStarted, this, &KPLibraryController::showEmptyFacts);
    connect(&searcher, &KPSearcher::finished, this, &KPLibraryController::showEmptyFacts);
    connect(&searcher, &KPSearcher::finished, this, &KPLibraryController::selectWanted);
    if (searcher.currentDelivery())
        takeDelivery(searcher.currentDelivery());
}

// Deliveries.

void KPLibraryController::takeDelivery(const KPResultsDelivery::Ptr &delivery)
{
    const KPSearchState::Ptr state = delivery ? delivery->state : nullptr;
    const bool isSame = state == m_shownState ||
                        (state && m_shownState && state->isEqualToSearchState(*m_shownState));
    m_shownState = state;
    m_docs.setArrangedObjects(delivery ? delivery->documents : KPResultsArrangement(), isSame);
    showEmptyFacts();
    selectWanted();
    selectWantedFiles();
}

// Rows are the model's, which may be ahead of what is arranged.
void KPLibraryController::takeChanged(int first, int last)
{
    static constexpr int many = 1000; // above it, all are looked at
    m_docs.tellChanged(first, last);
    if (m_docs.selection().isEmpty())
        return;
    m_areAllChanged = m_areAllChanged || last - first >= many;
    for (int row = first; row <= last && !m_areAllChanged; ++row)
        m_changed.insert(m_model.document(row));
    if (!m_telling.isActive())
        m_telling.start();
}

// The next time comes several times as late as this one took, so that a burst of changes of many
// documents leaves the main thread free.
void KPLibraryController::tellChanged()
{
    QElapsedTimer timer;
    timer.start();
    KPDoc::Docs docs = m_docs.selectedDocs();
    const QSet<KPDoc *> changed = std::exchange(m_changed, {});
    if (!std::exchange(m_areAllChanged, false))
        docs.removeIf([&](KPDoc *doc) { return !changed.contains(doc); });
    if (!docs.isEmpty())
        Q_EMIT selectedDocumentsChanged(docs);
    m_telling.setInterval(std::clamp(std::chrono::milliseconds(4 * timer.elapsed()), 50ms, 1000ms));
}

// Modes.

void KPLibraryController::setLibraryMode(int mode)
{
    if (mode == LibraryMode_NotSet) {
        qCWarning(xpLog, "trying to set  library mode to LibraryMode_NotSet");
        return;
    }
    if (mode < LibraryMode_Thumbnails || mode > LibraryMode_Groups) {
        qCWarning(xpLog, "trying to set a weird library mode %ld ", static_cast<long>(mode));
        return;
    }
    if (mode == m_mode)
        return;
    const bool hadFocus = m_stack->isAncestorOf(m_stack->window()->focusWidget());
    const int current = m_docs.selection().current();
    m_mode = mode;
    QWidget *view = mode == LibraryMode_List ? static_cast<QWidget *>(m_list) : m_grid;
    m_stack->setFocusProxy(view);
    m_stack->setCurrentWidget(view);
    m_grid->setGrouped(mode == LibraryMode_Groups);
    m_loupe->setGridShown(mode != LibraryMode_List);
    if (hadFocus)
        view->setFocus();
    applyOrder();
    m_grid->scrollToRow(current);
    m_list->scrollToRow(current);
    Q_EMIT libraryModeChanged(mode);
}

// Zoom.

void KPLibraryController::setCurrentSliderMagnification(double magnification)
{
    m_magnification = std::clamp(magnification, 0.0, 1.0);
    m_grid->setThumbnailWidthUnitless(m_magnification);
    Q_EMIT magnificationChanged(m_magnification);
}

void KPLibraryController::zoomIn()
{
    setCurrentSliderMagnification(m_magnification + zoomStep);
}

void KPLibraryController::zoomOut()
{
    setCurrentSliderMagnification(m_magnification - zoomStep);
}

void KPLibraryController::maxZoom()
{
    setCurrentSliderMagnification(1);
}

void KPLibraryController::minZoom()
{
    setCurrentSliderMagnification(0);
}

// Order.

void KPLibraryController::applyOrder()
{
    m_order.group =
        m_mode == LibraryMode_Groups ? std::optional(m_order.keys.first()) : std::nullopt;
    m_navigator.searcher().setResultsOrder(m_order);
    int sorted = -1;
    for (int column = 0; column < KPLibraryModel::ColumnCount; ++column) {
        if (KPLibraryModel::sortFieldOf(KPLibraryModel::Column(column)) ==
            currentSortDescriptorKey())
            sorted = column;
    }
    m_list->showSortOrder(sorted, currentSortIsAscending());
    Q_EMIT sortOrderChanged(m_order);
}

// The order before breaks ties.
void KPLibraryController::arrangeByColumnAction(KPSortKey::Field field)
{
    static constexpr qsizetype mostKeys = 3;
    if (field == currentSortDescriptorKey()) {
        setAscending(!currentSortIsAscending());
        return;
    }
    m_order.keys.removeIf([field](const KPSortKey &key) { return key.field == field; });
    m_order.keys.prepend({field, true});
    m_order.keys.resize(std::min(m_order.keys.size(), mostKeys));
    applyOrder();
}

void KPLibraryController::setAscending(bool isAscending)
{
    if (m_order.keys.first().ascending == isAscending)
        return;
    m_order.keys.first().ascending = isAscending;
    applyOrder();
}

// State.

void KPLibraryController::restoreState()
{
    const UserDefaults &defaults = UserDefaults::standard();
    const PropertyValue saved = defaults.value(sortKey);
    if (const auto keys = KPSortOrder::keysFromText(QString::fromUtf8(saved.data()));
        keys && !keys->isEmpty())
        m_order.keys = *keys;
    m_grid->setThumbnailWidthUnitless(0);
    setCurrentSliderMagnification(defaults.doubleValue(sizeKey));
    const qint64 mode = defaults.integerValue(modeKey);
    if (mode == LibraryMode_List || mode == LibraryMode_Groups)
        setLibraryMode(static_cast<int>(mode));
    else
        applyOrder();
}

void KPLibraryController::writeOutStateWhenQuiting()
{
    UserDefaults &defaults = UserDefaults::standard();
    const auto write = [&](const QString &key, const PropertyValue &value) {
        if (value != defaults.value(key))
            defaults.setValue(key, value);
    };
    QStringList keys;
    for (const KPSortKey &key : m_order.keys)
        keys.append(key.toText());
    write(modeKey, PropertyValue::integer(m_mode));
    write(sizeKey, PropertyValue::real(m_magnification));
    write(sortKey, keys.join(u',').toUtf8());
    m_list->writeOutState();
}

// Selection.

void KPLibraryController::setSelections(const KPDoc::Docs &docs, bool scrollFirstToVisible)
{
    m_docs.setSelections(docs, scrollFirstToVisible);
}

void KPLibraryController::scrollSelectionToVisible()
{
    const KPSelection &selection = m_docs.selection();
    const int row =
        selection.isSelected(selection.current()) ? selection.current() : selection.first();
    m_grid->scrollToRow(row);
    m_list->scrollToRow(row);
}

void KPLibraryController::selectAll()
{
    m_docs.selectAll();
}

void KPLibraryController::selectDocsAndEditTags(const KPDoc::Docs &docs)
{
    m_wanted = {docs, true};
    selectWanted();
}

void KPLibraryController::selectWhenShown(const QStringList &paths)
{
    m_docs.selectNone();
    m_wantedFiles = {paths, m_navigator.searcher().searchState()};
    selectWantedFiles();
}

// The index may hear of a new file after the search is over.
void KPLibraryController::selectWantedFiles()
{
    if (m_wantedFiles.paths.isEmpty())
        return;
    const KPSearchState::Ptr state = m_navigator.searcher().searchState();
    if (m_docs.selection().count() > 0 || state != m_wantedFiles.state) {
        m_wantedFiles = {};
        return;
    }
    KPDoc::Docs shown;
    for (const QString &path : std::as_const(m_wantedFiles.paths)) {
        KPDoc *doc = KPDocCache::docAtPathIfExists(path);
        if (doc != nullptr && m_docs.rowOf(doc) >= 0)
            shown.append(doc);
    }
    const bool isAll = shown.size() == m_wantedFiles.paths.size();
    if (shown.isEmpty() || (!isAll && m_navigator.searcher().isSearching()))
        return;
    m_wantedFiles = {};
    m_docs.setSelections(shown, true);
}

// When the search is over, what was found of them has to do.
void KPLibraryController::selectWanted()
{
    if (m_wanted.docs.isEmpty())
        return;
    KPDoc::Docs shown = m_wanted.docs;
    shown.removeIf([this](const KPDoc *doc) { return m_docs.rowOf(doc) < 0; });
    const bool isAll = shown.size() == m_wanted.docs.size();
    if (!isAll && m_navigator.searcher().isSearching())
        return;
    const Wanted wanted = std::exchange(m_wanted, {});
    m_docs.setSelections(shown, true);
    // Tags are edited whether or not the present search shows the documents.
    if (wanted.editsTags)
        Q_EMIT tagEditorRequested(wanted.docs);
}

// A file that a command moved may be out of the results before the index says so.
void KPLibraryController::filesMovedOrDeleted()
{
    redraw();
    Q_EMIT selectionChanged();
}

void KPLibraryController::redraw()
{
    m_grid->viewport()->update();
    m_list->viewport()->update();
}

void KPLibraryController::startDrag(int row)
{
    const KPDoc::Docs docs = m_docs.selectedDocs();
    if (docs.isEmpty() || row >= m_docs.count())
        return;
    auto *drag = new QDrag(m_list);
    drag->setMimeData(KPDocsView::mimeData(docs));
    drag->setPixmap(m_grid->dragPicture(*m_docs.at(row), docs.size()));
    drag->setHotSpot({56, 64});
    drag->exec(Qt::CopyAction, Qt::CopyAction);
}

// Keys.

void KPLibraryController::installKeys()
{
    m_keys->handleKeyDown = [this](const QKeyEvent &event) {
        xpGuiThread.assertHere();
        return handleKeyDown(event);
    };
    m_keys->removeOrDelete = [this](bool commandKey) {
        Q_EMIT removeOrDeleteRequested(commandKey);
    };
    m_keys->cancel = [this] { Q_EMIT cancelled(); };
    m_keys->scrollSelectionToVisible = [this] { scrollSelectionToVisible(); };
}

bool KPLibraryController::handleKeyDown(const QKeyEvent &event)
{
    const bool isPlain = !(event.modifiers() & ~Qt::KeypadModifier);
    const bool isReturn = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
    if (isPlain && event.key() == Qt::Key_Space && hasSelection()) {
        Q_EMIT previewRequested();
        return true;
    }
    if (!isPlain || !isReturn || !hasSelection())
        return false;
    openSelectedUsingUsersPreferredMethodAction();
    return true;
}

// Where there is nothing.

void KPLibraryController::setSourceItem(const std::shared_ptr<KPBaseItem> &item)
{
    m_sourceItem = item;
    showEmptyFacts();
}

void KPLibraryController::setStartQueryRunning(bool isRunning)
{
    m_isStartQueryRunning = isRunning;
    showEmptyFacts();
}

void KPLibraryController::setEmptyReason(const QString &title, const QString &hint, QAction *remedy)
{
    m_reason = title.isEmpty() ? std::nullopt : std::optional(std::pair(title, hint));
    m_grid->emptyPlace().setRemedy(remedy);
    showEmptyFacts();
}

// That of the source which is looked at, with nothing added to it.
KPSearchState::Ptr KPLibraryController::freshState() const
{
    const KPSearchState::Ptr own = m_sourceItem ? m_sourceItem->searchState() : nullptr;
    return own ? own : KPSearchState::searchStateWithNativeDictionary({});
}

void KPLibraryController::showEmptyFacts()
{
    const KPSearcher &searcher = m_navigator.searcher();
    const KPSearchState::Ptr state = searcher.searchState();
    KPEmptyPlace::Facts facts;
    facts.isSearching = searcher.isSearching();
    facts.isStarting = m_isStartQueryRunning;
    if (state) {
        // Where one looks is no narrowing.
        const auto wanted = state->searchStateWithNewContstraintFolders({});
        const auto fresh = freshState()->searchStateWithNewContstraintFolders({});
        facts.isNarrowed =
            !wanted->isBlank() && !wanted->isEqualToSearchStateIgnorePostContraint(*fresh);
    }
    if (m_reason)
        facts.reason = {m_reason->first, m_reason->second};
    if (m_sourceItem) {
        facts.source = {m_sourceItem->noDocumentsString(), m_sourceItem->noDocumentsSubString()};
        facts.sourceNarrowed = {m_sourceItem->noDocumentsAfterSearchString(),
                                m_sourceItem->noDocumentsAfterSearchSubString()};
    }
    m_grid->emptyPlace().setFacts(facts);
}

void KPLibraryController::clearFilters()
{
    m_navigator.setSearchStateAndUpdateUI(freshState(), true);
}

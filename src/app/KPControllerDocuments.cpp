// The documents in the window: what is selected, what is edited, and the commands on them.
#include "KPController.h"
#include "KPDocCache.h"
#include "KPDocsView.h"
#include "KPDocumentMenus.h"
#include "KPEditHistory.h"
#include "KPEditSummary.h"
#include "KPFileType.h"
#include "KPFilingCommands.h"
#include "KPInspector.h"
#include "KPLibraryModel.h"
#include "KPQuickLook.h"
#include "KPSearchField.h"
#include "KPSidePanels.h"
#include "KPStatusLine.h"
#include "Karvex.h"
#include "KarvexPrefs.h"
#include "UserDefaults.h"
#include "XPFileUrls.h"
#include "XPPath.h"
#include "XPPrompts.h"
#include "XPWorkspace.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QScrollBar>
#include <cmath>

using Menu = KPCommandMenu;

static constexpr int manyFiles = 6; // opening as many asks first
static constexpr double zoomStep = 0.02;

QList<KPCommand> KPController::documentCommands()
{
    const auto selected = [this] {
        return KPCommandState{.isEnabled = m_view->selectedCount() > 0};
    };
    QList<KPCommand> table{
        {.id = QT_TRID_NOOP("KPOpen"),
         .menu = Menu::Documents,
         .run = [this] { openSelected(); },
         .state = selected,
         .symbol = "open",
         .isOnDocuments = true,
         .shownKey = "Return"},
        {.id = QT_TRID_NOOP("KPReveal"),
         .menu = Menu::Documents,
         .shortcut = QKeySequence(Qt::CTRL | Qt::Key_R),
         .run = [this] { revealSelected(); },
         .state = selected,
         .symbol = "reveal",
         .isOnDocuments = true,
         .endsGroup = true},
        {.id = QT_TRID_NOOP("KPEditTags"),
         .menu = Menu::Documents,
         .shortcut = QKeySequence(Qt::CTRL | Qt::Key_T),
         .run = [this] { editTags(); },
         .state = selected,
         .symbol = "tag",
         .isOnDocuments = true},
        {.id = QT_TRID_NOOP("KPRate"),
         .menu = Menu::Documents,
         .state = selected,
         .symbol = "star",
         .isOnDocuments = true,
         .endsGroup = true,
         .submenu = [this] { return m_documentMenus->makeRateMenu(); }},
        {.id = QT_TRID_NOOP("KPCopyFiles"),
         .menu = Menu::Edit,
         .shortcut = QKeySequence::Copy,
         .run = [this] { copySelected(); },
         .state = selected,
         .symbol = "copy",
         .isOnDocuments = true},
        m_filing->pasteCommand(),
        {.id = QT_TRID_NOOP("KPSelectAll"),
         .menu = Menu::Edit,
         .shortcut = QKeySequence::SelectAll,
         .run = [this] { m_view->selectAll(); },
         .state = [this] { return KPCommandState{.isEnabled = m_model->rowCount() > 0}; },
         .endsGroup = true},
    };
    return table;
}

void KPController::connectLibrary()
{
    m_documentMenus->sort = [this](const KPSortKey &key) { setOrder(key); };
    m_documentMenus->rate = [this](int stars) { rateSelected(stars); };
    connect(m_sides.get(), &KPSidePanels::left, m_view, qOverload<>(&QWidget::setFocus));
    connect(m_searchField, &KPSearchField::left, m_view, qOverload<>(&QWidget::setFocus));
    connect(m_searchField, &KPSearchField::finished, m_view, qOverload<>(&QWidget::setFocus));
    connect(m_searchField, &KPSearchField::pageRequested, this, [this](int direction) {
        QScrollBar *bar = m_view->verticalScrollBar();
        bar->setValue(bar->value() + direction * bar->pageStep());
    });
    connect(m_status, &KPStatusLine::zoomChanged, m_view, &KPDocsView::setZoom);
    for (const auto signal : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved})
        connect(m_model.get(), signal, this, &KPController::showCounts);
    connect(m_model.get(), &QAbstractItemModel::modelReset, this, &KPController::showCounts);

    m_selectionTimer.setSingleShot(true);
    m_selectionTimer.setInterval(0);
    const auto later = [this] { m_selectionTimer.start(); };
    connect(&m_selectionTimer, &QTimer::timeout, this, &KPController::showSelection);
    connect(m_view, &KPDocsView::selectionMoved, this, later);
    connect(m_model.get(), &QAbstractItemModel::dataChanged, this, later);
    connect(&m_looks, &KPQuickLook::looksReady, this, [this, later](const QList<KPDoc *> &docs) {
        const auto isShown = [this](const KPDoc *doc) { return doc->filePath() == m_shownPath; };
        if (std::any_of(docs.begin(), docs.end(), isShown))
            later();
    });
}

void KPController::connectEditing()
{
    connect(m_view, &KPDocsView::openRequested, this, &KPController::openSelected);
    connect(m_view, &KPDocsView::ratingTyped, this, &KPController::rateSelected);
    connect(m_view, &KPDocsView::zoomRequested, this, &KPController::zoom);
    m_view->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_view, &QWidget::customContextMenuRequested, this, [this](const QPoint &at) {
        if (m_view->selectedCount() == 0)
            return;
        auto *menu = new QMenu(this);
        menu->setAttribute(Qt::WA_DeleteOnClose);
        m_commands->fillDocumentsMenu(menu);
        menu->popup(m_view->viewport()->mapToGlobal(at));
    });
    m_inspector->setSuggestions([this] { return suggestedTags(); });
    connect(m_inspector, &KPInspector::left, m_view, qOverload<>(&QWidget::setFocus));
    connect(m_inspector, &KPInspector::editRequested, m_edits.get(), &KPEditHistory::edit);
    connect(m_edits.get(), &QUndoStack::indexChanged, m_commands.get(),
            qOverload<>(&KPCommands::update));
    connect(m_worker.get(), &KPEditWorker::progressed, m_status, &KPStatusLine::showEditing);
    connect(m_worker.get(), &KPEditWorker::reported, this, &KPController::report);
    connect(m_status, &KPStatusLine::stopEditRequested, m_worker.get(), &KPEditWorker::stop);
}

// --- Selection

void KPController::showCounts()
{
    m_status->showCounts(m_model->rowCount(), m_view->selectedCount(), 0);
}

void KPController::showSelection()
{
    const KPDoc::Docs documents = selectedDocs();
    KPInspector::Appearance appearance;
    std::vector<KPQuickLook::Wanted> wanted;
    m_shownPath.clear();
    if (!documents.isEmpty()) {
        KPDoc &first = *documents.first();
        m_shownPath = first.filePath();
        const double side = KPInspector::pictureSide * m_inspector->devicePixelRatioF();
        wanted.push_back({&first, static_cast<int>(std::ceil(side))});
        const auto look = m_looks.look(first);
        appearance = {QPixmap::fromImage(look.picture),
                      look.uti.isEmpty()
                          ? KPFileType::preferredUTIForExtension(XPPath::extension(first.fsName()))
                          : look.uti};
    }
    m_looks.want(m_inspector, std::move(wanted));
    const KPSelectionFacts facts(documents);
    m_inspector->show(documents, appearance);
    m_documentMenus->showRating(facts.rating);
    m_status->showCounts(m_model->rowCount(), documents.size(), facts.size);
    m_commands->update();
    manageWindowTitle();
}

QStringList KPController::pathsOfSelection() const
{
    return m_view->selectedPaths();
}

KPDoc::Docs KPController::selectedDocs() const
{
    KPDoc::Docs docs;
    for (const QString &path : m_view->selectedPaths()) {
        if (KPDoc *doc = KPDocCache::docAtPathIfExists(path))
            docs.append(doc);
    }
    return docs;
}

void KPController::selectByName(const QString &beginning)
{
    const auto *names = m_model.get();
    const QModelIndexList found =
        names->match(names->index(0), Qt::DisplayRole, beginning, -1, Qt::MatchStartsWith);
    for (const QModelIndex &index : found)
        m_view->selectionModel()->select(index, QItemSelectionModel::Select);
    if (!found.isEmpty())
        m_view->selectionModel()->setCurrentIndex(found.first(), QItemSelectionModel::NoUpdate);
}

QStringList KPController::suggestedTags() const
{
    return Karvex::removeDuplicateTags(KarvexPrefs::recentTags() + m_model->knownTags());
}

// --- Editing

void KPController::report(const KPEditReport &report)
{
    if (!m_worker->isBusy())
        m_status->endEditing();
    if (!report.failures.isEmpty())
        XPPrompts::current().alert(KPEditSummary::title(report), KPEditSummary::details(report));
    else if (report.stopped)
        m_status->showMessage(qtTrId("KPEditStopped", static_cast<int>(report.changed)), 8000);
    m_selectionTimer.start(); // what failed is shown as it was
}

void KPController::rateSelected(int stars)
{
    m_edits->edit({m_view->selectedPaths(), {}, stars});
}

// --- Commands

static void openAll(const QStringList &paths)
{
    for (const QString &path : paths) {
        if (const auto error = XPWorkspace::open(path)) {
            XPPrompts::current().alert(
                qtTrId("KPCannotOpen").arg(XPPath::printable(XPPath::fileName(path))),
                error->message);
            return; // the next would fail for the same reason
        }
    }
}

void KPController::openSelected()
{
    const QStringList paths = m_view->selectedPaths();
    if (paths.size() < manyFiles) {
        openAll(paths);
        return;
    }
    const auto count = static_cast<int>(paths.size());
    XPPrompts::current().ask({qtTrId("KPOpenManyTitle", count).arg(QLocale().toString(count)),
                              qtTrId("KPOpenManyText"),
                              {qtTrId("KPOpen"), qtTrId("KPCancel")},
                              1},
                             [paths](int answer) {
                                 if (answer == 0)
                                     openAll(paths);
                             });
}

void KPController::revealSelected()
{
    XPWorkspace::reveal(m_view->selectedPaths());
}

void KPController::copySelected()
{
    if (const QStringList paths = m_view->selectedPaths(); !paths.isEmpty())
        QGuiApplication::clipboard()->setMimeData(XPFileUrls::mimeData(paths));
}

void KPController::zoom(int steps)
{
    m_view->setZoom(m_view->zoom() + steps * zoomStep);
    m_status->setZoom(m_view->zoom());
    m_commands->update();
}

void KPController::setOrder(const KPSortKey &key)
{
    m_searcher->setResultsOrder({{key}, std::nullopt});
    m_documentMenus->showOrder(key);
    UserDefaults::standard().setValue(QStringLiteral("KPSortOrder"), key.toText());
}

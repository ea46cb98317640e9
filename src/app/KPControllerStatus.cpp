// What the window says of its search and of the index: title, status line, empty results.
#include "KPController.h"
#include "KPCrumbController.h"
#include "KPIndexMonitor.h"
#include "KPLibraryController.h"
#include "KPLibraryModel.h"
#include "KPLocationItem.h"
#include "KPQuickLook.h"
#include "KPSearcher.h"
#include "KPStatusLine.h"
#include "XPFolders.h"
#include "XPPath.h"
#include "XPVolumes.h"

#include <QFileDialog>

void KPController::searchFinished(const QStringList &problems)
{
    m_isWaiting = false;
    m_status->showSearching(false);
    m_problems = problems;
    showProblems();
    showEmptyText();
    showCounts();
}

void KPController::stopSearch()
{
    m_searcher->stop();
    searchFinished({});
    m_status->showMessage(qtTrId("KPSearchStopped"), 5000);
}

void KPController::showProblems()
{
    QStringList problems = m_problems;
    if (m_index)
        problems += m_index->problems();
    if (!m_looks.problem().isEmpty())
        problems.append(m_looks.problem());
    if (!m_backupProblem.isEmpty())
        problems.append(m_backupProblem);
    m_status->showProblems(problems);
}

void KPController::showActivity()
{
    const QString activity = m_index ? m_index->activity() : QString();
    m_status->showIndex(activity.isEmpty() ? m_backupActivity : activity);
}

void KPController::showBackup(const QString &activity, const QString &problem)
{
    m_backupActivity = activity;
    m_backupProblem = problem;
    showActivity();
    showProblems();
}

void KPController::showIndex()
{
    showActivity();
    showProblems();
    showEmptyText();
    m_commands->update();
}

QStringList KPController::foldersNotIndexed() const
{
    QStringList missing;
    for (const QString &folder : currentState()->constraintFolders()) {
        // Names of places are not paths.
        if (m_index && folder.startsWith(u'/') && !m_index->isIndexed(folder))
            missing.append(folder);
    }
    return missing;
}

// Only what the search itself does not know: the grid says all else.
void KPController::showEmptyText()
{
    const QStringList missing = foldersNotIndexed();
    m_library->setStartQueryRunning(m_index && !m_index->isSettled());
    if (!missing.isEmpty())
        m_library->setEmptyReason(
            qtTrId("KPNotIndexed").arg(XPPath::printable(XPPath::fileName(missing.first()))),
            qtTrId("KPNotIndexedHint"), m_commands->action("KPIndexFolder"));
    else if (!m_problems.isEmpty())
        m_library->setEmptyReason(qtTrId("KPSearchFailed"), XPPath::printable(m_problems.first()),
                                  m_commands->action("KPRefresh"));
    else
        m_library->setEmptyReason({});
}

// --- Folders and the title

void KPController::openFolder()
{
    const auto place = m_crumbs->currentLocation();
    auto *dialog =
        new QFileDialog(this, qtTrId("KPOpenFolderTitle"), place ? place->path : XPFolders::home());
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString &folder) {
        showAllIn({XPFolders::realFolder(folder).valueOr(folder)});
    });
    dialog->open();
}

// In folders that were asked for everything is shown, elsewhere what belongs to the library.
void KPController::showAllIn(const QStringList &folders)
{
    setSearchStateAndUpdateUI(KPSearchState::searchStateWithNativeDictionary({}), true,
                              m_crumbs->allDocumentsItem(),
                              std::make_shared<KPLocationItem>(folders));
}

void KPController::indexFolders()
{
    for (const QString &folder : foldersNotIndexed())
        m_index->addFolder(folder);
    refreshSearch();
}

static QString shortened(const QString &path)
{
    return XPPath::printable(XPFolders::abbreviateWithTilde(path));
}

// The one selected document with its folder, else where the search looks.
void KPController::manageWindowTitle()
{
    const KPDoc::Docs docs = m_library->numberOfSelections() == 1 ? selectedDocs() : KPDoc::Docs();
    if (docs.size() == 1) {
        const QString path = docs.first()->filePath();
        setWindowFilePath(path);
        setWindowTitle(qtTrId("KPTitleOfDocument")
                           .arg(XPPath::printable(docs.first()->fsDisplayName()),
                                shortened(XPPath::folder(path))));
        return;
    }
    const auto place = m_crumbs->currentLocation();
    const bool isOwnFolder =
        place && place->isSingleFolder && !XPVolumes::isOnSlowVolume(place->path);
    setWindowFilePath(isOwnFolder ? place->path : QString());
    setWindowTitle(!place        ? qtTrId("KPApplicationName")
                   : isOwnFolder ? shortened(place->path)
                   : place->isSingleFolder
                       ? XPPath::printable(XPPath::fileName(place->path))
                       : XPPath::printable(m_crumbs->locationItem()->displayName()));
}

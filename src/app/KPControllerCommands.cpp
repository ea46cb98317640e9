#include "KPController.h"

#include "KPDocsView.h"
#include "KPEditHistory.h"
#include "KPFilterBar.h"
#include "KPIndexMonitor.h"
#include "KPInspector.h"
#include "KPSearcher.h"
#include "KPWindowActions.h"
#include "UserDefaults.h"
#include "XPFileUrls.h"
#include "XPFolders.h"
#include "XPPath.h"
#include "XPPrompts.h"
#include "XPWorkspace.h"

#include <QClipboard>
#include <QDockWidget>
#include <QFileDialog>
#include <QGuiApplication>
#include <QSlider>

// What the menus and the grid's keys do.

static constexpr int manyFiles = 12; // opening more at once asks first
static constexpr int zoomStep = 2;   // hundredths

void KPController::openFolder()
{
    auto *dialog =
        new QFileDialog(this, qtTrId("KPOpenFolderTitle"), m_folders.value(0, XPFolders::home()));
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString &folder) {
        m_folders = {XPFolders::realFolder(folder).valueOr(folder)};
        showFolders();
        startSearch();
    });
    dialog->open();
}

void KPController::indexFolders()
{
    for (const QString &folder : foldersNotIndexed())
        m_index->addFolder(folder);
    startSearch();
}

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
    if (paths.size() <= manyFiles) {
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

void KPController::selectAll()
{
    m_view->selectAll();
}

void KPController::search()
{
    m_filter->focusSearch();
}

void KPController::filterTags()
{
    m_filter->focusTags();
}

void KPController::quit()
{
    close();
}

void KPController::editTags()
{
    m_dock->show();
    m_inspector->focusTags();
}

void KPController::rateSelected(int stars)
{
    m_history->edit({m_view->selectedPaths(), {}, stars});
}

void KPController::undo()
{
    m_history->undo();
}

void KPController::redo()
{
    m_history->redo();
}

void KPController::zoomIn()
{
    m_zoom->setValue(m_zoom->value() + zoomStep);
}

void KPController::zoomOut()
{
    m_zoom->setValue(m_zoom->value() - zoomStep);
}

void KPController::setOrder(const KPSortKey &key)
{
    m_searcher->setResultsOrder({{key}, std::nullopt});
    m_actions->showOrder(key);
    UserDefaults::standard().setValue(QStringLiteral("KPSortOrder"), key.toText());
}

void KPController::toggleInspector()
{
    m_dock->setVisible(m_dock->isHidden());
}

void KPController::showAbout()
{
    XPPrompts::current().alert(qtTrId("KPAboutTitle").arg(QCoreApplication::applicationVersion()),
                               qtTrId("KPAboutText"));
}

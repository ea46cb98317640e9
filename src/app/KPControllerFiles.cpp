// Showing where documents are.
#include "KPController.h"
#include "KPDocsView.h"
#include "KPLibraryModel.h"
#include "XPPath.h"

void KPController::showDocuments(const QStringList &paths)
{
    QItemSelection found;
    for (const QString &path : paths) {
        if (const QModelIndex index = m_model->indexForPath(path); index.isValid())
            found.select(index, index);
    }
    if (found.isEmpty() && !paths.isEmpty()) {
        showAllIn({XPPath::folder(paths.first())});
    } else if (!found.isEmpty()) {
        m_view->selectionModel()->select(found, QItemSelectionModel::ClearAndSelect);
        m_view->selectionModel()->setCurrentIndex(found.indexes().first(),
                                                  QItemSelectionModel::NoUpdate);
        m_view->scrollTo(found.indexes().first());
    }
    raise();
    activateWindow();
}

void KPController::showInformation(const QStringList &paths)
{
    showDocuments(paths);
    m_panels->setShown(KPWindowPanels::Place::Inspector, true);
}

// What the window does to bring documents into the managed folder or to another one.
#include "KPController.h"
#include "KPDocsView.h"
#include "UserDefaults.h"
#include "XPFileTransfers.h"
#include "XPFiledDocuments.h"
#include "XPFolders.h"
#include "XPRecentDestinations.h"

#include <QFileDialog>
#include <QGuiApplication>

void KPController::fileSelected()
{
    xpGuiThread.assertHere();
    const bool optionKey = QGuiApplication::keyboardModifiers().testFlag(Qt::AltModifier);
    XPFiledDocuments::setFilesAsManagedRoutingIfNeeded(m_view->selectedPaths(), optionKey,
                                                       [](const std::optional<XPFileReport> &) {});
}

void KPController::bringSelected(bool copies)
{
    const QStringList paths = m_view->selectedPaths();
    if (paths.isEmpty())
        return;
    auto *dialog = new QFileDialog(this, copies ? qtTrId("KPCopyToTitle") : qtTrId("KPMoveToTitle"),
                                   XPRecentDestinations::paths().value(0, XPFolders::home()));
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QFileDialog::fileSelected, this, [paths, copies](const QString &folder) {
        xpGuiThread.assertHere();
        const bool warn =
            UserDefaults::standard().boolValue(QStringLiteral("KPFinderConfirmMoveorCopy"));
        XPFileTransfers::moveCopyFilesProgressUI(paths, folder, copies, warn,
                                                 [](const XPFileReport &) {});
    });
    dialog->open();
}

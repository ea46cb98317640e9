// The scan window, as the main window opens it.
#include "KPController.h"
#include "XPScanController.h"

void KPController::scanAction()
{
    if (!m_scans)
        m_scans = std::make_unique<XPScanController>(
            XPScanController::Hooks{[this](const QString &) { goToTodaysFiledDocuments(); },
                                    [this] { return suggestedTags(); }});
    m_scans->show();
    m_scans->raise();
    m_scans->activateWindow();
}

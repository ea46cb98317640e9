#include "KPDropZoneDelegate.h"

#include "KPAppDelegate.h"
#include "KPController.h"
#include "KPFilingCommands.h"

bool KPDropZoneDelegate::performDragOperation(const QMimeData *data,
                                              const XPDropZoneDestination &destination)
{
    KPImport how{.folder = destination.folder, .tags = destination.tags};
    how.done = [](const QStringList &paths) {
        if (XPDropZoneController *zone = XPDropZoneController::singleInstance())
            zone->editTagsForFilePaths(paths);
    };
    return m_window.importDropped(data, std::move(how));
}

void KPDropZoneDelegate::zoneClicked()
{
    if (KPAppDelegate *program = KPAppDelegate::instance())
        program->allAction();
    m_window.goToTodaysFiledDocuments();
}

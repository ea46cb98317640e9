#pragma once

#include "XPDropZoneController.h"

class KPController;

// What the window does with the drop zone: documents of what is dropped there, by the window's one
// road, and the tag editor for them. Threads: main. The window outlives it.
class KPDropZoneDelegate : public XPDropZoneDelegate
{
public:
    explicit KPDropZoneDelegate(KPController &window) : m_window(window) {}

    bool performDragOperation(const QMimeData *data,
                              const XPDropZoneDestination &destination) override;
    void zoneClicked() override; // today's documents, in front

private:
    KPController &m_window;
};

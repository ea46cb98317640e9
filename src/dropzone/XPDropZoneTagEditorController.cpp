#include "XPDropZoneTagEditorController.h"

#include "KPBatchEdit.h"
#include "XPFrontWindow.h"

#include <QHideEvent>
#include <QShowEvent>
#include <QTimer>

XPDropZoneTagEditorController::XPDropZoneTagEditorController(
    std::function<QPoint(const QSize &)> place)
    : XPTagEditorController(nullptr), m_place(std::move(place))
{
    setWindowFlag(Qt::WindowStaysOnTopHint);
    setRemembersPlace(false); // where the window's own editor stands is not to be changed
    connect(this, &XPTagEditorController::edited, this, [](const KPFileEdit &edit) {
        xpGuiThread.assertHere();
        if (KPBatchEdit *edits = KPBatchEdit::current())
            edits->replaceOriginalTags(edit, true);
    });
}

void XPDropZoneTagEditorController::showEvent(QShowEvent *event)
{
    XPTagEditorController::showEvent(event);
    if (event->spontaneous())
        return;
    move(m_place(frameGeometry().size().expandedTo(size())));
    // Once the window manager knows it.
    QTimer::singleShot(0, this, [this] {
        if (isVisible())
            XPFrontWindow::take(*windowHandle());
    });
}

void XPDropZoneTagEditorController::hideEvent(QHideEvent *event)
{
    XPTagEditorController::hideEvent(event);
    if (!event->spontaneous())
        Q_EMIT tagEditorDidGoAway();
}

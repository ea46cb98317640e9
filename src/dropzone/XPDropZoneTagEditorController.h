#pragma once

#include "XPTagEditorController.h"

#include <QPoint>
#include <functional>

// The tag editor beside the drop zone, for what was just dropped there. A window of its own: the
// main window may be hidden, and stays where it is. Threads: main.
class XPDropZoneTagEditorController : public XPTagEditorController
{
    Q_OBJECT

public:
    // `place`: the upper left corner for a window of that size.
    explicit XPDropZoneTagEditorController(std::function<QPoint(const QSize &)> place);

Q_SIGNALS:
    void tagEditorDidGoAway(); // XPDropZoneController gives the keyboard back

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    const std::function<QPoint(const QSize &)> m_place;
};

#pragma once

#include "XPDropZoneGeometry.h"
#include "XPDropZoneView.h"
#include "XPFrontWindow.h"
#include "XPNotificationCenter.h"

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <QPropertyAnimation>
#include <QTimer>
#include <memory>
#include <vector>

class XPDragWatch;
class XPDropZoneTagEditorController;

// What the program does with what the zone takes.
class XPDropZoneDelegate
{
public:
    virtual ~XPDropZoneDelegate();
    virtual void prepareForDrag() {}
    // The data is valid in the call only. False: nothing is made of it. The documents are handed
    // to XPDropZoneController::editTagsForFilePaths() once they are there.
    virtual bool performDragOperation(const QMimeData *data,
                                      const XPDropZoneDestination &destination) = 0;
    virtual void zoneClicked() {}
};

// The drop zone: a small panel at the edge of the screen that slides out while something is
// dragged anywhere, takes it, and opens the tag editor beside itself for what became of it.
//
// Under X11 the window is none of the window manager's: it takes no focus, stands on every desktop
// above other windows and in no list of windows; it stays away while a program fills that screen.
// Between drags it is hidden, or a strip at the edge (`KPShowDropZoneEvenWithoutFileDrag`).
// Elsewhere no program hears of drags over others nor places its windows: there that setting makes
// it a small ordinary window, which the user may leave open.
// Settings are followed as they change: KPShowDropZone, the one named above, KPDropZoneLeftEdge,
// KPDropZoneOverlapWithScreen; KPDropZoneY is read at the start and written at the end.
// Threads: main. One in a process. Ownership: the delegate outlives it.
class XPDropZoneController : public QObject, public QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    explicit XPDropZoneController(XPDropZoneDelegate *delegate);
    ~XPDropZoneController() override;
    static XPDropZoneController *singleInstance(); // null: there is none

    bool isSlidOnscreen() const { return m_slidOnscreen; }
    double dropZoneY() const { return geometry().y(); }
    bool dragWasToDropZone() const { return m_dragWasToDropZone; }

    void slideOnscreen();
    void slideOffscreen(); // hides it, or leaves the strip
    // Opens the tag editor beside the zone, with the keyboard. When it goes away, the program that
    // was in front gets the keyboard back.
    void editTagsForFilePaths(const QStringList &paths);
    void writeOutStateWhenQuiting();

    QWidget *window() { return &m_view; }
    bool nativeEventFilter(const QByteArray &type, void *message, qintptr *result) override;

private:
    bool isPanel() const { return m_watch != nullptr; } // not an ordinary window
    XPDropZoneGeometry geometry() const;
    void makeWindow();
    void followSettings();
    void followScreens();
    void reposition();
    void showAsWanted();
    bool isWanted() const;
    void dragBegan();
    void dragEnded();
    void prepareForDrag();
    void performDragOperation(const QMimeData *data, const XPDropZoneDestination &destination);
    void tagEditorDidGoAway();
    void setChoices();
    void slideTo(const QRect &frame);

    XPDropZoneDelegate *m_delegate;
    XPDropZoneView m_view;
    std::unique_ptr<XPDragWatch> m_watch;
    std::unique_ptr<XPDropZoneTagEditorController> m_tagEditorController;
    QPropertyAnimation m_slide;
    QTimer m_away; // slides off what nobody used
    std::optional<double> m_y;
    bool m_slidOnscreen = false;
    bool m_dragWasToDropZone = false;
    // To give the keyboard back when the tag editor closes.
    std::optional<XPFrontWindow> m_appToActivateWhenInlineEditorCloses;
    std::vector<XPObservation> m_observations;
};

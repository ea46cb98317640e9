#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <QTimer>

// Tells when something is dragged in any other program, and when that is over.
//
// X11 only. The server says once when a program takes the selection XdndSelection, as it does when
// a drag begins; for the end there is no notice, so the pointer's buttons are looked at as long as
// the drag lasts. While nothing is dragged nothing is done.
// Threads: main.
class XPDragWatch : public QObject, public QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    static bool isPossible();
    explicit XPDragWatch(QObject *parent = nullptr);
    ~XPDragWatch() override;

    bool isDragging() const { return m_look.isActive(); }
    bool nativeEventFilter(const QByteArray &type, void *message, qintptr *result) override;

Q_SIGNALS:
    void began();
    void ended();

private:
    static bool isButtonDown();

    int m_notice = -1; // the server's number of the event
    QTimer m_look;
};

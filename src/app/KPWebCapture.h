#pragma once

#include "XPMutex.h"
#include "XPProgress.h"
#include "XPURLToPDF.h"

#include <QTimer>

class QWidget;

// Captures a web page as a document: asks for the address, shows how it goes, files the page and
// shows it. Deletes itself in the end. Threads: main.
class KPWebCapture : public QObject
{
    Q_OBJECT

public:
    // The dialog stands over `window` and begins with the address; without one, with a copied one.
    static void ask(QWidget *window, const QString &address = {}) XP_REQUIRES(xpGuiThread);

private:
    explicit KPWebCapture(QObject *parent);
    void start(const QString &address) XP_REQUIRES(xpGuiThread);
    void captured(const XPURLToPDF::Page &page) XP_REQUIRES(xpGuiThread);
    void failed(const XPError &error) XP_REQUIRES(xpGuiThread);

    QString m_address;
    XPURLToPDF m_capture;
    XPProgress::Task m_task;
    QTimer m_stop; // looks whether the user stopped it
};

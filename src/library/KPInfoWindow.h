#pragma once

#include "KPInspectorController.h"
#include "XPNotificationCenter.h"

#include <QWidget>
#include <vector>

// The information about certain documents, in a window of its own that stays while others are
// selected. Closing deletes it.
// Threads: main. The pictures outlive it.
class KPInfoWindow : public QWidget
{
    Q_OBJECT

public:
    KPInfoWindow(const KPDoc::Docs &documents, KPQuickLook &pictures, QWidget *window);
    ~KPInfoWindow() override;

    const KPDoc::Docs &documents() const { return m_documents; }
    KPInspector &inspector() { return *m_view; }
    KPInspectorController &controller() { return *m_controller; }

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    KPDoc::Docs present() const; // those that are not gone
    void showTitle();

    KPDoc::Docs m_documents;
    KPInspector *m_view;
    std::unique_ptr<KPInspectorController> m_controller; // goes before the view
    QTimer m_changing;
    std::vector<XPObservation> m_observations;
};

#pragma once

#include "XPNotificationCenter.h"

#include <QTimer>
#include <QWidget>
#include <vector>

class KPCrumbController;
class KPLocationsModel;
class QToolButton;
class QTreeView;

// The panel of locations: the places of late, and the tree of the folders that hold results. In a
// listing of a folder the selected rows narrow what is shown; else, and with a double click or
// Return, the search goes to the folder. Documents that are dropped onto a folder move there, with
// Ctrl they are copied.
//
// The window shows it by KPShowLocationsPanel; toolBar() is its part of the action bar.
// Threads: main. Ownership: the controller must outlive it.
class KPLocationsPanel : public QWidget
{
    Q_OBJECT

public:
    explicit KPLocationsPanel(KPCrumbController &controller, QWidget *parent = nullptr);
    ~KPLocationsPanel() override;

    QTreeView &tree() { return *m_tree; }
    QWidget *toolBar() const { return m_toolBar; } // up, listing, package contents, reveal

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void buildToolBar();
    QToolButton *addButton(const QString &symbol, const QString &text, bool isCheckable);
    void update();
    void selectionChanged();
    void go(const QModelIndex &index);
    void showMenu(const QPoint &position);
    void fillRecent();
    void setListing(bool on);

    KPCrumbController &m_controller;
    KPLocationsModel *m_model;
    QTreeView *m_tree;
    QWidget *m_toolBar;
    QToolButton *m_recent;
    QToolButton *m_up = nullptr;
    QToolButton *m_listing = nullptr;
    QToolButton *m_packages = nullptr;
    QToolButton *m_reveal = nullptr;
    bool m_isUpdating = false;
    QTimer m_soon;
    std::vector<XPObservation> m_observations;
};

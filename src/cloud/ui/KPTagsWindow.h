#pragma once

#include "KPNavigator.h"
#include "KPTagTree.h"
#include "XPNotificationCenter.h"

#include <QDialog>
#include <QTimer>
#include <vector>

class KPTagTreeModel;
class QCheckBox;
class QLabel;
class QLineEdit;
class QTreeView;

// The window of all tags: a sorted tree with the number of documents, and a filter. With the
// setting "KPTagsWindowOnlyShowAvailable" only those of the documents that are shown.
//
// Return or a double click narrows the search to a tag, or widens it when it is part of it. The
// library's tags are read from the index behind the user's back. Threads: main.
class KPTagsWindow : public QDialog
{
    Q_OBJECT

public:
    KPTagsWindow(KPNavigator &navigator, QWidget *window);

    void open() override; // not modal: shows it with the tags as they are now

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void build();
    void observe();
    void refresh();
    void readLibrary();
    void showTree(KPTagTree tree);
    void filter();
    void click(const QString &tag, bool excludes);
    void showMenu(const QPoint &at);

    KPNavigator &m_navigator;
    KPTagTree m_tree;        // all of them
    KPTagTreeModel *m_model; // those that pass the filter
    QLineEdit *m_filter;
    QTreeView *m_view;
    QCheckBox *m_available;
    QLabel *m_counts;
    QTimer m_refresh; // a burst of changes is shown once
    int m_asked = 0;
    std::vector<XPObservation> m_observations;
};

#pragma once

#include "KPSourceListModel.h"

#include <QSet>
#include <QTreeView>

// The source list at the left of the window. A click or Return on a row shows its search, in the
// present location; the row of the search that is shown is selected. Headings open and close with
// a click; how they stand is remembered.
//
// The window puts it into its left column and connects contextMenu (for rows of saved searches:
// KPBookmarkCommands) and failed.
// Threads: main. Ownership: controller, bookmarks and counts must outlive it.
class KPSourceList : public QTreeView
{
    Q_OBJECT

public:
    // `counts` may be null.
    KPSourceList(KPCrumbController &controller, KPBookmarks &bookmarks, KPRowCounts *counts,
                 QWidget *parent = nullptr);
    ~KPSourceList() override;

    KPSourceListModel &rows() { return *m_model; }
    void setLastImport(const KPSearchState::Ptr &fileList) { m_model->setLastImport(fileList); }
    void writeOutState() const; // of the headings; done at each change too

Q_SIGNALS:
    void failed(const XPError &error);
    // For a row of its own menu; empty: the list itself.
    void bookmarkMenuRequested(const QStringList &identifiers, const QPoint &globalPosition);

protected:
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void applyLook();
    void showSearchOf(const QModelIndex &index);
    void selectShown();
    void restoreHeadings(const QModelIndex &above);
    void disclosureChanged(const QModelIndex &index, bool isOpen);
    bool isOpenByDefault(const QModelIndex &index) const;
    void countVisible();

    KPCrumbController &m_controller;
    KPSourceListModel *m_model;
    QSet<QString> m_toggled; // rows that stand other than by default
    bool m_isRestoring = false;
    QTimer m_soon;
    std::vector<XPObservation> m_observations;
};

#pragma once

#include "KPLibraryModel.h"

#include <QTreeView>

class KPArrangedDocs;
class QMimeData;
class KPDocsKeys;
class KPNameField;

// The documents found as a table: columns that the user chooses, orders and sizes by the header
// and sorts by; flag, rating and name are edited where they stand.
//
// Clicks and keys do to the selection what they do in the grid: both are KPArrangedDocs'; the
// view's own selection only follows it. Saved: "KPVisibleColumnsInDocsList", the keys of the
// columns in their order, and "KPDocsListColumnWidths", points by key.
// Threads: main. Model, documents and keys are not owned.
class KPDocsList : public QTreeView
{
    Q_OBJECT

public:
    KPDocsList(KPLibraryModel &model, KPArrangedDocs &docs, KPDocsKeys &keys,
               QWidget *parent = nullptr);

    // "flag", "name", "type", "fileSize", …
    static QString keyOfColumn(int column);
    static int columnOfKey(const QString &key); // -1: none
    QStringList visibleColumns() const;         // in their order
    // Unknown ones are passed over; the name is always there.
    void setVisibleColumns(const QStringList &keys);
    void showSortOrder(int column, bool isAscending);
    void scrollToRow(int row);
    bool editName(int row);
    void writeOutState() const;

Q_SIGNALS:
    void openRequested();
    void sortRequested(int column);
    void contextMenuRequested(const QPoint &globalPosition);
    void renameRequested(KPDoc *doc, const QString &name);
    void flagClicked(KPDoc *doc);
    void ratingClicked(KPDoc *doc, int stars);
    void dropped(const QMimeData *data, bool copies); // valid in the call only
    void dragRequested(int row);                      // by the pointer, with what is selected

protected:
    void showEvent(QShowEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void changeEvent(QEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void startDrag(Qt::DropActions) override {}
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex &,
                                                         const QEvent *) const override
    {
        return QItemSelectionModel::NoUpdate;
    }

private:
    void showSelection();
    void showColumn(int column, bool on);
    void showHeaderMenu(const QPoint &at);
    void setColours();
    int rowAt(const QPoint &point) const;
    QModelIndex nameIndex(int row) const;
    bool editCell(const QModelIndex &index, const QPoint &at);

    KPLibraryModel &m_model;
    KPArrangedDocs &m_docs;
    KPDocsKeys &m_keys;
    KPNameField *m_nameField;
    QPoint m_pressedAt;
    int m_pressedRow = -1;
    bool m_selectsOnRelease = false;
};

#pragma once

#include "XPDuplicates.h"

#include <QAbstractItemModel>

// Groups of documents of the same contents as a tree: a row for each group, below it one for each
// document. Threads: main.
class KPDuplicatesModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    enum Role { PathsRole = Qt::UserRole }; // of the document, or of all in the group

    using QAbstractItemModel::QAbstractItemModel;
    void setGroups(const QList<XPDuplicates::Group> &groups);

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &index) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;

private:
    QList<XPDuplicates::Group> m_groups;
};

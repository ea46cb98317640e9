#include "KPDuplicatesModel.h"

#include "XPFileSize.h"
#include "XPFolders.h"
#include "XPPath.h"

#include <QCoreApplication>

// A document's internal number is that of its group and one more, a group's is 0.

void KPDuplicatesModel::setGroups(const QList<XPDuplicates::Group> &groups)
{
    beginResetModel();
    m_groups = groups;
    endResetModel();
}

QModelIndex KPDuplicatesModel::index(int row, int column, const QModelIndex &parent) const
{
    if (column != 0 || row < 0 || row >= rowCount(parent))
        return {};
    const auto number = parent.isValid() ? static_cast<quintptr>(parent.row()) + 1 : 0;
    return createIndex(row, column, number);
}

QModelIndex KPDuplicatesModel::parent(const QModelIndex &index) const
{
    return index.isValid() && index.internalId() > 0
               ? createIndex(static_cast<int>(index.internalId()) - 1, 0, quintptr{0})
               : QModelIndex();
}

int KPDuplicatesModel::rowCount(const QModelIndex &parent) const
{
    if (!parent.isValid())
        return static_cast<int>(m_groups.size());
    return parent.internalId() == 0 ? static_cast<int>(m_groups[parent.row()].paths.size()) : 0;
}

int KPDuplicatesModel::columnCount(const QModelIndex &) const
{
    return 1;
}

QVariant KPDuplicatesModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const bool isGroup = index.internalId() == 0;
    const auto &group =
        m_groups[isGroup ? index.row() : static_cast<qsizetype>(index.internalId()) - 1];
    if (role == PathsRole)
        return isGroup ? group.paths : QStringList{group.paths[index.row()]};
    if (role != Qt::DisplayRole)
        return {};
    if (!isGroup)
        return XPPath::printable(XPFolders::abbreviateWithTilde(group.paths[index.row()]));
    return qtTrId("KPDuplicatesGroup", static_cast<int>(group.paths.size()))
        .arg(XPPath::printable(XPPath::fileName(group.paths.first())),
             xpFileSizeInWords(group.size));
}

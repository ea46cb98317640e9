#include "KPRestoreModel.h"

#include "XPFolders.h"
#include "XPPath.h"

// Tags and stars, as far as the other side differs in them.
static QString describe(const KarvexBackupRecord &record, const KarvexBackupRecord &other)
{
    QStringList parts;
    if (record.tags != other.tags)
        parts.append(record.tags.isEmpty()
                         ? qtTrId("KPRestoreNoTags")
                         : XPPath::printable(record.tags.join(QStringLiteral(", "))));
    if (record.rating != other.rating)
        parts.append(record.rating > 0
                         ? QString(static_cast<qsizetype>(std::min(record.rating, 5.0)), u'★')
                         : qtTrId("KPRestoreNoRating"));
    // Only the time is another one.
    return parts.isEmpty() ? qtTrId("KPRestoreSame") : parts.join(QStringLiteral(" · "));
}

void KPRestoreModel::setChanges(const QList<KarvexRestore::Change> &changes)
{
    beginResetModel();
    m_changes = changes;
    m_chosen = QBitArray(changes.size(), true);
    endResetModel();
    Q_EMIT chosenChanged();
}

QSet<QString> KPRestoreModel::chosen() const
{
    QSet<QString> paths;
    for (qsizetype row = 0; row < m_changes.size(); ++row) {
        if (m_chosen.testBit(row))
            paths.insert(m_changes[row].recordedAt);
    }
    return paths;
}

void KPRestoreModel::choose(bool all)
{
    m_chosen.fill(all);
    if (!m_changes.isEmpty())
        Q_EMIT dataChanged(index(0, Name), index(rowCount() - 1, Name), {Qt::CheckStateRole});
    Q_EMIT chosenChanged();
}

int KPRestoreModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_changes.size());
}

int KPRestoreModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant KPRestoreModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const KarvexRestore::Change &change = m_changes[index.row()];
    if (role == Qt::CheckStateRole && index.column() == Name)
        return m_chosen.testBit(index.row()) ? Qt::Checked : Qt::Unchecked;
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole)
        return {};
    switch (index.column()) {
    case Name:
        return XPPath::printable(XPPath::fileName(change.path));
    case Folder:
        return XPPath::printable(XPFolders::abbreviateWithTilde(XPPath::folder(change.path)));
    case Before:
        return describe(change.before, change.after);
    case After:
        return describe(change.after, change.before);
    default:
        return {};
    }
}

bool KPRestoreModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::CheckStateRole || index.column() != Name)
        return false;
    m_chosen.setBit(index.row(), value.toInt() == Qt::Checked);
    Q_EMIT dataChanged(index, index, {role});
    Q_EMIT chosenChanged();
    return true;
}

Qt::ItemFlags KPRestoreModel::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags usual = QAbstractTableModel::flags(index) | Qt::ItemNeverHasChildren;
    return index.column() == Name ? usual | Qt::ItemIsUserCheckable : usual;
}

QVariant KPRestoreModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    static constexpr const char *names[] = {
        QT_TRID_NOOP("KPRestoreFile"), QT_TRID_NOOP("KPRestoreFolder"),
        QT_TRID_NOOP("KPRestoreBefore"), QT_TRID_NOOP("KPRestoreAfter")};
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section >= ColumnCount)
        return {};
    return qtTrId(names[section]);
}

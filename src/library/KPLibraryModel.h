#pragma once

#include "KPResultGroups.h"
#include "KPSearcher.h"

#include <QAbstractListModel>
#include <QTimer>
#include <vector>

// The documents of a search as rows for views: each delivery of the searcher as it is, sorted and
// grouped already.
//
// Merging a delivery takes time by what changed in it. Rows come, go and move as the model's
// signals say, and a document that stays keeps its persistent indexes, when the order or the whole
// search changes too. What a row says is asked of its record. Texts are printable
// (XPPath::printable): views may draw each as it is.
// Threads: main. Ownership: the searcher must outlive it.
class KPLibraryModel : public QAbstractListModel
{
    Q_OBJECT

public:
    // What a list shows beside each other, of one row.
    enum Column {
        NameColumn,
        FlagColumn,
        TitleColumn,
        TypeColumn,
        SizeColumn,
        CreatedColumn,
        ModifiedColumn,
        AddedColumn,
        RatingColumn,
        TagsColumn,
        FolderColumn,
        PathColumn,
        ColumnCount
    };
    enum Role {
        PathRole = Qt::UserRole, // the path as it is, for files
        TagsRole,                // printable
        RatingRole,              // double, 0 when unrated
        ErrorRole,               // why tags or rating could not be read; empty: they could
        FlaggedRole,             // bool
        // Plus a Column: what it shows, as a printable text, and as bool, QString, qint64 bytes,
        // QDateTime in UTC, double stars or QStringList.
        ColumnTextRole,
        ColumnValueRole = ColumnTextRole + int(ColumnCount)
    };

    explicit KPLibraryModel(KPSearcher *searcher, QObject *parent = nullptr);
    ~KPLibraryModel() override;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

    KPDoc *document(int row) const { return (*m_docs)[static_cast<size_t>(row)]; }
    // Its row; -1: not among the results. Each look passes over the rows between this one and the
    // last that was found.
    int rowOf(const KPDoc *doc) const;
    QModelIndex indexForPath(const QString &path) const; // invalid: not among the results

    // Null: there are none. Of the delivery before, until groupsChanged() was told.
    const KPResultGroups *groups() const { return m_groups.get(); }
    // The number of the row's group in groups()->runs; -1 where there are none.
    int groupOfRow(int row) const;

    // Every tag of the results once, the most used first.
    QStringList knownTags() const;

    static QString titleOf(Column column);
    // What a column is sorted by; nothing where it cannot be.
    static std::optional<KPSortKey::Field> sortFieldOf(Column column);
    static QString displayName(const KPDoc &doc);
    // What ColumnValueRole answers. Any thread.
    static QVariant valueOf(const KPDoc &doc, int column);

Q_SIGNALS:
    // A delivery was taken whole: rows and groups are those of it.
    void groupsChanged();

private:
    using Rows = std::shared_ptr<const KPDocArray>;
    using Run = KPRowChanges::Run;

    void take(const KPResultsDelivery::Ptr &delivery);
    void takeFew(const KPRowChanges &changes, const Rows &now);
    void takeMany(const KPRowChanges &changes, const Rows &now);
    // Shows the rows in another order; `after` says where each of the present ones goes.
    void rearrange(Rows rows, const std::vector<int> &after);
    void showChanged(const std::vector<Run> &runs);
    void observe();

    Rows m_docs = std::make_shared<const KPDocArray>(); // never null
    std::shared_ptr<const KPResultGroups> m_groups;
    KPResultsDelivery::Ptr m_delivery;
    mutable int m_lastFound = 0;
    QTimer m_metaDataChanged; // records say something else; shown once a turn of the event loop
    std::vector<XPObservation> m_observations;
};

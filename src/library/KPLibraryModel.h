#pragma once

#include "KPDocOrder.h"

#include <QAbstractListModel>
#include <QElapsedTimer>
#include <QHash>
#include <QTimer>
#include <memory>
#include <vector>

// The documents of a live search as a sorted list for views.
//
// New documents are gathered for a moment and merged in at once, so that a hundred thousand of
// them cost a handful of linear passes; between passes the event loop has its turn. Names are
// made printable here (XPPath::printable): views may draw every text as it is.
// Threads: main. The source is not owned and must outlive the model.
class KPLibraryModel : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role {
        PathRole = Qt::UserRole, // the path as it is, for files
        TagsRole,                // printable
        RatingRole,              // double, 0 when unrated
        ErrorRole                // why tags or rating could not be read; empty: they could
    };

    explicit KPLibraryModel(KPResultSource *source, QObject *parent = nullptr);
    ~KPLibraryModel() override;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

    const KPShownDocument &document(int row) const;
    QModelIndex indexForPath(const QString &path) const; // invalid: not among the results

    const KPDocOrder &order() const { return m_order; }
    void setOrder(const KPDocOrder &order);

    // Shows what was just written to a file, before the search notices it by itself. A path that
    // is not among the results is passed over.
    void setTags(const QHash<QString, QStringList> &tagsByPath);
    void setRatings(const QHash<QString, double> &ratingsByPath);

    // Every tag of the results once (by lower case), the most used first.
    QStringList knownTags() const;

    static QString displayName(const QString &path);

private:
    using Document = std::unique_ptr<KPOrderedDocument>;

    void reset();
    void gather(const QList<KPFoundDocument> &documents);
    void takeGathered();
    void append(const QList<KPFoundDocument> &documents);
    void take(const QList<KPFoundDocument> &documents);
    void change(const QList<KPShownDocument> &documents);
    void remove(const QStringList &paths);
    void update(KPOrderedDocument &old, const KPShownDocument &now, bool *moved);
    // Puts the documents in a new order and takes persistent indexes along; `arrange` gets them
    // in the old one.
    template <typename Arrange>
    void rearrange(Arrange arrange);
    void sortDocuments();

    const QCollator m_collator = kpNameCollator();
    KPDocOrder m_order;
    std::vector<Document> m_documents;
    QHash<QString, KPOrderedDocument *> m_byPath;
    QList<KPFoundDocument> m_gathered;
    QTimer m_gathering;
};

#pragma once

#include "KPDoc.h"

#include <QHash>
#include <QMap>
#include <optional>

// What the selected documents have in common.
//
// Kept by differences: another selection costs what came and went, a change of documents costs
// these, so that a selection of a hundred thousand can be followed while it is edited. Values are
// those that the records had when they were last looked at.
// Threads: any; a value.
class KPSelectionFacts
{
public:
    KPSelectionFacts() = default;
    explicit KPSelectionFacts(const KPDoc::Docs &documents) { setDocuments(documents); }

    void setDocuments(const KPDoc::Docs &documents);
    // Looks again at those of them that are selected.
    void update(const KPDoc::Docs &changed);

    const KPDoc::Docs &documents() const { return m_documents; }
    bool isEmpty() const { return m_documents.isEmpty(); }
    QStringList paths() const;
    // In the order of the last document. Those without readable tags are passed over: an edit
    // refuses them one by one.
    QStringList commonTags() const;
    // Those that some have and others have not, most often met first.
    struct Some
    {
        QString tag;
        qsizetype count = 0;
    };
    QList<Some> someTags(qsizetype most) const;
    std::optional<double> rating() const;  // nothing: they differ
    qint64 size() const { return m_size; } // of all together
    // The days on which the first and the last of them were changed; invalid: nobody knows.
    QDate oldest() const { return m_days.isEmpty() ? QDate() : m_days.firstKey(); }
    QDate newest() const { return m_days.isEmpty() ? QDate() : m_days.lastKey(); }
    // Documents whose tags could not be read, and why, for one of them.
    qsizetype unreadable() const { return m_unreadable.size(); }
    QString error() const;

    // Nobody can tell what would be overwritten.
    bool canEdit() const { return unreadable() < m_documents.size(); }

private:
    // What a document adds to the sums.
    struct Own
    {
        KPTagName::Tags tags;
        double rating = 0;
        qint64 size = 0;
        QDate day;
        bool isReadable = true;
    };
    void add(KPDoc *doc);
    void remove(KPDoc *doc);

    KPDoc::Docs m_documents;
    QHash<KPDoc *, Own> m_own;
    QHash<KPTagName *, qsizetype> m_tags; // documents that have it
    QMap<double, qsizetype> m_ratings;
    QMap<QDate, qsizetype> m_days;
    QHash<KPDoc *, QString> m_unreadable;
    qint64 m_size = 0;
};

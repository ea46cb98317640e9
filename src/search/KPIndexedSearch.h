#pragma once

#include "KPIndexedState.h"
#include "KPResultReports.h"
#include "MDQuery.h"

#include <QHash>

// One search on the index, on the thread that makes it: runs the query, turns its items into
// documents by what the index holds, and says what is new, other and gone.
//
// A renamed document is gone under the old path and new under the other. At any moment what was
// reported holds each path once: whoever comes to a path that another item was reported under
// takes its place.
// Threads: one, with an event loop; destroy it there.
class KPIndexedSearch : public QObject
{
    Q_OBJECT

public:
    struct Query
    {
        KPSearchState::Ptr state; // whose documents; null: all that the text matches
        QString text;
        QStringList folders; // of the text; empty: everywhere
        bool live = true;
    };
    using Deliver = std::function<void(std::vector<KPResultReport>)>;

    KPIndexedSearch(IndexSource &source, const Query &query, Deliver deliver);
    ~KPIndexedSearch() override;

    void start();

private:
    struct Shown
    {
        QString path;
        size_t facts = 0; // hash of what was reported
    };

    void takeResults();
    void takeChanges(const QList<IndexItem> &added, const QList<IndexItem> &changed,
                     const QList<IndexItem> &removed);
    void finish();
    void end(const QStringList &problems);
    void learnRoots();
    QStringList placesNotCovered() const;
    QStringList unreadableDocuments() const;
    // What the index holds of an item; nothing: it is not among the results.
    std::optional<KPFoundDocument> document(IndexItem item, const KPIndexedState *state) const;
    void show(IndexItem item, const KPFoundDocument &document);
    void hide(IndexItem item);

    IndexSource &m_source;
    const Query m_request;
    const Deliver m_deliver;
    std::unique_ptr<KPIndexedState> m_state; // null: a text
    QStringList m_folders;                   // empty: everywhere
    std::vector<IndexItem> m_roots;          // when they were last told to m_state
    std::unique_ptr<MDQuery> m_query;
    qsizetype m_taken = 0; // results of the first gathering
    QHash<IndexItem, Shown> m_shown;
    QHash<QString, IndexItem> m_itemAt; // by the path that was reported
    KPResultReports m_reports;
};

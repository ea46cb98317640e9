#pragma once

#include "KPResultReports.h"
#include "MDQuery.h"

#include <QHash>

// One search on the index, on the thread that makes it: runs the query, turns its items into
// documents by what the index holds, and says what is new, other and gone.
//
// A renamed document is gone under the old path and new under the other. At any moment what was
// reported holds each path once: whoever comes to a path that another item was reported under
// takes its place.
// Threads: one, with an event loop; destroy it there. Never touches a file.
class KPIndexedSearch : public QObject
{
    Q_OBJECT

public:
    struct Query
    {
        QString text;
        QString unreadableText; // what it matches is told as a problem; may be empty
        QStringList folders;    // empty: everywhere
        // Regular files only, and nothing hidden below the folders.
        bool documentsOnly = false;
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
    QStringList problems() const;
    std::optional<KPFoundDocument> document(IndexItem item) const;
    bool belongs(const KPFoundDocument &document) const;
    void show(IndexItem item, const KPFoundDocument &document);
    void hide(IndexItem item);

    IndexSource &m_source;
    const Query m_request;
    const Deliver m_deliver;
    std::unique_ptr<MDQuery> m_query;
    qsizetype m_taken = 0; // results of the first gathering
    QHash<IndexItem, Shown> m_shown;
    QHash<QString, IndexItem> m_itemAt; // by the path that was reported
    KPResultReports m_reports;
};

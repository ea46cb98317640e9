#pragma once

#include "KPIndexSession.h"
#include "KPResultGroups.h"
#include "KPThreadedSearcher.h"

// Prints what a search finds until it is done or, live, until the process is interrupted: what
// `murnctl find` and `murnctl query` have in common. Main thread.
class KPResultsRun : public QObject, private KPThreadedSearcher::Delegate
{
public:
    struct Options
    {
        bool live = false;
        bool count = false;
        std::optional<qint64> limit;
        // Of the documents of a state; nothing: as they are found.
        std::optional<KPSortOrder> order = std::nullopt;
    };
    // From --live, --count, --limit, --sort and --group, which are checked to go together.
    static XPResult<Options> optionsOf(const KPCommandLine &line);
    // The folders of --in, as the index knows them: absolute, with no links. One that is not
    // there is a failure of the command and left out.
    static QStringList foldersOf(const KPCommandLine &line, KPCommandOutput &output);
    // Whether only an import of the files' contents can answer a query text. One that cannot be
    // read does not ask.
    static bool asksForContent(const QString &query);
    // The options that every such command has, for its help.
    static std::vector<KPCommandOption> commandOptions(std::vector<KPCommandOption> own);
    // Those of an order.
    static std::vector<KPCommandOption> orderOptions();

    KPResultsRun(const Options &options, KPIndexSession &session, KPCommandOutput &output);

    // All of it for the documents of a state: brings the index up to date, where it is asked.
    static int print(const KPSearchState::Ptr &state, const Options &options,
                     KPCommandOutput &output);

    // Run the event loop; answer the exit status. The documents of a state, with word of tags that
    // cannot be read, and in JSON with tags, rating and group; all that a query's text matches
    // below the folders (none: everywhere), be it a document, a folder or hidden.
    int search(const KPSearchState::Ptr &state);
    int query(const QString &text, const QStringList &folders);

private:
    int run();
    void end();
    void updatedResults(const KPResultsDelivery::Ptr &delivery) override;
    void searchDone(const QStringList &problems) override;
    void fileListSearchProgress(qint64) override {}
    void takeQueryItems(MDQuery &query);
    void takeQueryChanges(const QList<IndexItem> &added, const QList<IndexItem> &changed,
                          const QList<IndexItem> &removed);
    void printSorted();
    void add(const QString &path, const KPDocValues *values, const KPResultGroup *group = nullptr);
    void printChange(char sign, const QString &path);
    KPDocValues valuesAt(const QString &path) const;
    void reportProblem(const QString &path, const KPDocValues &values);

    const Options m_options;
    KPIndexSession &m_session;
    KPCommandOutput &m_output;
    bool m_documents = false; // of a state, not a query's items
    bool m_isListing = false; // what stands on the files is asked of the disk
    qsizetype m_taken = 0;    // of a query
    struct Shown
    {
        QString path;
        size_t facts = 0;
    };
    QHash<IndexItem, Shown> m_shown; // of a live query
    KPResultsDelivery::Ptr m_sorted; // the last one
    qint64 m_count = 0;
    bool m_isEnded = false;
};

#pragma once

#include "KPIndexSession.h"
#include "KPIndexedResults.h"

// Prints what a search finds until it is done or, live, until the process is interrupted: what
// `murnctl find` and `murnctl query` have in common. Main thread.
class KPResultsRun : public QObject
{
public:
    struct Options
    {
        bool live = false;
        bool count = false;
        std::optional<qint64> limit;
        bool documents = false; // tell of unreadable tags; JSON with tags and rating
    };
    // From --live, --count and --limit, which are checked to go together.
    static XPResult<Options> optionsOf(const KPCommandLine &line);
    // The folders of --in, as the index knows them: absolute, with no links. One that is not
    // there is a failure of the command and left out.
    static QStringList foldersOf(const KPCommandLine &line, KPCommandOutput &output);
    // Whether only an import of the files' contents can answer a query text. One that cannot be
    // read does not ask.
    static bool asksForContent(const QString &query);
    // The options that every such command has, for its help.
    static std::vector<KPCommandOption> commandOptions(std::vector<KPCommandOption> own);

    KPResultsRun(const Options &options, KPIndexSession &session, KPCommandOutput &output);

    // Runs the event loop; answers the exit status. `start` gives the source its task.
    int run(const std::function<void(KPIndexedResults &)> &start);

private:
    void connectTo(KPResultSource &source);
    void end();
    void added(const QList<KPFoundDocument> &documents);
    void printDocument(const KPFoundDocument &document);
    void printChange(char sign, const QString &path);
    void reportError(const KPFoundDocument &document);
    void finished(const QStringList &problems);

    const Options m_options;
    KPIndexSession &m_session;
    KPCommandOutput &m_output;
    qint64 m_count = 0;
    bool m_isEnded = false;
};

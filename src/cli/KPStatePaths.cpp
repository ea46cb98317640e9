#include "KPStatePaths.h"

#include "IndexLook.h"
#include "KPDoc.h"
#include "KPDocMetaData.h"
#include "KPResultsRun.h"
#include "KPSearcher.h"
#include "KPStateFile.h"
#include "XPPath.h"

#include <QEventLoop>

KPSearchState::Ptr KPStatePaths::stateOfFiles(const QStringList &paths, KPCommandOutput &output)
{
    KPSearchState::Ptr all;
    for (const QString &path : paths) {
        const auto state = KPStateFile::read(path);
        if (!state)
            output.fail(path, "search state", state.error());
        else
            all = KPSearchState::combineSearchStatesAND(all, *state, nullptr);
    }
    if (output.hasFailed())
        return nullptr;
    return all ? all : KPSearchState::searchStateWithNativeDictionary({});
}

bool KPStatePaths::needsContents(const KPSearchState &state)
{
    const QString text = state.searchString();
    if (const QString raw = QStringLiteral("mdq:"); text.startsWith(raw))
        return KPResultsRun::asksForContent(text.mid(raw.size()));
    return !text.isEmpty() && (state.searchContents() || state.searchMetaData());
}

namespace {

class Finding : public KPThreadedSearcher::Delegate
{
public:
    Finding(IndexSource &source, KPCommandOutput &output) : m_source(source), m_output(output) {}

    QStringList paths;
    QEventLoop loop;

private:
    void updatedResults(const KPResultsDelivery::Ptr &delivery) override
    {
        for (const KPPooledString path : delivery->addedPaths)
            paths.append(path.toString());
        const IndexLook look(m_source);
        for (const IndexItem item : delivery->items) {
            if (const auto row = look.at(item))
                paths.append(XPPath::decode(row->path()));
        }
    }
    void searchDone(const QStringList &problems) override
    {
        for (const QString &problem : problems)
            m_output.fail(problem);
        loop.quit();
    }
    void fileListSearchProgress(qint64) override {}

    IndexSource &m_source;
    KPCommandOutput &m_output;
};

} // namespace

std::optional<QStringList> KPStatePaths::find(const KPSearchState::Ptr &state,
                                              KPIndexSession &session, KPCommandOutput &output)
{
    const bool asksIndex = !state->isFinderListing() && !state->isFileListSearch();
    if (asksIndex && !session.catchUp(needsContents(*state)))
        return {};
    IndexSource &source = session.index().source();
    if (!asksIndex) {
        KPDocMetaData::holdFilledValues();
        KPDocMetaData::useIndex(source);
    }
    KPThreadedSearcher::Setup setup;
    setup.live = false;
    setup.makesRecords = false;
    setup.countsTags = false;
    setup.firstMaximum = 0;
    setup.maximum = 0;
    setup.pickUp = std::chrono::milliseconds(0); // nobody types here
    Finding finding(source, output);
    {
        KPThreadedSearcher searcher(source, &finding, setup);
        QObject::connect(&session.interrupt(), &KPInterrupt::interrupted, &finding.loop,
                         &QEventLoop::quit);
        searcher.startSearchThread();
        searcher.newSearchState(KPSearcher::allDocumentsOf(state));
        finding.loop.exec();
    }
    xpGuiThread.assertHere();
    KPDoc::stopMetaDataSearching();
    if (session.interrupt().happened())
        return {};
    return finding.paths;
}

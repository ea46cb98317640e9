// murnctl find: prints the documents of a search state.
#include "IndexSettings.h"
#include "KPFindOptions.h"
#include "KPIndexFilter.h"
#include "KPResultsRun.h"
#include "KPSearcher.h"
#include "KPStateFile.h"
#include "KPStatePaths.h"
#include "XPPath.h"

// The query that a search would run. Nothing: it asks the index nothing.
static std::optional<QString> queryOf(const KPSearchState::Ptr &state)
{
    if (state->isFinderListing() || state->isFileListSearch() || state->utiIsInconsistent())
        return {};
    return KPIndexFilter(KPSearcher::allDocumentsOf(state)).text();
}

static int explain(const KPSearchState::Ptr &state, KPCommandOutput &output)
{
    const std::optional<QString> query = queryOf(state);
    const KPIndexFilter::Scope scope = KPIndexFilter::scopeOf(*state);
    QStringList folders = scope.folders;
    if (scope.everywhere) {
        for (const QString &root : IndexSettings::allRoots())
            folders.append(XPPath::absolute(root));
    }
    if (output.isJson()) {
        output.write("{\"query\": " + (query ? KPCommandOutput::json(*query) : "null") +
                     ", \"scope\": " + KPCommandOutput::json(folders) + "}\n");
        return output.exitStatus();
    }
    output.writeRecord(output.name(query.value_or(QString())));
    for (const QString &folder : folders)
        output.writeRecord(output.name(folder));
    return output.exitStatus();
}

static int run(const KPCommandLine &line, KPCommandOutput &output)
{
    const auto options = KPFindOptions::parse(line);
    if (!options)
        return kpReportUsage(&kpFindCommand, options.error().message);
    const auto how = KPResultsRun::optionsOf(line);
    if (!how)
        return kpReportUsage(&kpFindCommand, how.error().message);
    KPSearchState::Ptr state = KPStatePaths::stateOfFiles(line.values("--state"), output);
    if (!state)
        return output.exitStatus();
    state = options->applyTo(state);
    if (line.has("--print-state")) {
        output.write(KPStateFile::json(*state));
        return output.exitStatus();
    }
    if (line.has("--explain"))
        return explain(state, output);
    for (const XPError &error : options->missingFolders())
        output.fail(error.path, error.reason());
    return options->isWithoutFolder() ? output.exitStatus()
                                      : KPResultsRun::print(state, *how, output);
}

static std::vector<KPCommandOption> findOptions()
{
    std::vector<KPCommandOption> options = KPFindOptions::commandOptions();
    for (const KPCommandOption &option : KPResultsRun::orderOptions())
        options.push_back(option);
    return options;
}

const KPCommand kpFindCommand = {
    "find",
    "[OPTION]… [WORD…]",
    "Prints the documents that fulfil all criteria; without any, every document.",
    "Each WORD is in the name of the file, in any case and with or without accents. Words that\n"
    "mean more: \"quoted phrases\"; after --, -WORD (without it); tag:TAG; rating:>=3; name:WORD\n"
    "(whatever the other options); .pdf (a type); mdq:QUERY (see 'murnctl query --help').\n"
    "Documents are the files and packages of a folder and of the folders in it, as the metadata\n"
    "index holds them; hidden ones (.name) are left out. --list-folder and a state's list of\n"
    "files look at the disk instead: every WORD is in the name then. Without --sort or --group,\n"
    "paths are printed as they are found. With --live, what goes is told six seconds later, as\n"
    "it may be being saved.\n",
    KPResultsRun::commandOptions(findOptions()),
    run};

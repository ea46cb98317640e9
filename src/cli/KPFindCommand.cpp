// murnctl find: prints the documents that fulfil all criteria.
#include "KPResultsRun.h"
#include "XPPath.h"

#include <array>

static XPResult<KPSearchRequest::Rating> ratingCondition(const QString &text)
{
    using Comparison = KPSearchRequest::Comparison;
    static constexpr std::array<std::pair<QLatin1String, Comparison>, 7> operators = {
        {{QLatin1String(">="), Comparison::GreaterOrEqual},
         {QLatin1String("<="), Comparison::LessOrEqual},
         {QLatin1String("!="), Comparison::NotEqual},
         {QLatin1String("=="), Comparison::Equal},
         {QLatin1String(">"), Comparison::Greater},
         {QLatin1String("<"), Comparison::Less},
         {QLatin1String("="), Comparison::Equal}}};
    Comparison comparison = Comparison::Equal;
    QString number = text;
    for (const auto &[word, meaning] : operators) {
        if (text.startsWith(word)) {
            comparison = meaning;
            number = text.mid(word.size()).trimmed();
            break;
        }
    }
    const auto stars = KPCommandLine::stars(number);
    if (!stars)
        return stars.error();
    return KPSearchRequest::Rating{comparison, *stars};
}

static XPResult<KPSearchRequest> requestOf(const KPCommandLine &line)
{
    KPSearchRequest request;
    request.words = line.operands().join(u' ');
    const auto tags = line.tags("--tag");
    if (!tags)
        return tags.error();
    const auto notTags = line.tags("--not-tag");
    if (!notTags)
        return notTags.error();
    request.tags = *tags;
    request.notTags = *notTags;
    if (line.has("--rating")) {
        const auto rating = ratingCondition(line.values("--rating").last());
        if (!rating)
            return rating.error();
        request.rating = *rating;
    }
    return request;
}

static int run(const KPCommandLine &line, KPCommandOutput &output)
{
    auto request = requestOf(line);
    if (!request)
        return kpReportUsage(&kpFindCommand, request.error().message);
    auto options = KPResultsRun::optionsOf(line);
    if (!options)
        return kpReportUsage(&kpFindCommand, options.error().message);
    KPSearchRequest found = *std::move(request);
    found.folders = KPResultsRun::foldersOf(line, output);
    if (found.folders.isEmpty() && line.has("--in"))
        return output.exitStatus();
    KPIndexSession session(output);
    if (!session.catchUp(false))
        return KPExitInterrupted;
    KPResultsRun::Options how = *std::move(options);
    how.documents = true;
    return KPResultsRun(how, session, output).run([&](KPIndexedResults &source) {
        source.setRequest(found);
    });
}

const KPCommand kpFindCommand = {
    "find",
    "[OPTION]… [WORD…]",
    "Prints the documents that fulfil all criteria; without any, every document.",
    "Each WORD begins a word of the file's name or of a tag; case and accents do not matter.\n"
    "Documents are the files of a folder and of the folders in it, as the metadata index holds\n"
    "them; hidden ones (.name) are left out. Their paths are printed in no order.\n",
    KPResultsRun::commandOptions(
        {{"--tag", "TAG", "with this tag (and those of further --tag)"},
         {"--not-tag", "TAG", "without this tag (and those of further --not-tag)"},
         {"--rating", "COND", "by stars: 4, =4, !=0, <2, <=2, >3, >=3.5; unrated counts as 0"},
         {"--in", "DIR", "in this folder (and those of further --in); else in the home folder"}}),
    run};

// murnctl find: prints the documents that fulfil all criteria.
#include "KPCommandOutput.h"
#include "KPFindRun.h"
#include "XPPath.h"

#include <array>
#include <cerrno>
#include <sys/stat.h>

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
    for (const QString &folder : line.values("--in")) {
        if (folder.isEmpty())
            return kpUsageError(QStringLiteral("--in needs a folder"));
        request.folders.append(XPPath::absolute(folder));
    }
    return request;
}

static XPResult<KPFindRun::Options> optionsOf(const KPCommandLine &line)
{
    for (const char *other : {"--json", "--count", "--limit"}) {
        if (const auto error = line.onlyOneOf({"--live", other}))
            return *error;
    }
    for (const char *other : {"--json", "--count"}) {
        if (const auto error = line.onlyOneOf({"--print0", other}))
            return *error;
    }
    KPFindRun::Options options;
    options.live = line.has("--live");
    options.count = line.has("--count");
    if (line.has("--limit")) {
        bool isNumber = false;
        const QString text = line.values("--limit").last();
        options.limit = text.toLongLong(&isNumber);
        if (!isNumber || *options.limit < 1)
            return kpUsageError(QStringLiteral("--limit needs a number from 1 up, not \"%1\"")
                                    .arg(XPPath::printable(text)));
    }
    return options;
}

// The walk would wait for a folder to appear; who names one here means one that is there.
static QStringList presentFolders(const QStringList &folders, KPCommandOutput &output)
{
    QStringList present;
    for (const QString &folder : folders) {
        struct stat info = {};
        if (::stat(XPPath::encode(folder).constData(), &info) != 0)
            output.fail(folder, XPError::fromErrno(errno).reason());
        else if (!S_ISDIR(info.st_mode))
            output.fail(folder, QStringLiteral("is not a folder"));
        else
            present.append(folder);
    }
    return present;
}

static int run(const KPCommandLine &line, KPCommandOutput &output)
{
    const auto request = requestOf(line);
    if (!request)
        return kpReportUsage(&kpFindCommand, request.error().message);
    const auto options = optionsOf(line);
    if (!options)
        return kpReportUsage(&kpFindCommand, options.error().message);
    KPSearchRequest present = *request;
    present.folders = presentFolders(request->folders, output);
    if (present.folders.isEmpty() && !request->folders.isEmpty())
        return output.exitStatus();
    return KPFindRun(*options, output).run(present);
}

const KPCommand kpFindCommand = {
    "find",
    "[OPTION]… [WORD…]",
    "Prints the documents that fulfil all criteria; without any, every document.",
    "Each WORD begins a word of the file's name or of a tag; case and accents do not matter.\n"
    "Documents are the files of a folder and of the folders in it; hidden ones (.name) are left\n"
    "out, and links are not followed. Their paths are printed as they are found, in no order.\n",
    {{"--tag", "TAG", "with this tag (and those of further --tag)"},
     {"--not-tag", "TAG", "without this tag (and those of further --not-tag)"},
     {"--rating", "COND", "by stars: 4, =4, !=0, <2, <=2, >3, >=3.5; unrated counts as 0"},
     {"--in", "DIR", "in this folder (and those of further --in); else in the home folder"},
     {"--count", nullptr, "print only how many there are"},
     {"--limit", "N", "end after N documents"},
     {"--live", nullptr,
      "follow changes until interrupted: lines \"+ PATH\" (new), \"- PATH\"\n"
      "                    (no longer), \"~ PATH\" (changed)"},
     {"--json", nullptr, "print an array of objects with path, tags and rating"},
     {"--print0", nullptr, "end each path with NUL"}},
    run};

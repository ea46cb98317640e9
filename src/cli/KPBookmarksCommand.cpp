// murnctl bookmarks: the saved searches.
#include "KPBookmarks.h"
#include "KPCrumbs.h"
#include "KPFolderFollower.h"
#include "KPResultsRun.h"
#include "KPSearchFolders.h"
#include "KPSearchStateKeys.h"
#include "KPStateFile.h"
#include "KPStatePaths.h"
#include "XPPath.h"

using Named = KPBookmarks::Named;

// By its identifier, its name with the folders, or its title where no other has the same.
static XPResult<Named> findNamed(const KPBookmarks &bookmarks, const QString &wanted)
{
    const QList<Named> all = bookmarks.all();
    const QString name = wanted.simplified(); // as titles are
    const auto isSame = [&](const QString &text) {
        return text.compare(name, Qt::CaseInsensitive) == 0;
    };
    QList<Named> found;
    for (const Named &each : all) {
        if (each.bookmark->identifier == wanted)
            return each;
        if (isSame(each.name) || (each.bookmark->isFolder && isSame(each.name + u'/')))
            found.append(each);
    }
    for (const Named &each : found.isEmpty() ? all : QList<Named>()) {
        if (isSame(each.bookmark->title))
            found.append(each);
    }
    if (found.size() == 1)
        return found.first();
    if (found.isEmpty())
        return XPError::make(XPError::Kind::NotFound,
                             QStringLiteral("no saved search of that name"), wanted);
    QStringList identifiers;
    for (const Named &each : std::as_const(found))
        identifiers.append(each.bookmark->identifier);
    return XPError::make(XPError::Kind::InvalidArgument,
                         QStringLiteral("several have that name; name one by its identifier: %1")
                             .arg(identifiers.join(QStringLiteral(", "))),
                         wanted);
}

static int list(const KPBookmarks &bookmarks, KPCommandOutput &output)
{
    QByteArrayList objects;
    for (const Named &each : bookmarks.all()) {
        const KPBookmark &bookmark = *each.bookmark;
        const KPSearchState::Ptr state = bookmark.searchState();
        if (output.isJson())
            objects.append(
                "  {\"name\": " + KPCommandOutput::json(each.name) +
                ", \"identifier\": " + KPCommandOutput::json(bookmark.identifier) +
                ", \"isFolder\": " + (bookmark.isFolder ? "true" : "false") +
                ", \"state\": " + (state ? KPStateFile::json(*state).trimmed() : "null") + '}');
        else if (output.isSeparatingByNul())
            output.writeRecord(output.name(each.name));
        else
            output.writeRecord(
                output.name(bookmark.isFolder ? each.name + u'/' : each.name) + '\t' +
                (state ? XPPath::printable(KPCrumbs::sentenceOf(state)).toUtf8() : QByteArray()));
    }
    if (output.isJson())
        output.write("[\n" + objects.join(",\n") + "\n]\n");
    return output.exitStatus();
}

static int runOne(const KPBookmark &bookmark, const KPResultsRun::Options &how,
                  KPCommandOutput &output)
{
    const KPSearchState::Ptr state = bookmark.searchState();
    if (!state) {
        output.fail(bookmark.title, QStringLiteral("a folder of saved searches, not one of them"));
        return output.exitStatus();
    }
    return KPResultsRun::print(KPFolderFollower::stateNow(state), how, output);
}

static int add(KPBookmarks &bookmarks, const QString &name, const KPCommandLine &line,
               KPCommandOutput &output)
{
    const KPSearchState::Ptr state = KPStatePaths::stateOfFiles(line.values("--state"), output);
    if (!state)
        return output.exitStatus();
    const KPBookmark made = KPBookmark::search(name, *state);
    for (const Named &each : bookmarks.all()) {
        if (each.name.compare(made.title, Qt::CaseInsensitive) == 0) {
            output.fail(name, QStringLiteral("there is one of that name already"));
            return output.exitStatus();
        }
    }
    if (const auto error = bookmarks.insert({made}))
        output.fail(name, "not saved", *error);
    else
        KPSearchFolders::instance().rememberFolders(
            state->strings(KPSearchStateKey::constraintFolders));
    return output.exitStatus();
}

static int remove(KPBookmarks &bookmarks, const KPBookmark &bookmark, bool isSure,
                  KPCommandOutput &output)
{
    if (!bookmark.children.isEmpty() && !isSure) {
        output.fail(bookmark.title,
                    QStringLiteral("holds saved searches, which would go with it; --yes removes "
                                   "them all"));
        return output.exitStatus();
    }
    const QString title = bookmark.title; // the list is made anew by the removal
    if (const auto error = bookmarks.remove({bookmark.identifier}))
        output.fail(title, "not removed", *error);
    return output.exitStatus();
}

// What is wrong with the words; nothing: all is well.
static std::optional<QString> misuse(const QString &action, const KPCommandLine &line)
{
    const bool takesName = action != u"list";
    if (!QStringList{QStringLiteral("list"), QStringLiteral("run"), QStringLiteral("add"),
                     QStringLiteral("remove")}
             .contains(action))
        return QStringLiteral("no action \"%1\"").arg(XPPath::printable(action));
    if (line.operands().size() > (takesName ? 2 : 1))
        return takesName
                   ? QStringLiteral("takes one name; one of several words is written in quotes")
                   : QStringLiteral("list takes no name");
    if (takesName && line.operands().value(1).trimmed().isEmpty())
        return QStringLiteral("needs a name");
    if (action == u"add" && !line.has("--state"))
        return QStringLiteral("needs --state: 'murnctl find --print-state' writes one");
    const std::pair<const char *, QStringView> belongs[] = {{"--state", u"add"},
                                                            {"--yes", u"remove"}};
    for (const auto &[option, owner] : belongs) {
        if (line.has(option) && action != owner)
            return QStringLiteral("%1 goes with %2").arg(QLatin1String(option), owner);
    }
    for (const char *option : {"--live", "--count", "--limit", "--sort", "--group"}) {
        if (line.has(option) && action != u"run")
            return QStringLiteral("%1 goes with run").arg(QLatin1String(option));
    }
    return {};
}

static int run(const KPCommandLine &line, KPCommandOutput &output)
{
    const QString action = line.operands().value(0, QStringLiteral("list"));
    if (const auto wrong = misuse(action, line))
        return kpReportUsage(&kpBookmarksCommand, *wrong);
    const auto how = KPResultsRun::optionsOf(line);
    if (!how)
        return kpReportUsage(&kpBookmarksCommand, how.error().message);
    KPBookmarks bookmarks;
    if (const auto &problem = bookmarks.problem()) {
        output.fail(KPBookmarks::filePath(), "the saved searches cannot be read", *problem);
        if (action == u"add" || action == u"remove")
            return output.exitStatus();
    }
    const QString name = line.operands().value(1);
    if (action == u"list")
        return list(bookmarks, output);
    if (action == u"add")
        return add(bookmarks, name, line, output);
    const auto named = findNamed(bookmarks, name);
    if (!named) {
        output.fail(named.error().path, named.error().message);
        return output.exitStatus();
    }
    return action == u"run" ? runOne(*named->bookmark, *how, output)
                            : remove(bookmarks, *named->bookmark, line.has("--yes"), output);
}

static std::vector<KPCommandOption> bookmarkOptions()
{
    std::vector<KPCommandOption> options = {
        {"--state", "FILE", "add: the search to save (with further --state: what fulfils all)"},
        {"--yes", nullptr, "remove: a folder with all that is in it"}};
    for (const KPCommandOption &option : KPResultsRun::orderOptions())
        options.push_back(option);
    return KPResultsRun::commandOptions(options);
}

const KPCommand kpBookmarksCommand = {
    "bookmarks",
    "[list] [--json | --print0]\n       murnctl bookmarks run NAME [OPTION]…\n"
    "       murnctl bookmarks add NAME --state FILE…\n       murnctl bookmarks remove NAME",
    "Lists the saved searches, runs one, adds or removes one.",
    "A list prints the name with the folders it is in (\"Work/Invoices\"), a tab and what is\n"
    "searched for; a folder ends with a slash. A NAME is that name in any case, the title alone\n"
    "where no other has it, or the identifier that --json tells. run prints the documents as\n"
    "'murnctl find' does. What is added stands at the end of the list. The window shows the same\n"
    "saved searches, and sees at once what changes here.\n",
    bookmarkOptions(),
    run};

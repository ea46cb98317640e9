#include "KPIndexActions.h"

#include "IndexDifference.h"
#include "IndexSettings.h"
#include "KPImporterStatus.h"
#include "KPIndexTexts.h"
#include "KPProgressLine.h"
#include "UserDefaults.h"
#include "XPPath.h"

#include <algorithm>

using Phase = IndexStatus::Phase;

// --- pause and resume

static const QString pausedKey = QStringLiteral("KPImportPaused");

static bool isReadingPaused()
{
    return UserDefaults::standard().boolValue(pausedKey);
}

static int setReadingPaused(bool on, KPCommandOutput &output)
{
    UserDefaults::standard().setValue(pausedKey,
                                      on ? PropertyValue::boolean(true) : PropertyValue());
    if (const auto error = UserDefaults::standard().synchronise()) {
        output.fail(QStringLiteral("the settings cannot be saved: ") + error->message);
        return output.exitStatus();
    }
    KPIndexSession session(output);
    session.index().settingsChanged();
    return output.exitStatus();
}

int KPIndexActions::pause(const QString &, const KPCommandLine &, KPCommandOutput &output)
{
    return setReadingPaused(true, output);
}

int KPIndexActions::resume(const QString &, const KPCommandLine &, KPCommandOutput &output)
{
    return setReadingPaused(false, output);
}

// --- status

static const char *stateName(IndexStatus::Root::State state)
{
    using State = IndexStatus::Root::State;
    switch (state) {
    case State::Reading:
        return "reading";
    case State::Live:
        return "live";
    case State::Missing:
        return "missing";
    case State::Silent:
        break;
    }
    return "silent";
}

static QByteArray describe(IndexStatus::Root::State state)
{
    using State = IndexStatus::Root::State;
    switch (state) {
    case State::Reading:
        return "  (being read)";
    case State::Live:
        return {};
    case State::Missing:
        return "  (is not there)";
    case State::Silent:
        break;
    }
    return "  (does not answer)";
}

// With what an administrator can do about it.
static QString describe(const IndexProblem &problem)
{
    using Kind = IndexProblem::Kind;
    QString text = KPIndexTexts::problem(problem);
    switch (problem.kind) {
    case Kind::NoWatches:
        return text + QStringLiteral(" (sysctl fs.inotify.max_user_instances)");
    case Kind::FoldersUnwatched:
        return text + QStringLiteral(" (sysctl fs.inotify.max_user_watches)");
    case Kind::EventsLost:
        return text + QStringLiteral(" (sysctl fs.inotify.max_queued_events)");
    default:
        return text;
    }
}

static void printText(const IndexStatus &status, KPIndexSession &session, KPCommandOutput &output)
{
    const auto field = [&](const char *label, const QByteArray &text) {
        output.write(QByteArray(label).leftJustified(12) + text + '\n');
    };
    field("State:", KPIndexSession::describe(status).toUtf8());
    field("Kept by:", session.index().isKeptHere() ? "this command; no other process runs"
                                                   : "another process, which follows every change");
    field("Holds:", QByteArray::number(status.items) + " files and folders");
    field("Contents:", status.contentsWaiting
                           ? QByteArray::number(status.contentsWaiting) + " files wait"
                           : QByteArray("all read"));
    if (isReadingPaused())
        field("Paused:", "the reading of contents, until: murnctl index resume");
    const QStringList wanted = IndexSettings::roots();
    for (const IndexStatus::Root &root : status.roots) {
        if (root.state != IndexStatus::Root::State::Missing || wanted.contains(root.path))
            field("Folder:", output.name(root.path) + describe(root.state));
    }
    for (const QString &rule : IndexSettings::rules())
        field(rule.startsWith(u'!') ? "Taken in:" : "Left out:",
              output.name(rule.startsWith(u'!') ? rule.mid(1) : rule));
    field("Store:", output.name(IndexSettings::storePath()));
    const KPImporterStatus importer(IndexSettings::storePath());
    importer.printText(output);
    const QString cage = importer.problem();
    if (status.problems.isEmpty() && cage.isEmpty())
        field("Degraded:", "nothing");
    if (!cage.isEmpty())
        field("Degraded:", XPPath::printable(cage).toUtf8());
    for (const IndexProblem &problem : status.problems)
        field("Degraded:", describe(problem).toUtf8());
}

static const char *phaseName(Phase phase)
{
    switch (phase) {
    case Phase::Opening:
        return "opening";
    case Phase::Crawling:
        return "crawling";
    case Phase::Verifying:
        return "verifying";
    case Phase::Live:
        break;
    }
    return "live";
}

static void printJson(const IndexStatus &status, KPIndexSession &session, KPCommandOutput &output)
{
    QByteArrayList roots;
    for (const IndexStatus::Root &root : status.roots)
        roots.append("{\"path\": " + KPCommandOutput::json(root.path) + ", \"state\": \"" +
                     stateName(root.state) + "\"}");
    const KPImporterStatus importer(IndexSettings::storePath());
    QStringList problems = KPIndexTexts::problems(status);
    if (const QString cage = importer.problem(); !cage.isEmpty())
        problems.append(cage);
    output.write(QByteArray("{\n  \"phase\": \"") + phaseName(status.phase) +
                 "\",\n  \"keptHere\": " + (session.index().isKeptHere() ? "true" : "false") +
                 ",\n  \"items\": " + QByteArray::number(status.items) +
                 ",\n  \"foldersRead\": " + QByteArray::number(status.foldersRead) +
                 ",\n  \"contentsWaiting\": " + QByteArray::number(status.contentsWaiting) +
                 ",\n  \"contentsPaused\": " + (isReadingPaused() ? "true" : "false") +
                 ",\n  \"degraded\": " + KPCommandOutput::json(problems) + ",\n  \"roots\": [" +
                 roots.join(", ") +
                 "],\n  \"exclusions\": " + KPCommandOutput::json(IndexSettings::rules()) +
                 ",\n  \"store\": " + KPCommandOutput::json(IndexSettings::storePath()));
    importer.printJson(output);
    output.write("\n}\n");
}

int KPIndexActions::status(const QString &, const KPCommandLine &, KPCommandOutput &output)
{
    KPIndexSession session(output);
    // What is degraded is known when the folders were looked at.
    if (!session.catchUp(false))
        return KPExitInterrupted;
    const auto status = session.status();
    if (status && output.isJson())
        printJson(*status, session, output);
    else if (status)
        printText(*status, session, output);
    return output.exitStatus();
}

// --- sync and rebuild

int KPIndexActions::sync(const QString &, const KPCommandLine &line, KPCommandOutput &output)
{
    const bool contents = !line.has("--no-content");
    KPIndexSession session(output, contents);
    // Where another process keeps the index, its contents would be waited for in vain.
    const bool isPaused = contents && !session.index().isKeptHere() && isReadingPaused();
    if (!session.catchUp(contents && !isPaused))
        return KPExitInterrupted;
    if (isPaused)
        output.fail(QStringLiteral("the reading of contents is paused; go on with: murnctl index "
                                   "resume"));
    if (const auto status = session.status()) {
        for (const IndexProblem &problem : status->problems)
            output.fail(describe(problem));
    }
    return output.exitStatus();
}

int KPIndexActions::rebuild(const QString &operand, const KPCommandLine &line,
                            KPCommandOutput &output)
{
    if (const auto error = MetadataIndex::remove()) {
        output.fail(error->message);
        return output.exitStatus();
    }
    return sync(operand, line, output);
}

// --- verify

using Difference = IndexDifference;

static const char *text(Difference::Kind kind)
{
    switch (kind) {
    case Difference::Kind::NotIndexed:
        return "not indexed";
    case Difference::Kind::NotOnDisk:
        return "not on disk";
    case Difference::Kind::OtherFacts:
        return "other facts";
    case Difference::Kind::OtherAttributes:
        return "other attributes";
    case Difference::Kind::OtherType:
        return "other type";
    case Difference::Kind::OldContent:
        return "old content";
    case Difference::Kind::NoFolder:
        return "without its folder";
    case Difference::Kind::Unreadable:
        break;
    }
    return "unreadable";
}

// Nothing: interrupted.
static std::optional<std::vector<Difference>> compare(KPIndexSession &session, qint64 *items)
{
    KPProgressLine progress;
    bool interrupted = false;
    auto differences = session.index().verify(
        [&](qint64 folders) {
            if (progress.isDue())
                progress.show(
                    QStringLiteral("murnctl: comparing with the disk: %1 folders").arg(folders));
            interrupted = session.interrupt().happened();
            return !interrupted;
        },
        items);
    if (interrupted)
        return {};
    return differences;
}

int KPIndexActions::verify(const QString &, const KPCommandLine &, KPCommandOutput &output)
{
    KPIndexSession session(output);
    std::vector<Difference> lasting;
    qint64 items = 0;
    // Looked at twice where need be: somebody may be at work on the files.
    for (int round = 0; round < 2 && (round == 0 || !lasting.empty()); ++round) {
        if (!session.catchUp(false))
            return KPExitInterrupted;
        auto differences = compare(session, &items);
        if (!differences)
            return KPExitInterrupted;
        std::erase_if(*differences, [&](const Difference &found) {
            return round > 0 &&
                   std::none_of(lasting.begin(), lasting.end(),
                                [&](const auto &before) { return before.path == found.path; });
        });
        lasting = *std::move(differences);
    }
    QByteArray separator = "[\n  ";
    for (const Difference &difference : lasting) {
        const QString path = XPPath::decode(difference.path);
        if (output.isJson())
            output.write(separator + "{\"difference\": \"" + text(difference.kind) +
                         "\", \"path\": " + KPCommandOutput::json(path) + '}');
        else
            output.write(QByteArray(text(difference.kind)) + '\t' + output.name(path) + '\n');
        separator = ",\n  ";
    }
    if (output.isJson())
        output.write(lasting.empty() ? "[]\n" : "\n]\n");
    else if (lasting.empty())
        output.write(QByteArray::number(items) + " files and folders compared: the index agrees\n");
    const int written = output.exitStatus();
    return lasting.empty() ? written : KPExitFailed;
}

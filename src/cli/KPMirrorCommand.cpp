// murnctl mirror: the desktop's own tags, ratings and comments.
#include "KPIndexSession.h"
#include "KPMirrorImport.h"
#include "KPProgressLine.h"
#include "UserDefaults.h"
#include "XPPath.h"

namespace {

// What was found on the way through the library.
struct Sums
{
    qsizetype files = 0;
    qsizetype differing = 0; // or made to agree
    qsizetype unfit = 0;     // tags with a comma
    qsizetype unreadable = 0;
};

} // namespace

static QByteArray tagsAsText(const KarvexFacts &facts)
{
    return XPPath::printable(facts.tags.join(u',')).toUtf8();
}

static void print(const KPMirrorImport::File &file, KPCommandOutput &output)
{
    const auto &outcome = file.outcome;
    const char *way = !outcome.changedOurs      ? "to the desktop"
                      : !outcome.changedDesktop ? "from the desktop"
                                                : "both ways";
    const auto stars = [](int half) { return QByteArray::number(half / 2.0); };
    output.writeRecord(output.name(file.path) + '\t' + way + '\t' + tagsAsText(outcome.before) +
                       '\t' + tagsAsText(outcome.after) + '\t' + stars(outcome.after.halfStars));
}

static int goThrough(KPCommandOutput &output, bool isDryRun, bool prints, Sums *sums)
{
    KPIndexSession session(output);
    if (!session.catchUp(false))
        return KPExitInterrupted;
    KPProgressLine progress;
    const bool done = KPMirrorImport::run(
        session.index().source(), isDryRun, [&](const KPMirrorImport::File &file) {
            ++sums->files;
            if (progress.isDue())
                progress.show(QStringLiteral("murnctl: %1 files").arg(sums->files));
            if (file.error)
                output.fail(file.path, "its tags cannot be mirrored", *file.error);
            sums->unfit += file.outcome.unfit.size();
            sums->unreadable += file.outcome.isReadable ? 0 : 1;
            if (prints && !file.outcome.isReadable)
                KPCommandOutput::note(
                    XPPath::printable(file.path) +
                    QStringLiteral(": something on it cannot be understood and was left alone"));
            for (const QString &tag : prints ? file.outcome.unfit : QStringList())
                KPCommandOutput::note(
                    XPPath::printable(file.path) +
                    QStringLiteral(": the desktop cannot hold a tag with a comma: ") +
                    XPPath::printable(tag));
            if (!file.error && !file.outcome.isEmpty()) {
                ++sums->differing;
                if (prints)
                    print(file, output);
            }
            return !session.interrupt().happened();
        });
    progress.clear();
    return done ? output.exitStatus() : KPExitInterrupted;
}

static int showStatus(KPCommandOutput &output)
{
    Sums sums;
    if (const int status = goThrough(output, true, false, &sums); status == KPExitInterrupted)
        return status;
    const char *state = KarvexMirror::isOn()       ? "on"
                        : KarvexMirror::wasAsked() ? "off"
                                                   : "off, and never asked for";
    if (output.isJson())
        output.write("{\"on\": " + QByteArray(KarvexMirror::isOn() ? "true" : "false") +
                     ", \"files\": " + QByteArray::number(sums.files) +
                     ", \"differing\": " + QByteArray::number(sums.differing) +
                     ", \"tagsWithCommas\": " + QByteArray::number(sums.unfit) +
                     ", \"notUnderstood\": " + QByteArray::number(sums.unreadable) + "}\n");
    else
        output.write("mirror: " + QByteArray(state) +
                     "\nfiles with tags, rating or comment: " + QByteArray::number(sums.files) +
                     "\nthe desktop says something else: " + QByteArray::number(sums.differing) +
                     "\ntags with commas, which it cannot hold: " + QByteArray::number(sums.unfit) +
                     "\nnot understood, and left alone: " + QByteArray::number(sums.unreadable) +
                     '\n');
    return output.exitStatus();
}

// Whoever keeps the index is told, so that a window follows at once.
static int switchTo(bool isOn, KPCommandOutput &output)
{
    UserDefaults::standard().setValue(KarvexMirror::settingsKey, PropertyValue::boolean(isOn));
    if (const auto error = UserDefaults::standard().synchronise()) {
        output.fail(QStringLiteral("the setting cannot be saved: ") + error->message);
        return output.exitStatus();
    }
    KPIndexSession(output).index().settingsChanged();
    if (isOn)
        KPCommandOutput::note(QStringLiteral(
            "what stands on files already: see murnctl mirror import --dry-run, then import"));
    return output.exitStatus();
}

static int run(const KPCommandLine &line, KPCommandOutput &output)
{
    const QString action = line.operands().value(0);
    const bool isKnown =
        action == u"on" || action == u"off" || action == u"status" || action == u"import";
    if (!isKnown || line.operands().size() != 1)
        return kpReportUsage(&kpMirrorCommand,
                             QStringLiteral("one of on, off, status and import is needed"));
    if (line.has("--dry-run") && action != u"import")
        return kpReportUsage(&kpMirrorCommand, QStringLiteral("--dry-run is for import"));
    if (action == u"status")
        return showStatus(output);
    if (action == u"import") {
        Sums sums;
        return goThrough(output, line.has("--dry-run"), true, &sums);
    }
    return switchTo(action == u"on", output);
}

const KPCommand kpMirrorCommand = {
    "mirror",
    "on|off|status|import [--dry-run] [--json]",
    "Mirrors tags, ratings and comments to the desktop's own attributes.",
    "While it is on, every change of ours is written to user.xdg.tags, user.baloo.rating and\n"
    "user.xdg.comment too, which file managers show, and what other programs change there is\n"
    "taken over. It is off until it is asked for. \"import\" brings all indexed files in line:\n"
    "what only one side has, both get; each line says the file, the way, the tags before and\n"
    "after, and the stars. Tags with commas, which the desktop cannot hold, are reported.\n",
    {{"--dry-run", nullptr, "only print what import would change"},
     {"--json", nullptr, "print the status as an object"}},
    run};

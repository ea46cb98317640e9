#include "KPIndexActions.h"

#include "IndexVerifier.h"
#include "KPProgressLine.h"
#include "XPPath.h"

#include <QLocale>
#include <algorithm>

using Phase = IndexKeeper::Status::Phase;

static QByteArray number(qint64 value)
{
    return QLocale::c().toString(value).toUtf8();
}

// --- status

static void printText(const IndexKeeper::Status &status, KPIndexSession &session,
                      KPCommandOutput &output)
{
    const auto field = [&](const char *label, const QByteArray &text) {
        output.write(QByteArray(label).leftJustified(12) + text + '\n');
    };
    field("State:", KPIndexSession::describe(status).toUtf8());
    field("Kept by:", session.index().keeper() ? "this command; no other process runs"
                                               : "another process, which follows every change");
    field("Holds:", number(status.items) + " files and folders");
    field("Contents:", status.contentsWaiting ? number(status.contentsWaiting) + " files wait"
                                              : QByteArray("all read"));
    for (const QString &root : MetadataIndex::roots())
        field("Folder:", output.name(root));
    const IndexRules rules = IndexRules::fromSettings();
    for (const QString &rule : rules.rules())
        field(rule.startsWith(u'!') ? "Taken in:" : "Left out:",
              output.name(rule.startsWith(u'!') ? rule.mid(1) : rule));
    field("Store:", output.name(MetadataIndex::storePath()));
    if (status.problems.isEmpty())
        field("Degraded:", "nothing");
    for (const QString &problem : status.problems)
        field("Degraded:", XPPath::printable(problem).toUtf8());
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

static void printJson(const IndexKeeper::Status &status, KPIndexSession &session,
                      KPCommandOutput &output)
{
    const auto value = [](qint64 count) { return QByteArray::number(count); };
    output.write(
        QByteArray("{\n  \"phase\": \"") + phaseName(status.phase) + "\",\n  \"keptHere\": " +
        (session.index().keeper() ? "true" : "false") + ",\n  \"items\": " + value(status.items) +
        ",\n  \"foldersRead\": " + value(status.foldersRead) +
        ",\n  \"contentsWaiting\": " + value(status.contentsWaiting) +
        ",\n  \"degraded\": " + KPCommandOutput::json(status.problems) +
        ",\n  \"roots\": " + KPCommandOutput::json(MetadataIndex::roots()) +
        ",\n  \"exclusions\": " + KPCommandOutput::json(IndexRules::fromSettings().rules()) +
        ",\n  \"store\": " + KPCommandOutput::json(MetadataIndex::storePath()) + "\n}\n");
}

int KPIndexActions::status(const QString &, const KPCommandLine &, KPCommandOutput &output)
{
    KPIndexSession session(output);
    // What is degraded is known when the folders were looked at.
    if (!session.catchUp(false))
        return KPExitInterrupted;
    const IndexKeeper::Status status = session.status();
    if (output.isJson())
        printJson(status, session, output);
    else
        printText(status, session, output);
    return output.exitStatus();
}

// --- sync and rebuild

int KPIndexActions::sync(const QString &, const KPCommandLine &line, KPCommandOutput &output)
{
    KPIndexSession session(output);
    if (!session.catchUp(!line.has("--no-content")))
        return KPExitInterrupted;
    for (const QString &problem : session.status().problems)
        output.fail(problem);
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

using Difference = IndexVerifier::Difference;

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
    IndexVerifier verifier(session.index().source().catalog(), IndexRules::fromSettings());
    auto differences = verifier.run([&](qint64 folders) {
        if (progress.isDue())
            progress.show(QStringLiteral("murnctl: comparing with the disk: %1 folders")
                              .arg(QLocale::c().toString(folders)));
        interrupted = session.interrupt().happened();
        return !interrupted;
    });
    *items = verifier.itemsCompared();
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
        output.write(number(items) + " files and folders compared: the index agrees\n");
    return lasting.empty() ? output.exitStatus() : (output.exitStatus(), KPExitFailed);
}

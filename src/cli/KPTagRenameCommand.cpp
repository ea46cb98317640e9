// murnctl tag-rename and tag-delete: changes of a tag over all indexed files.
#include "KPCommandOutput.h"
#include "KPDoc.h"
#include "KPDocMetaData.h"
#include "KPEditHistory.h"
#include "KPEditJournal.h"
#include "KPIndexSession.h"
#include "KPProgressLine.h"
#include "KPTagPlan.h"
#include "KPTerminalPrompts.h"
#include "KPWaitingTagChanges.h"
#include "XPPath.h"

#include <QDateTime>
#include <QEventLoop>

namespace {

class TagChange
{
public:
    TagChange(KPIndexSession &session, const KPCommandLine &line, KPCommandOutput &output)
        : m_session(session), m_output(output), m_isDryRun(line.has("--dry-run")),
          m_isAgreed(line.has("--yes")), m_takesSpellings(line.has("--spellings"))
    {
    }

    int run(const KPTagRename &rename);

private:
    QStringList missingRoots();
    void describe(const KPTagPlan &plan);
    bool ask(const KPTagPlan &plan);
    void write(const KPTagPlan &plan);

    KPIndexSession &m_session;
    KPCommandOutput &m_output;
    const bool m_isDryRun;
    const bool m_isAgreed;
    const bool m_takesSpellings;
};

} // namespace

QStringList TagChange::missingRoots()
{
    QStringList missing;
    const auto status = m_session.status();
    for (const auto &root : status ? status->roots : QList<IndexStatus::Root>()) {
        if (root.state == IndexStatus::Root::State::Missing ||
            root.state == IndexStatus::Root::State::Silent)
            missing.append(root.path);
    }
    return missing;
}

void TagChange::describe(const KPTagPlan &plan)
{
    for (const QString &path : plan.paths)
        m_output.writeRecord(m_output.name(path));
    for (const QString &path : plan.away)
        m_output.writeRecord(m_output.name(path));
    m_output.flush();
    if (!plan.away.isEmpty())
        KPCommandOutput::note(
            QStringLiteral("%1 of these files are on volumes that are away, and wait for them")
                .arg(plan.away.size()));
    if (plan.isMerge)
        KPCommandOutput::note(QStringLiteral("some files have the tag %1 already: the two become "
                                             "one")
                                  .arg(XPPath::printable(plan.rename.to)));
    for (const QString &tag : plan.otherSpellings)
        KPCommandOutput::note((m_takesSpellings
                                   ? QStringLiteral("this spelling gets the new name too: %1")
                                   : QStringLiteral("there is another spelling: %1"))
                                  .arg(XPPath::printable(tag)));
}

bool TagChange::ask(const KPTagPlan &plan)
{
    xpGuiThread.assertHere();
    if (m_isAgreed)
        return true;
    if (!KPTerminalPrompts::canAsk()) {
        m_output.fail(QStringLiteral("nothing was changed: there is nobody to ask, and no --yes"));
        return false;
    }
    KPTerminalPrompts prompts(m_output, false);
    const qsizetype count = plan.paths.size() + plan.away.size();
    const QString old = XPPath::printable(plan.rename.from);
    XPPrompts::Question question;
    question.title = plan.rename.isDeletion()
                         ? QStringLiteral("Take the tag %1 off %2 files?").arg(old).arg(count)
                         : QStringLiteral("Rename the tag %1 to %2 on %3 files?")
                               .arg(old, XPPath::printable(plan.rename.to))
                               .arg(count);
    question.buttons = {QStringLiteral("Change them"), QStringLiteral("Cancel")};
    question.cancelButton = 1;
    bool isAgreed = false;
    prompts.ask(question, [&](int button) { isAgreed = button == 0; });
    if (!isAgreed)
        m_output.fail(QStringLiteral("nothing was changed"));
    return isAgreed;
}

// The worker writes it as it does in the window, where it can be undone after its next start.
void TagChange::write(const KPTagPlan &plan)
{
    if (const auto error = KPWaitingTagChanges::add(plan.rename, plan.away))
        m_output.fail(KPWaitingTagChanges::path(), error->reason());
    if (plan.paths.isEmpty())
        return;
    KPEditWorker worker;
    KPProgressLine progress;
    QEventLoop loop;
    QObject::connect(
        &worker, &KPEditWorker::progressed, &loop, [&](qsizetype done, qsizetype total) {
            progress.show(QStringLiteral("murnctl: %1 of %2 files").arg(done).arg(total));
        });
    QObject::connect(&m_session.interrupt(), &KPInterrupt::interrupted, &worker,
                     &KPEditWorker::stop);
    KPEditReport result;
    QObject::connect(&worker, &KPEditWorker::reported, &loop, [&](const KPEditReport &report) {
        result = report;
        loop.quit();
    });
    const KPFileEdit edit = plan.edit();
    worker.edit(edit, std::make_shared<KPEditRecord>(), KPEditHistory::textOf(edit));
    loop.exec();
    progress.clear();
    for (const XPError &error : result.failures)
        m_output.fail(error.path, "tags cannot be changed", error);
    if (result.stopped)
        m_output.fail(QStringLiteral("interrupted after %1 of %2 files")
                          .arg(result.changed)
                          .arg(result.total));
}

int TagChange::run(const KPTagRename &rename)
{
    xpGuiThread.assertHere();
    if (!m_session.catchUp(false))
        return KPExitInterrupted;
    KPDocMetaData::useIndex(m_session.index().source());
    KPTagPlan plan = KPTagPlan::make(rename, missingRoots());
    if (m_takesSpellings && !plan.otherSpellings.isEmpty()) {
        KPTagRename all = rename;
        all.alsoFrom = plan.otherSpellings;
        plan = KPTagPlan::make(all, missingRoots());
    }
    KPDoc::stopMetaDataSearching();
    if (plan.isEmpty()) {
        m_output.fail(QStringLiteral("no indexed file has the tag ") +
                      XPPath::printable(rename.from));
        return m_output.exitStatus();
    }
    describe(plan);
    if (!m_isDryRun && ask(plan))
        write(plan);
    return m_output.exitStatus();
}

// What waits for volumes that are away.
static int showWaiting(KPCommandOutput &output, bool drops)
{
    const auto changes = KPWaitingTagChanges::read();
    if (!changes) {
        output.fail(KPWaitingTagChanges::path(), changes.error().reason());
        return output.exitStatus();
    }
    for (const auto &change : *changes) {
        for (const QString &path : change.paths)
            output.writeRecord(output.name(change.rename.from) + '\t' +
                               output.name(change.rename.to) + '\t' + output.name(path));
    }
    if (const auto error = drops ? KPWaitingTagChanges::drop() : std::nullopt)
        output.fail(KPWaitingTagChanges::path(), error->reason());
    return output.exitStatus();
}

static int run(const KPCommand *command, qsizetype names, const KPCommandLine &line,
               KPCommandOutput &output)
{
    if (line.has("--waiting") || line.has("--drop-waiting")) {
        if (!line.operands().isEmpty())
            return kpReportUsage(command, QStringLiteral("takes no tags then"));
        return showWaiting(output, line.has("--drop-waiting"));
    }
    if (line.operands().size() != names)
        return kpReportUsage(command, names == 2 ? QStringLiteral("two tags are needed")
                                                 : QStringLiteral("one tag is needed"));
    QStringList tags;
    for (const QString &operand : line.operands()) {
        const QStringList pieces = KPCommandLine::tagsIn(operand);
        if (pieces.size() != 1)
            return kpReportUsage(command,
                                 QStringLiteral("not one tag: ") + XPPath::printable(operand));
        tags += pieces;
    }
    KPTagRename rename{tags.first(), tags.value(1), !line.has("--only")};
    if (rename.isDeletion())
        rename.withBranch = line.has("--branch");
    KPIndexSession session(output);
    return TagChange(session, line, output).run(rename);
}

static int runRename(const KPCommandLine &line, KPCommandOutput &output)
{
    return run(&kpTagRenameCommand, 2, line, output);
}

static int runDelete(const KPCommandLine &line, KPCommandOutput &output)
{
    return run(&kpTagDeleteCommand, 1, line, output);
}

const KPCommand kpTagRenameCommand = {
    "tag-rename",
    "[--dry-run | --yes] [--only] [--spellings] OLD NEW\n"
    "       murnctl tag-rename --waiting | --drop-waiting",
    "Renames a tag on all indexed files.",
    "Prints the files. Where NEW is there already the two become one, and tags below OLD (OLD/x)\n"
    "move too. Files on volumes that are away wait in a list, which is worked off when they are\n"
    "there again. The window can undo the change as one step after its next start.\n",
    {{"--dry-run", nullptr, "change nothing, only print what would be"},
     {"--yes", nullptr, "do not ask"},
     {"--spellings", nullptr, "what differs from NEW in accents alone gets it too"},
     {"--only", nullptr, "leave the tags below OLD as they are"},
     {"--waiting", nullptr, "show what waits: the tag, its new name, the file"},
     {"--drop-waiting", nullptr, "show and forget it"},
     {"--print0", nullptr, "a NUL after each line"}},
    runRename};

const KPCommand kpTagDeleteCommand = {
    "tag-delete",
    "[--dry-run | --yes] [--branch] TAG",
    "Takes a tag off all indexed files.",
    "Prints the files. As with tag-rename files on volumes that are away wait, and the window can\n"
    "undo the change after its next start.\n",
    {{"--dry-run", nullptr, "change nothing, only print what would be"},
     {"--yes", nullptr, "do not ask"},
     {"--branch", nullptr, "the tags below it (TAG/x) too"},
     {"--print0", nullptr, "a NUL after each line"}},
    runDelete};

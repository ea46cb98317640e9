// murnctl import-archive: documents out of an archive, with their tags.
#include "KPFileSteps.h"
#include "KPTerminalPrompts.h"
#include "XPDocumentImport.h"
#include "XPFolders.h"
#include "XPMutex.h"
#include "XPPath.h"

using Action = XPDocumentImport::Action;
using Step = XPDocumentImport::Step;
using Summary = XPDocumentImport::Summary;

static constexpr const char *actionNames[] = {"added",    "same", "changed",
                                              "replaced", "kept", "failed"};

namespace {

class Import
{
public:
    Import(const KPCommandLine &line, KPCommandOutput &output)
        : m_output(output), m_isDryRun(line.has("--dry-run")), m_isAgreed(line.has("--yes"))
    {
    }

    int run(const QString &archive, const QString &folder);

private:
    bool ask(const Summary &summary, const QString &folder);
    void tell(const Step &step);
    void printText(const Step &step);
    void printJson(const Step &step);
    void printEnd(const Summary &summary);

    KPCommandOutput &m_output;
    const bool m_isDryRun;
    const bool m_isAgreed;
    bool m_isFirst = true;
    bool m_isRefused = false;
    KPInterrupt m_interrupt;
    KPProgressLine m_progress;
};

QString textOf(const KarvexBackupRecord &record)
{
    QString text = record.tags.join(QStringLiteral(", "));
    if (record.rating > 0)
        text += QStringLiteral("%1%2 of 5 stars")
                    .arg(text.isEmpty() ? QString() : QStringLiteral("; "),
                         QString::number(record.rating));
    return text.isEmpty() ? QStringLiteral("none") : text;
}

void Import::printText(const Step &step)
{
    if (step.action == Action::Same || step.action == Action::Failed)
        return;
    QByteArray line = QByteArray(actionNames[static_cast<int>(step.action)]).leftJustified(9) +
                      m_output.name(step.path);
    if (step.action == Action::Changed)
        line += "\n         " +
                XPPath::printable(textOf(step.before) + QStringLiteral(" -> ") + textOf(step.after))
                    .toUtf8();
    m_output.writeRecord(line);
}

QByteArray jsonOf(const KarvexBackupRecord &record)
{
    return "{\"tags\": " + KPCommandOutput::json(record.tags) +
           ", \"rating\": " + QByteArray::number(record.rating) + '}';
}

void Import::printJson(const Step &step)
{
    m_output.write(QByteArray(m_isFirst ? "{\"steps\": [\n" : ",\n") +
                   "  {\"path\": " + KPCommandOutput::json(step.path) + ", \"action\": \"" +
                   actionNames[static_cast<int>(step.action)] + "\", \"before\": " +
                   jsonOf(step.before) + ", \"after\": " + jsonOf(step.after) + ", \"error\": " +
                   (step.problem ? KPCommandOutput::json(step.problem->reason()) : "null") + '}');
    m_isFirst = false;
}

void Import::tell(const Step &step)
{
    m_progress.clear();
    if (m_output.isJson())
        printJson(step);
    else
        printText(step);
    if (step.problem)
        m_output.fail(step.path, step.problem->reason());
    if (!step.keptAside.isEmpty())
        m_output.fail(step.keptAside, QStringLiteral("what was replaced is kept here, as no trash "
                                                     "takes it"));
}

bool Import::ask(const Summary &summary, const QString &folder)
{
    xpGuiThread.assertHere();
    m_progress.clear();
    if (m_isDryRun || m_isAgreed)
        return true;
    KPTerminalPrompts prompts(m_output, false);
    XPPrompts::Question question;
    question.title = QStringLiteral("Bring the %1 documents of the archive to %2?")
                         .arg(QString::number(summary.documents), XPPath::printable(folder));
    question.text = QStringLiteral("%1 bytes are new there.").arg(summary.bytes);
    question.buttons = {QStringLiteral("Bring them"), QStringLiteral("Cancel")};
    question.cancelButton = 1;
    bool isAgreed = false;
    prompts.ask(question, [&](int button) { isAgreed = button == 0; });
    m_isRefused = !isAgreed;
    return isAgreed;
}

void Import::printEnd(const Summary &summary)
{
    if (m_output.isJson()) {
        QByteArray object = (m_isFirst ? "{\"steps\": [" : "\n ],\n ");
        object += m_isFirst ? "]," : "";
        object += " \"documents\": " + QByteArray::number(summary.documents);
        for (int i = 0; i < 6; ++i)
            object += QByteArray(", \"") + actionNames[i] +
                      "\": " + QByteArray::number(summary.counts[i]);
        m_output.write(object + "}\n");
        return;
    }
    QByteArrayList counts;
    for (int i = 0; i < 6; ++i) {
        if (summary.counts[i] > 0)
            counts.append(QByteArray::number(summary.counts[i]) + ' ' + actionNames[i]);
    }
    m_output.write("of " + QByteArray::number(summary.documents) +
                   " documents: " + (counts.isEmpty() ? QByteArray("none") : counts.join(", ")) +
                   (m_isDryRun ? " (nothing was changed)\n" : "\n"));
}

int Import::run(const QString &archive, const QString &folder)
{
    XPDocumentImport::Options options;
    options.dryRun = m_isDryRun;
    options.agrees = [&](const Summary &summary) { return ask(summary, folder); };
    options.progress = [&](qint64 done, qint64 total) {
        m_progress.show(QStringLiteral("murnctl: %1 of %2 documents").arg(done).arg(total));
        return !m_interrupt.happened();
    };
    options.told = [&](const Step &step) { tell(step); };
    const Summary summary = XPDocumentImport::run(archive, folder, options);
    m_progress.clear();
    if (m_isRefused)
        m_output.fail(QStringLiteral("nothing was changed"));
    else if (summary.error)
        m_output.fail(summary.error->path.isEmpty() ? archive : summary.error->path,
                      summary.error->reason());
    if (!m_isRefused && (!summary.error || !m_isFirst))
        printEnd(summary);
    const int status = m_output.exitStatus();
    return summary.stopped && !m_isRefused ? KPExitInterrupted : status;
}

} // namespace

static int run(const KPCommandLine &line, KPCommandOutput &output)
{
    const QStringList to = line.values("--to");
    if (line.operands().size() != 1)
        return kpReportUsage(&kpImportArchiveCommand, QStringLiteral("one archive is needed"));
    if (to.size() > 1 || to.contains(QString()))
        return kpReportUsage(&kpImportArchiveCommand, QStringLiteral("--to takes one folder"));
    const bool asks = !line.has("--yes") && !line.has("--dry-run");
    if (asks && !KPTerminalPrompts::canAsk())
        return kpReportUsage(&kpImportArchiveCommand,
                             QStringLiteral("writes files and there is no terminal to ask on: say "
                                            "--yes"));
    const QString archive = KPFileSteps::operand(line.operands().first());
    const QString folder =
        to.isEmpty() ? XPDocumentImport::usualFolder(archive) : XPPath::absolute(to.first());
    return Import(line, output).run(archive, XPFolders::realFolder(folder).valueOr(folder));
}

const KPCommand kpImportArchiveCommand = {
    "import-archive",
    "[--to DIR] [--dry-run | --yes] [--json] ARCHIVE",
    "Brings the documents of an archive back, with their tags.",
    "The archive is one of 'murnctl export', or a list of tags that was written beside documents\n"
    "copied to a drive that keeps none. Without --to its documents go to a folder of its name in "
    "the\n"
    "documents folder. The archive is checked as a whole first. A document that is there already\n"
    "with these contents gets tags and rating as 'murnctl restore' gives them; an older one is\n"
    "replaced and goes to the trash; a newer one is kept. Prints a line for each document that is\n"
    "not the same already: added, changed (with tags and rating before and after), replaced, "
    "kept.\n",
    {{"--to", "DIR", "the folder, which is made if it is missing"},
     {"--dry-run", nullptr, "change nothing, only print what would be"},
     {"--yes", nullptr, "do not ask"},
     {"--json", nullptr, "print an object"}},
    run};

// murnctl file: documents into the managed folder, or to a chosen one.
#include "KPFileSteps.h"
#include "KPTerminalPrompts.h"
#include "XPFileInfo.h"
#include "XPFileTransfers.h"
#include "XPFiledDocuments.h"
#include "XPFilingRun.h"
#include "XPFolders.h"
#include "XPLog.h"
#include "XPMoveRecovery.h"
#include "XPPath.h"

namespace {

// What is asked and done for one command.
class FileCommand
{
public:
    FileCommand(const KPCommandLine &line, KPCommandOutput &output)
        : m_line(line), m_output(output), m_isDryRun(line.has("--dry-run"))
    {
        xpGuiThread.assertHere();
        const bool isSilent = m_isDryRun || line.has("--yes");
        XPPrompts::install(std::make_unique<KPTerminalPrompts>(output, isSilent));
        if (m_isDryRun)
            return;
        for (const QString &done : XPMoveRecovery::run()) // of a run that was killed
            qCWarning(xpLog).noquote() << done;
    }
    ~FileCommand()
    {
        xpGuiThread.assertHere();
        XPPrompts::install(nullptr);
    }
    FileCommand(const FileCommand &) = delete;
    FileCommand &operator=(const FileCommand &) = delete;

    int filePending()
    {
        KPProgressLine progress;
        const XPFileReport report = XPFiledDocuments::movePendingFilesToFiledDocuments(
            KPFileSteps::options(m_isDryRun, 0, m_interrupt, progress));
        progress.clear();
        return KPFileSteps::print(report, m_output);
    }

    int file();
    int moveTo(const QString &folder);

private:
    // Those that exist; the others are failures.
    QStringList existing()
    {
        QStringList paths;
        for (const QString &path : KPFileSteps::operands(m_line.operands())) {
            if (const auto info = XPFileInfo::read(path))
                paths.append(path);
            else
                m_output.fail(path, info.error().reason());
        }
        paths.removeDuplicates();
        return paths;
    }
    bool askToFile(const QStringList &paths) const;
    int nothingDone(bool isCancelled)
    {
        if (isCancelled && !m_output.hasFailed())
            m_output.fail(QStringLiteral("nothing was changed"));
        return KPFileSteps::print({}, m_output);
    }

    const KPCommandLine &m_line;
    KPCommandOutput &m_output;
    const bool m_isDryRun;
    KPInterrupt m_interrupt;
};

bool FileCommand::askToFile(const QStringList &paths) const
{
    xpGuiThread.assertHere();
    QString folder = XPFiledDocuments::filedDocumentsRootIfPresent();
    if (XPFiledDocuments::usesFiledDocuments())
        folder += u'/' + XPFiledDocuments::datedFolder(QDateTime::currentDateTime());
    const QString shown = XPPath::printable(XPFolders::abbreviateWithTilde(folder));
    XPPrompts::Question question;
    question.title =
        paths.size() == 1
            ? qtTrId("XPFileTitleSingle").arg(XPPath::printable(XPPath::fileName(paths.first())))
            : qtTrId("XPFileTitleMultiple").arg(paths.size());
    question.text = qtTrId("XPFileComment").arg(shown);
    question.buttons = {qtTrId("XPFileButton"), qtTrId("KPCancel")};
    question.cancelButton = 1;
    bool isAgreed = false;
    XPPrompts::current().ask(question, [&isAgreed](int button) { isAgreed = button == 0; });
    return isAgreed;
}

int FileCommand::file()
{
    xpGuiThread.assertHere();
    QList<XPFileStep> unread;
    const QStringList paths = XPFiledDocuments::digForFilesInsideFolders(existing(), &unread);
    for (const XPFileStep &step : unread)
        m_output.fail(step.from, step.problem->reason());
    if (paths.size() >= XPFiledDocuments::mostFiles) {
        QString text = qtTrId("XPFileTooManyComment");
        XPPrompts::current().alert(qtTrId("XPFileTooManyTitle"),
                                   text.arg(XPFiledDocuments::mostFiles).arg(paths.size()));
        return nothingDone(false);
    }
    if (paths.isEmpty())
        return nothingDone(false);
    if (!m_isDryRun && !askToFile(paths))
        return nothingDone(true);
    KPProgressLine progress;
    XPFilingRun run(KPFileSteps::options(m_isDryRun, paths.size(), m_interrupt, progress));
    run.putFiles(paths, false);
    progress.clear();
    return KPFileSteps::print(run.report(), m_output);
}

int FileCommand::moveTo(const QString &folder)
{
    xpGuiThread.assertHere();
    const auto real = XPFolders::realFolder(folder);
    if (!real) {
        m_output.fail(folder, real.error().reason());
        return nothingDone(false);
    }
    std::optional<XPFileTransfers::Request> request;
    const QStringList paths = existing();
    if (paths.isEmpty())
        return nothingDone(false);
    // The shell's file work is done when it returns, and so are its answers.
    XPFileTransfers::askUserAboutMovingOrCopying(
        paths, *real, m_line.has("--copy"), true,
        [&request](const std::optional<XPFileTransfers::Request> &answer) { request = answer; });
    if (!request)
        return nothingDone(true);
    for (const QString &path : paths) {
        if (!request->paths.contains(path))
            m_output.fail(path, QStringLiteral("shares its name with another file, and stays"));
    }
    KPProgressLine progress;
    const XPFileReport report = XPFileTransfers::moveCopyFiles(
        *request, KPFileSteps::options(m_isDryRun, request->paths.size(), m_interrupt, progress));
    progress.clear();
    return KPFileSteps::print(report, m_output);
}

} // namespace

static int run(const KPCommandLine &line, KPCommandOutput &output)
{
    const QStringList to = line.values("--to");
    const auto usage = [](const char *message) {
        return kpReportUsage(&kpFileCommand, QString::fromUtf8(message));
    };
    if (const auto error = line.onlyOneOf({"--pending", "--to"}))
        return kpReportUsage(&kpFileCommand, error->message);
    if (const auto error = line.onlyOneOf({"--json", "--print0"}))
        return kpReportUsage(&kpFileCommand, error->message);
    if (to.size() > 1 || to.contains(QString()))
        return usage("--to takes one folder");
    if (line.has("--copy") && to.isEmpty())
        return usage("--copy needs --to");
    if (line.has("--pending") != line.operands().isEmpty())
        return usage(line.has("--pending") ? "--pending takes no files" : "files are needed");
    const bool asks = !line.has("--yes") && !line.has("--dry-run") && !line.has("--pending");
    if (asks && !KPTerminalPrompts::canAsk())
        return usage("moves files and there is no terminal to ask on: say --yes");
    FileCommand command(line, output);
    if (line.has("--pending"))
        return command.filePending();
    return to.isEmpty() ? command.file() : command.moveTo(XPPath::absolute(to.first()));
}

const KPCommand kpFileCommand = {
    "file",
    "[--to DIR [--copy]] [OPTION]… FILE…",
    "Files documents into the managed folder, or moves them to a folder.",
    "Files go to today's folder in \"Filed Documents\" and are marked as documents of the "
    "library;\n"
    "of a folder, the files in it. What lies on another volume is copied, and stays. No file is\n"
    "ever replaced unless you say so: a name that is taken gets a number (\"report 1.pdf\").\n"
    "Prints where each file went. Asks first; with --yes a question is answered with what it\n"
    "offers first.\n",
    {{"--to", "DIR", "move to this folder instead"},
     {"--copy", nullptr, "copy there, and leave the files where they are"},
     {"--pending", nullptr, "file what waits in the inbox"},
     {"--yes", nullptr, "do not ask"},
     {"--dry-run", nullptr, "change nothing, only print what would be"},
     {"--json", nullptr, "print a list of objects"},
     {"--print0", nullptr, "old and new paths, a NUL after each"}},
    run};

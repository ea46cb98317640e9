#include "KPArchiveWork.h"

#include "XPFileSize.h"
#include "XPFileUtils.h"
#include "XPFilingWork.h"
#include "XPFolders.h"
#include "XPPath.h"
#include "XPProgress.h"
#include "XPPrompts.h"

#include <QCoreApplication>
#include <array>

using Action = XPDocumentImport::Action;
using Summary = XPDocumentImport::Summary;

static constexpr qsizetype mostLines = 12; // a question is read, a list of thousands is not

static XPProgress::Task begin(const QString &title, qint64 total) XP_REQUIRES(xpGuiThread)
{
    auto task = std::make_shared<XPProgressTask>();
    task->title = title;
    task->note = qtTrId("XPStopIsSafe");
    task->total = total;
    XPProgress::current().begin(task);
    return task;
}

void KPArchiveWork::tell(const QString &title, const QString &text, bool hasFailures)
{
    if (hasFailures)
        XPPrompts::current().alert(title, text);
    else
        XPPrompts::current().ask({title, text, {qtTrId("KPDone")}, 0}, [](int) {});
}

static QString shown(const QString &path)
{
    return XPPath::printable(XPFolders::abbreviateWithTilde(path));
}

// --- Writing

namespace {

struct Written
{
    XPDocumentExport::Result result;
    QString archive;
    QStringList failures; // the first
    qsizetype failed = 0;
};

} // namespace

static void tellWritten(const Written &written) XP_REQUIRES(xpGuiThread)
{
    if (written.result.error) {
        if (written.result.error->kind != XPError::Kind::Cancelled)
            XPPrompts::current().alert(qtTrId("KPExportFailed"),
                                       shown(written.archive) + QStringLiteral(": ") +
                                           written.result.error->reason());
        return;
    }
    QStringList lines = {shown(written.archive) + QStringLiteral(" (") +
                         xpFileSizeInWords(written.result.archiveSize) + u')'};
    if (written.failed > 0)
        lines.append(qtTrId("KPExportLeftOut", static_cast<int>(written.failed)));
    KPArchiveWork::tell(qtTrId("KPExportDone", static_cast<int>(written.result.documents)),
                        (lines + written.failures).join(u'\n'), written.failed > 0);
}

void KPArchiveWork::write(const QStringList &paths, const QString &archive)
{
    const auto task = begin(qtTrId("KPExportProgress"), paths.size());
    const auto work = [task, paths, archive] {
        Written written;
        written.archive = XPFileUtils::findUnusedPath(archive);
        XPDocumentExport::Options options;
        options.progress = [task](qint64 done) {
            task->done = done;
            return !task->isStopAsked;
        };
        options.failed = [&written](const QString &path, const XPError &error) {
            if (++written.failed <= mostLines)
                written.failures.append(shown(path) + QStringLiteral(": ") + error.reason());
        };
        written.result = XPDocumentExport::run(paths, written.archive, options);
        return written;
    };
    XPFilingWork::run(work, [task](const Written &written) {
        xpGuiThread.assertHere();
        XPProgress::current().end(task);
        tellWritten(written);
    });
}

// --- Reading

static QString lineOf(const XPDocumentImport::Step &step)
{
    if (step.problem)
        return shown(step.path) + QStringLiteral(": ") + step.problem->reason();
    const auto tags = [](const KarvexBackupRecord &record) {
        return record.tags.isEmpty() ? qtTrId("KPRestoreNoTags")
                                     : XPPath::printable(record.tags.join(QStringLiteral(", ")));
    };
    switch (step.action) {
    case Action::Changed:
        return shown(step.path) + QStringLiteral(": ") + tags(step.before) + QStringLiteral(" → ") +
               tags(step.after);
    case Action::Replaced:
        return qtTrId("KPImportReplacedLine").arg(shown(step.path));
    default:
        return {};
    }
}

void KPArchiveWork::read(const QString &archive, const QString &folder, bool dryRun,
                         std::function<void(const Import &)> done)
{
    const auto task =
        begin(dryRun ? qtTrId("KPImportCheckProgress") : qtTrId("KPImportProgress"), 0);
    const auto work = [task, archive, folder, dryRun] {
        Import import;
        XPDocumentImport::Options options;
        options.dryRun = dryRun;
        options.progress = [task](qint64 through, qint64) {
            task->done = through;
            return !task->isStopAsked;
        };
        options.told = [&import](const XPDocumentImport::Step &step) {
            if (step.action == Action::Added || step.action == Action::Replaced)
                import.added.append(step.path);
            if (import.lines.size() == mostLines)
                return;
            if (const QString line = lineOf(step); !line.isEmpty())
                import.lines.append(line);
        };
        import.summary = XPDocumentImport::run(archive, folder, options);
        return import;
    };
    XPFilingWork::run(work, [task, done](const Import &import) {
        xpGuiThread.assertHere();
        XPProgress::current().end(task);
        done(import);
    });
}

QStringList KPArchiveWork::sentences(const Summary &summary, bool dryRun)
{
    struct Text
    {
        Action action;
        const char *before;
        const char *after;
    };
    static constexpr std::array texts = {
        Text{Action::Added, QT_TRID_NOOP("KPImportWouldAdd"), QT_TRID_NOOP("KPImportAdded")},
        Text{Action::Changed, QT_TRID_NOOP("KPImportWouldChange"), QT_TRID_NOOP("KPImportChanged")},
        Text{Action::Replaced, QT_TRID_NOOP("KPImportWouldReplace"),
             QT_TRID_NOOP("KPImportReplaced")},
        Text{Action::Kept, QT_TRID_NOOP("KPImportKept"), QT_TRID_NOOP("KPImportKept")},
        Text{Action::Same, QT_TRID_NOOP("KPImportSame"), QT_TRID_NOOP("KPImportSame")},
        Text{Action::Failed, QT_TRID_NOOP("KPImportFailedCount"),
             QT_TRID_NOOP("KPImportFailedCount")},
    };
    QStringList sentences;
    for (const Text &text : texts) {
        if (const qint64 count = summary.count(text.action); count > 0)
            sentences.append(qtTrId(dryRun ? text.before : text.after, static_cast<int>(count)));
    }
    return sentences;
}

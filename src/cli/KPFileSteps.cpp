#include "KPFileSteps.h"

#include "XPFolders.h"
#include "XPPath.h"

using Action = XPFileStep::Action;

QString KPFileSteps::operand(const QString &word)
{
    QString path = XPPath::absolute(word);
    const QString name = XPPath::fileName(path);
    if (name.isEmpty() || name == u"." || name == u"..")
        return XPFolders::realFolder(path).valueOr(path);
    const auto folder = XPFolders::realFolder(XPPath::folder(path));
    if (!folder)
        return path;
    return (*folder == u"/" ? QString() : *folder) + u'/' + name;
}

QStringList KPFileSteps::operands(const QStringList &words)
{
    QStringList paths;
    for (const QString &word : words)
        paths.append(operand(word));
    return paths;
}

XPFileRunOptions KPFileSteps::options(bool dryRun, qsizetype total, KPInterrupt &interrupt,
                                      KPProgressLine &progress)
{
    XPFileRunOptions options;
    options.dryRun = dryRun;
    options.progress = [total, &interrupt, &progress](qsizetype done) {
        progress.show(QStringLiteral("murnctl: %1 of %2 files").arg(done).arg(total));
        return !interrupt.happened();
    };
    return options;
}

static const char *actionName(Action action)
{
    switch (action) {
    case Action::Moved:
        return "moved";
    case Action::Copied:
        return "copied";
    case Action::Marked:
        return "marked";
    case Action::Skipped:
        return "skipped";
    case Action::Failed:
        break;
    }
    return "failed";
}

static QByteArray textOrNull(const QString &text)
{
    return text.isEmpty() ? QByteArray("null") : KPCommandOutput::json(text);
}

static void printJson(const XPFileReport &report, KPCommandOutput &output)
{
    QByteArrayList objects;
    for (const XPFileStep &step : report.steps) {
        const QString problem = step.problem ? step.problem->reason() : QString();
        objects.append("{\"path\": " + KPCommandOutput::json(step.from) +
                       ", \"to\": " + textOrNull(step.to) + ", \"action\": \"" +
                       actionName(step.action) + "\", \"error\": " + textOrNull(problem) +
                       ", \"keptAside\": " + textOrNull(step.keptAside) + '}');
    }
    output.write('[' + objects.join(",\n ") + "]\n");
}

static void printText(const XPFileReport &report, bool isNulAfterEach, KPCommandOutput &output)
{
    for (const XPFileStep &step : report.steps) {
        if (step.action == Action::Failed || step.action == Action::Skipped)
            continue;
        if (isNulAfterEach) {
            output.writeRecord(output.name(step.from));
            if (step.action != Action::Marked)
                output.writeRecord(output.name(step.to));
            continue;
        }
        const bool isThere = step.from == step.to;
        output.writeRecord(output.name(step.from) +
                           (isThere ? QByteArray() : " -> " + output.name(step.to)));
    }
    if (!report.tagList.isEmpty())
        KPCommandOutput::note(QStringLiteral("what stands on the files is listed in ") +
                              XPPath::printable(report.tagList));
}

static void reportProblems(const XPFileReport &report, KPCommandOutput &output)
{
    for (const XPFileStep &step : report.steps) {
        if (!step.keptAside.isEmpty())
            output.fail(step.keptAside, QStringLiteral("what was replaced is kept here, as no "
                                                       "trash takes it"));
        if (!step.problem)
            continue;
        if (step.to.isEmpty())
            output.fail(step.from, step.problem->reason());
        else
            output.fail(step.to, "the mark cannot be written", *step.problem);
    }
}

int KPFileSteps::print(const XPFileReport &report, KPCommandOutput &output)
{
    if (output.isJson())
        printJson(report, output);
    else
        printText(report, output.isSeparatingByNul(), output);
    reportProblems(report, output);
    const int status = output.exitStatus();
    return report.wasStopped ? KPExitInterrupted : status;
}

// XPFiledDocuments: what asks, takes long or warns.
#include "UserDefaults.h"
#include "XPFiledDocuments.h"
#include "XPFilingRun.h"
#include "XPFilingWork.h"
#include "XPLog.h"
#include "XPPath.h"
#include "XPPrompts.h"
#include "XPVolumeFacts.h"

#include <QLocale>
#include <QSet>
#include <algorithm>

const QString XPFiledDocuments::askKey = QStringLiteral("KPFiledDocumentsAsk");
const QString XPFiledDocuments::alwaysFileKey = QStringLiteral("KPFilesAlwaysPutInFiledDocuments");

using Routed = XPFiledDocuments::Routed;

static QString count(qsizetype number)
{
    return QLocale().toString(number);
}

static QString quotedName(const QString &path)
{
    return XPPath::printable(XPPath::fileName(path));
}

// Each problem to the log; the marks that are missing, which no count of documents shows, to the
// user.
static void logProblems(const XPFileReport &report)
{
    for (const XPFileStep &step : report.problems())
        qCWarning(xpLog).noquote() << XPPath::printable(step.from) << step.problem->reason();
}

static void tellProblems(const XPFileReport &report) XP_REQUIRES(xpGuiThread)
{
    logProblems(report);
    QList<XPFileStep> unmarked;
    for (const XPFileStep &step : report.problems()) {
        if (!step.to.isEmpty())
            unmarked.append(step);
    }
    if (unmarked.isEmpty())
        return;
    const QString title = unmarked.size() == 1
                              ? qtTrId("XPNotMarkedSingle").arg(quotedName(unmarked.first().to))
                              : qtTrId("XPNotMarkedMultiple").arg(count(unmarked.size()));
    XPPrompts::current().alert(title, unmarked.first().problem->reason());
}

void XPFiledDocuments::warnThatImportFailed(qsizetype requested, qsizetype worked)
{
    XPPrompts::current().alert(
        qtTrId("XPNotAllImportedTitle"),
        qtTrId("XPNotAllImportedComment").arg(count(worked), count(requested)));
}

// What lay well before is not among what was filed, and no failure.
static qsizetype filedBefore(const XPFileReport &report)
{
    const QSet<QString> filed(report.paths.begin(), report.paths.end());
    return std::count_if(report.steps.begin(), report.steps.end(), [&](const XPFileStep &step) {
        return step.action == XPFileStep::Action::Marked && !filed.contains(step.to);
    });
}

// One alert at most: the count that is short says it all.
static void finish(const QStringList &asked, const XPFileReport &report,
                   const XPFiledDocuments::Done &done) XP_REQUIRES(xpGuiThread)
{
    const qsizetype there = report.paths.size() + filedBefore(report);
    if (there != asked.size() && !report.wasStopped) {
        logProblems(report);
        XPFiledDocuments::warnThatImportFailed(asked.size(), there);
    } else {
        tellProblems(report);
    }
    done(report);
}

// A file that is listed twice is one file.
static QStringList once(QStringList paths)
{
    paths.removeDuplicates();
    return paths;
}

void XPFiledDocuments::putFilesIntoFiledDocumentsUI(const QStringList &paths, Done done,
                                                    bool forceMove)
{
    const QStringList asked = once(paths);
    XPFilingWork::runShown(
        qtTrId("XPFilingItems").arg(count(asked.size())), asked.size(),
        [asked, forceMove](const XPFileRunOptions &options) {
            createFiledDocumentsFolder();
            XPFilingRun run(options);
            run.putFiles(asked, forceMove);
            return run.takeReport();
        },
        [asked, done](const XPFileReport &report) {
            xpGuiThread.assertHere();
            finish(asked, report, done);
        });
}

void XPFiledDocuments::setToManagedUI(const QStringList &paths, Done done)
{
    const QStringList asked = once(paths);
    XPFilingWork::runShown(
        qtTrId("XPMarkingItems").arg(count(asked.size())), asked.size(),
        [asked](const XPFileRunOptions &options) {
            createFiledDocumentsFolder();
            XPFilingRun run(options);
            run.setToManaged(asked);
            return run.takeReport();
        },
        [asked, done](const XPFileReport &report) {
            xpGuiThread.assertHere();
            finish(asked, report, done);
        });
}

void XPFiledDocuments::takeMarksAwayUI(const QStringList &paths, Done done)
{
    const QStringList asked = once(paths);
    XPFilingWork::runShown(
        qtTrId("XPMarkingItems").arg(count(asked.size())), asked.size(),
        [asked](const XPFileRunOptions &options) {
            XPFilingRun run(options);
            run.setMarks(asked, XPFilingRun::Marks::Unmanaged);
            return run.takeReport();
        },
        [done](const XPFileReport &report) {
            xpGuiThread.assertHere();
            tellProblems(report); // to the log
            if (const QList<XPFileStep> kept = report.problems(); !kept.isEmpty())
                XPPrompts::current().alert(
                    kept.size() == 1 ? qtTrId("XPStillMarkedSingle").arg(quotedName(kept[0].from))
                                     : qtTrId("XPStillMarkedMultiple").arg(count(kept.size())),
                    kept[0].problem->reason());
            done(report);
        });
}

static void copyAllUI(const QStringList &paths, const Routed &done) XP_REQUIRES(xpGuiThread)
{
    XPFilingWork::runShown(
        qtTrId("XPCopyingItems").arg(count(paths.size())), paths.size(),
        [paths](const XPFileRunOptions &options) {
            XPFilingRun run(options);
            run.copyAll(paths);
            return run.takeReport();
        },
        [done](const XPFileReport &report) {
            xpGuiThread.assertHere();
            tellProblems(report);
            done(report);
        });
}

static void fileOrMark(const QStringList &paths, bool putInFiledDocs, const Routed &done)
    XP_REQUIRES(xpGuiThread)
{
    const auto answer = [done](const XPFileReport &report) { done(report); };
    if (putInFiledDocs)
        XPFiledDocuments::putFilesIntoFiledDocumentsUI(paths, answer);
    else
        XPFiledDocuments::setToManagedUI(paths, answer);
}

static void route(const QStringList &found, bool areManaged, bool optionKey, const Routed &done)
    XP_REQUIRES(xpGuiThread)
{
    if (found.isEmpty() || areManaged) {
        done(XPFileReport{{}, found, false});
        return;
    }
    if (optionKey) {
        copyAllUI(found, done);
        return;
    }
    if (found.size() >= XPFiledDocuments::mostFiles) {
        XPPrompts::current().alert(
            qtTrId("XPFileTooManyTitle"),
            qtTrId("XPFileTooManyComment")
                .arg(count(XPFiledDocuments::mostFiles), count(found.size())));
        done({});
        return;
    }
    const UserDefaults &defaults = UserDefaults::standard();
    if (found.size() <= XPFiledDocuments::mostUnasked &&
        !defaults.boolValue(XPFiledDocuments::askKey)) {
        fileOrMark(found, defaults.boolValue(XPFiledDocuments::alwaysFileKey), done);
        return;
    }
    XPFiledDocuments::askToPutDocumentsIntoFiledDocumentsFolder(
        found, [found, done](std::optional<bool> putInFiledDocs) {
            xpGuiThread.assertHere();
            if (putInFiledDocs)
                fileOrMark(found, *putInFiledDocs, done);
            else
                done({});
        });
}

void XPFiledDocuments::setFilesAsManagedRoutingIfNeeded(const QStringList &paths, bool optionKey,
                                                        Routed done)
{
    struct Found
    {
        QStringList paths;
        bool areManaged;
    };
    XPFilingWork::run(
        [paths] {
            const QStringList found = once(digForFilesInsideFolders(paths));
            return Found{found, allFilesManaged(found)};
        },
        [optionKey, done](const Found &found) {
            xpGuiThread.assertHere();
            route(found.paths, found.areManaged, optionKey, done);
        });
}

static XPPrompts::Question importQuestion(const QStringList &paths, bool isSameVolume)
{
    const QString number = count(paths.size());
    XPPrompts::Question question;
    question.title = paths.size() == 1
                         ? qtTrId("XPImportTitleSingle").arg(quotedName(paths.first()))
                         : qtTrId("XPImportTitleMultiple").arg(number);
    question.text = isSameVolume ? qtTrId("XPImportCommentMove") : qtTrId("XPImportCommentCopy");
    if (paths.size() >= XPFiledDocuments::fewestForAddendum)
        question.text += qtTrId("XPImportCommentManyFileWarningAddendum");
    question.text.replace(QStringLiteral("%1"), number);
    question.buttons = {qtTrId("XPImportManageOnlyButton"), qtTrId("KPCancel"),
                        qtTrId("XPImportManageAndFileButton")};
    question.cancelButton = 1;
    return question;
}

void XPFiledDocuments::askToPutDocumentsIntoFiledDocumentsFolder(const QStringList &paths,
                                                                 PutInFiledDocs answer)
{
    if (paths.isEmpty()) {
        answer({});
        return;
    }
    const auto isSameVolume = [first = paths.first()] {
        return PathsOnSameVol(first, filedDocumentsRootIfPresent() + u'/' +
                                         datedFolder(QDateTime::currentDateTime()));
    };
    XPFilingWork::run(isSameVolume, [paths, answer](bool isSame) {
        xpGuiThread.assertHere();
        constexpr int file = 2;
        const XPPrompts::Question question = importQuestion(paths, isSame);
        XPPrompts::current().ask(question, [answer, question](int button) {
            answer(button == question.cancelButton ? std::nullopt : std::optional(button == file));
        });
    });
}

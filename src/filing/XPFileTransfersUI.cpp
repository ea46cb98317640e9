// XPFileTransfers: what there is to ask before files are moved or copied, and the work as people
// see it.
#include "XPAttributeRoom.h"
#include "XPFileInfo.h"
#include "XPFileTransfers.h"
#include "XPFilingWork.h"
#include "XPFolders.h"
#include "XPLog.h"
#include "XPNotificationCenter.h"
#include "XPPath.h"
#include "XPPrompts.h"

#include <QCoreApplication>
#include <QLocale>
#include <QTimer>
#include <algorithm>

using Request = XPFileTransfers::Request;
using Answer = XPFileTransfers::Answer;

namespace {

// What is found on disk before the first question.
struct Facts
{
    Request request;
    bool allExist = true;
    QStringList skipped;   // share their names with others
    bool hasTaken = false; // something of the same name is there
    qint64 newerBy = 0;    // the one that is there than the one file: nanoseconds
    bool losesTags = false;
};

// One request on its way through the questions; kept alive by the answers that are waited for.
class Questions : public std::enable_shared_from_this<Questions>
{
public:
    Questions(Facts facts, bool warn, Answer answer)
        : m_facts(std::move(facts)), m_warn(warn), m_answer(std::move(answer))
    {
    }

    void start() XP_REQUIRES(xpGuiThread)
    {
        if (m_facts.request.paths.isEmpty() || !m_facts.allExist)
            m_answer({});
        else if (!m_facts.skipped.isEmpty())
            askUserToAbortDueToDuplicateFiles();
        else
            checkCount();
    }

private:
    using Next = void (Questions::*)();

    void askUserToAbortDueToDuplicateFiles() XP_REQUIRES(xpGuiThread);
    void checkCount() XP_REQUIRES(xpGuiThread);
    void askAboutTags() XP_REQUIRES(xpGuiThread);
    void askToGoOn() XP_REQUIRES(xpGuiThread);
    QString takenText() const;

    // With the cancelling button second.
    void ask(const QString &title, const QString &text, const QStringList &buttons,
             std::function<void(int)> go) XP_REQUIRES(xpGuiThread)
    {
        XPPrompts::Question question{title, text, buttons, 1};
        XPPrompts::current().ask(question, [self = shared_from_this(), go](int button) {
            if (button == 1)
                self->m_answer({});
            else
                go(button);
        });
    }

    Facts m_facts;
    const bool m_warn;
    const Answer m_answer;
};

QString named(const QString &path)
{
    return XPPath::printable(XPPath::fileName(path));
}

void Questions::askUserToAbortDueToDuplicateFiles()
{
    QStringList names;
    for (const QString &path : m_facts.skipped)
        names.append(named(path));
    names.removeDuplicates();
    const bool isOne = m_facts.skipped.size() == 1;
    QString text = isOne ? qtTrId("XPDuplicatesSingle") : qtTrId("XPDuplicatesMultiple");
    // One after the other: a name may hold what looks like a place.
    text.replace(QStringLiteral("%3"), QLocale().toString(m_facts.skipped.size()));
    const QString inserted = isOne ? named(m_facts.skipped.first()) : names.join(u',');
    text.replace(isOne ? QStringLiteral("%2") : QStringLiteral("%1"), inserted);
    ask(qtTrId("XPDuplicatesTitle"), text, {qtTrId("XPDuplicatesContinue"), qtTrId("KPCancel")},
        [this](int) {
            xpGuiThread.assertHere();
            QStringList shown;
            for (const QString &path : m_facts.skipped)
                shown.append(XPPath::printable(path));
            qCWarning(xpLog).noquote()
                << QStringLiteral("Brindle - skipped files in move/copy (same file name) \n %1")
                       .arg(shown.join(u'\n'));
            checkCount();
        });
}

void Questions::checkCount()
{
    const qsizetype size = m_facts.request.paths.size();
    if (size <= XPFileTransfers::mostFiles) {
        askAboutTags();
        return;
    }
    QString text = qtTrId("KPTooManyDocsComments");
    text.replace(QStringLiteral("%3"), QLocale().toString(size));
    text.replace(QStringLiteral("%4"), QLocale().toString(XPFileTransfers::mostFiles));
    XPPrompts::current().alert(qtTrId("KPTooManyDocs"), text);
    m_answer({});
}

void Questions::askAboutTags()
{
    if (!m_facts.losesTags) {
        askToGoOn();
        return;
    }
    ask(qtTrId("XPLosesTagsTitle").arg(named(m_facts.request.folder)), qtTrId("XPLosesTagsText"),
        {qtTrId("XPListTagsBeside"), qtTrId("KPCancel"), qtTrId("XPLoseTags")}, [this](int button) {
            xpGuiThread.assertHere();
            m_facts.request.mayLoseTags = true;
            m_facts.request.listsTags = button == 0;
            askToGoOn();
        });
}

QString Questions::takenText() const
{
    if (!m_facts.hasTaken)
        return {};
    if (m_facts.request.paths.size() > 1)
        return qtTrId("XPSomeAreThere");
    if (m_facts.newerBy == 0)
        return qtTrId("XPSameIsThere");
    return m_facts.newerBy > 0 ? qtTrId("XPNewerIsThere") : qtTrId("XPOlderIsThere");
}

void Questions::askToGoOn()
{
    if (!m_warn) {
        m_answer(m_facts.request);
        return;
    }
    const Request &request = m_facts.request;
    const bool isOne = request.paths.size() == 1;
    const QString name =
        isOne ? named(request.paths.first()) : QLocale().toString(request.paths.size());
    const QString title =
        isOne            ? request.copies ? qtTrId("KPCopyDocSingle") : qtTrId("KPMoveDocSingle")
                   : request.copies ? qtTrId("KPCopyDocs")
                         : qtTrId("KPMoveDocs");
    const QString text = isOne            ? request.copies ? qtTrId("KPCopySingleDocComments")
                                                           : qtTrId("KPMoveSingleDocComments")
                                    : request.copies ? qtTrId("KPCopyDocsComments")
                                          : qtTrId("KPMoveDocsComments");
    QString go = request.copies ? qtTrId("KPCopyOK") : qtTrId("KPMoveOK");
    if (m_facts.hasTaken && !isOne)
        go = qtTrId("XPDontReplace");
    QStringList buttons = {go, qtTrId("KPCancel")};
    if (m_facts.hasTaken)
        buttons.append(qtTrId("XPReplace"));
    ask(title.arg(name),
        text.arg(XPPath::printable(XPFolders::abbreviateWithTilde(request.folder))) + takenText(),
        buttons, [this](int button) {
            constexpr int replace = 2;
            m_facts.request.replaces = button == replace;
            m_answer(m_facts.request);
        });
}

Facts factsOf(Request request, bool warn)
{
    Facts facts;
    request.folder = XPFolders::realFolder(request.folder).valueOr(request.folder);
    if (!warn)
        request.paths =
            XPFileTransfers::removeFilesAlreadyAtDestination(request.paths, request.folder);
    request.paths.removeDuplicates();
    facts.allExist = XPFileTransfers::allFilesExist(request.paths);
    request.paths = XPFileTransfers::removeDuplicatesInDestination(request.paths, &facts.skipped);
    for (const QString &path : request.paths) {
        const auto there = XPFileInfo::read(request.folder + u'/' + XPPath::fileName(path));
        const auto source = XPFileInfo::read(path);
        if (there && source) {
            facts.hasTaken = true;
            facts.newerBy = there->modified - source->modified;
        }
    }
    facts.losesTags =
        !XPAttributeRoom::wouldLose(request.paths, request.folder).valueOr({}).isEmpty();
    facts.request = request;
    return facts;
}

} // namespace

void XPFileTransfers::tellFailures(const XPFileReport &report, bool copies)
{
    const QList<XPFileStep> problems = report.problems();
    QStringList aside;
    for (const XPFileStep &step : report.steps) {
        if (!step.keptAside.isEmpty())
            aside.append(XPPath::printable(step.keptAside));
    }
    if (!aside.isEmpty())
        XPPrompts::current().alert(qtTrId("XPKeptAsideTitle"), aside.join(u'\n'));
    if (problems.isEmpty())
        return;
    for (const XPFileStep &step : problems)
        qCWarning(xpLog).noquote() << XPPath::printable(step.from) << step.problem->reason();
    const QString title = copies ? qtTrId("XPNotCopiedTitle") : qtTrId("XPNotMovedTitle");
    XPPrompts::current().alert(title.arg(QLocale().toString(problems.size())),
                               named(problems.first().from) + QStringLiteral(": ") +
                                   problems.first().problem->reason());
}

void XPFileTransfers::askUserAboutMovingOrCopying(const QStringList &paths, const QString &folder,
                                                  bool copies, bool warn, Answer answer)
{
    const Request request{paths, folder, copies};
    XPFilingWork::run([request, warn] { return factsOf(request, warn); },
                      [warn, answer](const Facts &facts) {
                          xpGuiThread.assertHere();
                          std::make_shared<Questions>(facts, warn, answer)->start();
                      });
}

void XPFileTransfers::moveCopyFilesProgressUI(const QStringList &paths, const QString &folder,
                                              bool copies, bool warn, Done done)
{
    const auto work = [done](const std::optional<Request> &request) {
        xpGuiThread.assertHere();
        if (!request) {
            done({});
            return;
        }
        const QString title = request->copies ? qtTrId("XPCopyingItems") : qtTrId("XPMovingItems");
        const qsizetype size = request->paths.size();
        XPFilingWork::runShown(
            title.arg(QLocale().toString(size)), size,
            [request](const XPFileRunOptions &options) { return moveCopyFiles(*request, options); },
            [done, copies = request->copies](const XPFileReport &report) {
                xpGuiThread.assertHere();
                tellFailures(report, copies);
                if (!report.paths.isEmpty())
                    QTimer::singleShot(0, QCoreApplication::instance(), [] {
                        XPNotificationCenter::instance().post(filesMovedNotification);
                    });
                done(report);
            });
    };
    askUserAboutMovingOrCopying(paths, folder, copies, warn, work);
}

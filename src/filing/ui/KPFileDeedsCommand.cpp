#include "KPFileDeedsCommand.h"

#include "KPDoc.h"
#include "KPDocCache.h"
#include "XPFilingWork.h"
#include "XPLog.h"
#include "XPPath.h"
#include "XPPrompts.h"

#include <QLocale>
#include <cerrno>

using Outcome = XPFileDeeds::Outcome;

KPFileDeedsCommand::KPFileDeedsCommand(const QList<XPFileDeeds::Chain> &deeds, const QString &text,
                                       std::function<void()> changed)
    : QUndoCommand(text), m_deeds(std::make_shared<QList<XPFileDeeds::Chain>>(deeds)),
      m_left(std::make_shared<QList<XPFileDeeds::Chain>>()), m_changed(std::move(changed)),
      m_count(deeds.size())
{
}

void KPFileDeedsCommand::undo()
{
    takeBack(QT_TRID_NOOP("KPUndoing"));
}

void KPFileDeedsCommand::redo()
{
    if (!std::exchange(m_isNew, false))
        takeBack(QT_TRID_NOOP("KPRedoing"));
}

// The records of files that are in the trash now.
static void forgetTrashed(const Outcome &outcome) XP_REQUIRES(xpGuiThread)
{
    for (const auto &chain : outcome.deeds) {
        for (const XPFileDeed &deed : chain) {
            KPDoc *doc = deed.kind == XPFileDeed::Kind::Trashed
                             ? KPDocCache::docAtPathIfExists(deed.before)
                             : nullptr;
            if (doc != nullptr)
                KPDoc::deleteDoc(doc, false, [](const XPResult<QString> &) {});
        }
    }
}

static void tellFailures(const QList<XPError> &failures) XP_REQUIRES(xpGuiThread)
{
    if (failures.isEmpty())
        return;
    for (const XPError &error : failures)
        qCWarning(xpLog).noquote() << XPPath::printable(error.path) << error.reason();
    const auto count = static_cast<int>(failures.size());
    const XPError &first = failures.first();
    const bool isTaken = first.domain == XPError::posixDomain && first.code == EEXIST;
    XPPrompts::current().alert(qtTrId("KPCannotTakeBack", count).arg(QLocale().toString(count)),
                               XPPath::printable(XPPath::fileName(first.path)) +
                                   QStringLiteral(": ") +
                                   (isTaken ? qtTrId("KPNameIsTaken") : first.reason()));
}

// What a stop leaves as it is, is undone or redone the next time.
void KPFileDeedsCommand::takeBack(const char *titleId)
{
    xpGuiThread.assertHere();
    const auto deeds = m_deeds;
    const auto left = m_left;
    XPFilingWork::runShown(
        qtTrId(titleId).arg(text()), m_count,
        [deeds, left](const XPFileRunOptions &options) {
            Outcome outcome = XPFileDeeds::takeBack(*deeds, options);
            *deeds = std::exchange(*left, outcome.left) + outcome.deeds;
            return outcome;
        },
        [changed = m_changed](const Outcome &outcome) {
            xpGuiThread.assertHere();
            forgetTrashed(outcome);
            tellFailures(outcome.failures);
            if (changed)
                changed();
        });
}

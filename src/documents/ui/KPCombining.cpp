#include "KPCombining.h"

#include "KPCombineDialog.h"
#include "KPDoc.h"
#include "KPDocServices.h"
#include "KPFailures.h"
#include "KPFileDeedsCommand.h"
#include "KPLongWork.h"
#include "XPCombinedPDF.h"
#include "XPFiledDocuments.h"
#include "XPFolders.h"
#include "XPPath.h"
#include "XPPrompts.h"

#include <QLocale>
#include <QPointer>
#include <QUndoStack>

namespace {

struct Outcome
{
    QString path; // of the new document
    XPCombinedPDF::Failure failure;
    std::optional<XPError> notMarked;
};

} // namespace

// The long work's thread.
static Outcome combine(const QStringList &paths, const QString &name, const XPProgress::Task &task)
{
    const QString path = XPFiledDocuments::unusedDestinationPath(name + QStringLiteral(".pdf"));
    if (auto error = XPFolders::create(XPPath::folder(path)))
        return {{}, {{}, std::move(error)}, {}};
    auto result = XPCombinedPDF::combine(paths, path, [&](qsizetype done) {
        task->done = done;
        return !task->isStopAsked;
    });
    if (auto *failure = std::get_if<XPCombinedPDF::Failure>(&result))
        return {{}, *failure, {}};
    const auto notMarked = XPFiledDocuments::setManaged(true, path);
    XPFiledDocuments::runMDImport(path);
    return {path, {}, notMarked};
}

static void tell(const Outcome &outcome) XP_REQUIRES(xpGuiThread)
{
    KPFailures::tell(QT_TRID_NOOP("KPCannotCombine"), outcome.failure.refused);
    const auto &error = outcome.failure.error;
    if (error && error->kind != XPError::Kind::Cancelled)
        XPPrompts::current().alert(qtTrId("KPNotCombined"), error->reason());
    if (outcome.notMarked)
        XPPrompts::current().alert(
            qtTrId("KPCombinedNotMarked").arg(XPPath::printable(XPPath::fileName(outcome.path))),
            outcome.notMarked->reason());
}

static void run(const QStringList &paths, const QString &name, KPLongWork &work,
                QUndoStack &history, const std::function<void()> &changed) XP_REQUIRES(xpGuiThread)
{
    const auto task = std::make_shared<XPProgressTask>();
    task->title = qtTrId("KPCombiningItems", static_cast<int>(paths.size()));
    task->note = qtTrId("KPCombineStopNote");
    task->total = paths.size();
    work.run(
        task, [=] { return combine(paths, name, task); },
        [history = QPointer(&history), changed, count = paths.size()](const Outcome &outcome) {
            xpGuiThread.assertHere();
            tell(outcome);
            if (outcome.path.isEmpty() || !history)
                return;
            history->push(new KPFileDeedsCommand({{{XPFileDeed::Kind::Made, {}, outcome.path}}},
                                                 qtTrId("KPUndoCombine", static_cast<int>(count)),
                                                 changed));
            KPDocServices::current().revealInLibrary({outcome.path});
        });
}

void KPCombining::start(const QList<KPDoc *> &docs, KPLongWork &work, QUndoStack &history,
                        QWidget *window, std::function<void()> changed)
{
    QList<KPDoc *> pdfs = docs;
    pdfs.removeIf([](const KPDoc *doc) { return !doc->isPDF(); });
    if (pdfs.size() < 2 || pdfs.size() > mostDocuments) {
        XPPrompts::current().alert(
            qtTrId("KPNotCombined"),
            pdfs.size() < 2 ? qtTrId("KPCombineNeedsTwo")
                            : qtTrId("KPCombineTooMany").arg(QLocale().toString(mostDocuments)));
        return;
    }
    auto *dialog = new KPCombineDialog(pdfs, docs.size() - pdfs.size(), window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(dialog, &QDialog::accepted, dialog,
                     [dialog, &work, &history, changed = std::move(changed)] {
                         xpGuiThread.assertHere();
                         run(dialog->paths(), dialog->name(), work, history, changed);
                     });
    dialog->open();
}

#include "KPTextRecognising.h"

#include "ImportPagePicture.h"
#include "KPDoc.h"
#include "KPFailures.h"
#include "KPLongWork.h"
#include "XPFiledDocuments.h"
#include "XPPrompts.h"
#include "XPTextLayer.h"

#include <QLocale>
#include <QPointer>
#include <QUndoStack>

using Said = std::function<void(const QString &)>;

namespace {

// A document and its pages that got a layer. The record follows the file when that is moved.
struct Layers
{
    KPDoc *doc = nullptr;
    QList<int> pages;
};

struct Outcome
{
    QList<Layers> done;
    QList<XPError> failures;
};

constexpr int stepsOfDocument = 1000;

} // namespace

static XPResult<QList<int>> recognise(const QString &path, qsizetype number,
                                      const XPProgress::Task &task)
{
    ImportedDocument document(path);
    return XPTextLayer::recognise(
        path, [&](int page) { return document.picture(page + 1, XPTextLayer::pixelsOfAPage); }, {},
        [&](int page, int pages) {
            task->done = number * stepsOfDocument + qint64{stepsOfDocument} * page / pages;
            return !task->isStopAsked;
        });
}

// The long work's thread. A document in whose middle it is stopped stays as it was.
static Outcome recogniseAll(const QList<KPDoc *> &docs, const XPProgress::Task &task)
{
    Outcome outcome;
    for (qsizetype number = 0; number < docs.size() && !task->isStopAsked; ++number) {
        const QString path = docs[number]->filePath();
        const auto pages = recognise(path, number, task);
        if (pages && !pages->isEmpty()) {
            outcome.done.append({docs[number], *pages});
            XPFiledDocuments::runMDImport(path);
        } else if (!pages && pages.error().kind != XPError::Kind::Cancelled) {
            XPError error = pages.error();
            error.path = path;
            outcome.failures.append(error);
        }
        task->done = (number + 1) * stepsOfDocument;
    }
    return outcome;
}

static Outcome takeOff(const QList<Layers> &layers, const XPProgress::Task &task)
{
    Outcome outcome;
    for (const Layers &each : layers) {
        const QString path = each.doc->filePath();
        if (const auto error = XPTextLayer::remove(path, each.pages)) {
            outcome.failures.append(*error);
            outcome.failures.last().path = path;
        } else {
            outcome.done.append(each);
            XPFiledDocuments::runMDImport(path);
        }
        task->done += stepsOfDocument;
    }
    return outcome;
}

static XPProgress::Task makeTask(const char *titleId, qsizetype documents)
{
    auto task = std::make_shared<XPProgressTask>();
    task->title = qtTrId(titleId, static_cast<int>(documents));
    task->note = qtTrId("KPRecogniseStopNote");
    task->total = documents * stepsOfDocument;
    task->isBeside = true;
    return task;
}

static QString summary(const QList<Layers> &layers)
{
    int pages = 0;
    for (const Layers &each : layers)
        pages += static_cast<int>(each.pages.size());
    return pages == 0 ? qtTrId("KPRecognisedNothing") : qtTrId("KPRecognised", pages);
}

// Of what failed or was stopped nobody knows whether it has text.
static void report(const Outcome &outcome, const XPProgress::Task &task, const Said &said)
    XP_REQUIRES(xpGuiThread)
{
    KPFailures::tell(QT_TRID_NOOP("KPCannotRecognise"), outcome.failures);
    if (!outcome.done.isEmpty() || (outcome.failures.isEmpty() && !task->isStopAsked))
        said(summary(outcome.done));
}

namespace {

// Text that was laid over. What somebody else changed since is left alone, and said.
class RecogniseCommand : public QUndoCommand
{
public:
    RecogniseCommand(const QList<Layers> &layers, KPLongWork &work, Said said)
        : QUndoCommand(qtTrId("KPUndoRecognise", static_cast<int>(layers.size()))),
          m_layers(std::make_shared<QList<Layers>>(layers)), m_work(work), m_said(std::move(said))
    {
    }
    void undo() override
    {
        xpGuiThread.assertHere();
        const auto task = makeTask(QT_TRID_NOOP("KPUnrecognising"), m_layers->size());
        m_work.run(
            task, [layers = *m_layers, task] { return takeOff(layers, task); },
            [](const Outcome &outcome) {
                xpGuiThread.assertHere();
                KPFailures::tell(QT_TRID_NOOP("KPCannotUnrecognise"), outcome.failures);
            });
    }
    void redo() override
    {
        xpGuiThread.assertHere();
        if (std::exchange(m_isNew, false))
            return;
        QList<KPDoc *> docs;
        for (const Layers &each : std::as_const(*m_layers))
            docs.append(each.doc);
        const auto task = makeTask(QT_TRID_NOOP("KPRecognising"), docs.size());
        m_work.run(
            task, [docs, task] { return recogniseAll(docs, task); },
            [layers = m_layers, task, said = m_said](const Outcome &outcome) {
                xpGuiThread.assertHere();
                *layers = outcome.done;
                report(outcome, task, said);
            });
    }

private:
    const std::shared_ptr<QList<Layers>> m_layers;
    KPLongWork &m_work;
    const Said m_said;
    bool m_isNew = true; // pushed, which "redoes" what was done already
};

} // namespace

void KPTextRecognising::start(const QList<KPDoc *> &docs, KPLongWork &work, QUndoStack &history,
                              const Said &said)
{
    QList<KPDoc *> pdfs = docs;
    pdfs.removeIf([](const KPDoc *doc) { return !doc->isPDF(); });
    if (pdfs.isEmpty() || !XPTextLayer::isAvailable()) {
        XPPrompts::current().alert(qtTrId("KPNotRecognised"), pdfs.isEmpty()
                                                                  ? qtTrId("KPRecogniseNoPDF")
                                                                  : qtTrId("KPNoTextRecognition"));
        return;
    }
    const auto task = makeTask(QT_TRID_NOOP("KPRecognising"), pdfs.size());
    work.run(
        task, [pdfs, task] { return recogniseAll(pdfs, task); },
        [history = QPointer(&history), &work, task, said](const Outcome &outcome) {
            xpGuiThread.assertHere();
            report(outcome, task, said);
            if (history && !outcome.done.isEmpty())
                history->push(new RecogniseCommand(outcome.done, work, said));
        });
}

#include "KPPrinting.h"

#include "KPFailures.h"
#include "KPLongWork.h"
#include "KPPrintInfo.h"
#include "KPPrintedPages.h"
#include "XPPrompts.h"

#include <QEventLoop>
#include <QLocale>
#include <QPaintEngine>
#include <QPointer>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QScreen>
#include <future>

using Pages = std::shared_ptr<KPPrintedPages>;

static XPProgress::Task makeTask(const QString &title, qint64 total)
{
    auto task = std::make_shared<XPProgressTask>();
    task->title = title;
    task->note = qtTrId("KPPrintStopNote");
    task->total = total;
    return task;
}

namespace {

// Stays while its pages go out.
class Preview : public QPrintPreviewDialog
{
public:
    Preview(const Pages &pages, KPLongWork &work, std::shared_ptr<QPrinter> printer,
            QWidget *window)
        : QPrintPreviewDialog(printer.get(), window), m_pages(pages), m_work(work),
          m_printer(std::move(printer))
    {
        setAttribute(Qt::WA_DeleteOnClose);
        setWindowTitle(qtTrId("KPPrintTitle"));
        resize(QSize(860, 900).boundedTo(screen()->availableSize() * 9 / 10));
        connect(this, &QPrintPreviewDialog::paintRequested, this, &Preview::fill);
    }
    void done(int result) override
    {
        if (m_isPrinting)
            return;
        KPPrintInfo::save(*m_printer);
        QPrintPreviewDialog::done(result);
    }

private:
    void fill(QPrinter *paper)
    {
        xpGuiThread.assertHere();
        const QPaintEngine *engine = paper->paintEngine();
        if (engine && engine->type() == QPaintEngine::Picture)
            m_pages->paint(paper, true, makeTask({}, m_pages->count()));
        else
            print(paper);
    }
    void print(QPrinter *paper) XP_REQUIRES(xpGuiThread);

    const Pages m_pages;
    KPLongWork &m_work;
    const std::shared_ptr<QPrinter> m_printer;
    bool m_isPrinting = false;
};

} // namespace

// The paper is to be filled on return from here: the pages go out on the other thread, and this one
// goes on showing how far they are. A program that ends meanwhile stops it.
void Preview::print(QPrinter *paper)
{
    m_isPrinting = true;
    const auto task = makeTask(qtTrId("KPPrintingPages"), m_pages->count());
    const auto over = std::make_shared<std::promise<void>>();
    QEventLoop loop;
    m_work.run(
        task,
        [pages = m_pages, paper, task, over] {
            const bool isPrinted = pages->paint(paper, false, task);
            over->set_value();
            return isPrinted;
        },
        [loop = QPointer(&loop)](bool isPrinted) {
            xpGuiThread.assertHere();
            if (loop)
                loop->quit();
            if (!isPrinted)
                XPPrompts::current().alert(qtTrId("KPPrinterFailed"),
                                           qtTrId("KPPrinterFailedText"));
        });
    loop.exec();
    task->isStopAsked = true; // if the loop ended before
    over->get_future().wait();
    m_isPrinting = false;
}

static void preview(const Pages &pages, KPLongWork &work, QWidget *window) XP_REQUIRES(xpGuiThread)
{
    auto printer = std::make_shared<QPrinter>(QPrinter::HighResolution);
    KPPrintInfo::restore(printer.get());
    (new Preview(pages, work, std::move(printer), window))->open();
}

static void show(const Pages &pages, KPLongWork &work, QWidget *window) XP_REQUIRES(xpGuiThread)
{
    if (!pages->isCutOff()) {
        preview(pages, work, window);
        return;
    }
    XPPrompts::current().ask({qtTrId("KPPrintManyTitle").arg(QLocale().toString(pages->mostPages)),
                              qtTrId("KPPrintManyText"),
                              {qtTrId("KPPrintManyButton"), qtTrId("KPCancel")},
                              1},
                             [pages, &work, window = QPointer(window)](int button) {
                                 xpGuiThread.assertHere();
                                 if (button == 0)
                                     preview(pages, work, window);
                             });
}

void KPPrinting::start(const QStringList &paths, KPLongWork &work, QWidget *window)
{
    const auto task =
        makeTask(qtTrId("KPPrintPreparing", static_cast<int>(paths.size())), paths.size());
    work.run(
        task, [paths, task] { return KPPrintedPages::make(paths, task); },
        [&work, task, window = QPointer(window)](const Pages &pages) {
            xpGuiThread.assertHere();
            if (task->isStopAsked)
                return;
            if (pages->isEmpty()) {
                KPFailures::tell(QT_TRID_NOOP("KPCannotPrint"), pages->failures());
                return;
            }
            KPFailures::ask(QT_TRID_NOOP("KPCannotPrint"), pages->failures(),
                            [pages, &work, window] {
                                xpGuiThread.assertHere();
                                show(pages, work, window);
                            });
        });
}

// Pages of paper to a document, what is done to a page, and documents combined.
#include "MurnBench.h"
#include "XPCombinedPDF.h"
#include "XPPageAnalysis.h"
#include "XPPageEdit.h"
#include "XPPath.h"
#include "XPQpdf.h"
#include "XPScanPDF.h"

#include <QDir>
#include <QFile>
#include <QPainter>
#include <QTemporaryDir>
#include <atomic>
#include <thread>

// A page of US Letter in colour at 300 dots an inch, with lines like text.
static QImage page()
{
    QImage image(2550, 3300, QImage::Format_RGB32);
    image.fill(QColor(250, 248, 240));
    QPainter painter(&image);
    for (int line = 0; line < 60; ++line) {
        for (int word = 0; word < 24; ++word) {
            if ((line * 7 + word * 5) % 6 != 0)
                painter.fillRect(200 + word * 90, 250 + line * 45, 40 + (word * 13) % 45, 18,
                                 QColor(30, 30, (word * 40) % 200));
        }
    }
    painter.end();
    return image;
}

namespace {

class Pages
{
public:
    Pages()
    {
        const QImage image = page();
        for (int i = 0; i < 100; ++i) {
            const QString path = m_folder.filePath(QStringLiteral("%1.jpg").arg(i));
            if (!(i == 0 ? image.save(path, "JPEG", 95) : QFile::copy(m_paths.first(), path)))
                qFatal("no pages");
            m_paths.append(path);
        }
    }
    const QStringList &paths() const { return m_paths; }
    QString out() const { return m_folder.filePath(QStringLiteral("out.pdf")); }

private:
    QTemporaryDir m_folder{QDir::currentPath() + QStringLiteral("/pages-XXXXXX")};
    QStringList m_paths;
};

const Pages &thePages()
{
    static const Pages pages;
    return pages;
}

} // namespace

static void assemblePages(benchmark::State &state)
{
    const Pages &pages = thePages();
    for ([[maybe_unused]] auto _ : state) {
        if (ImageArrayToPDFDocument(pages.paths(), false, 0.7F, pages.out()).valueOr(0) != 100)
            state.SkipWithError("not all pages went in");
    }
    XPBench::timeAtMost(state, 1.3);
}
BENCHMARK(assemblePages)->Unit(benchmark::kMillisecond)->UseRealTime();

// The bare reading and encoding of the same pictures, on as many processors.
static void encodePages(benchmark::State &state)
{
    const Pages &pages = thePages();
    for ([[maybe_unused]] auto _ : state) {
        std::atomic<qsizetype> next = 0;
        const auto work = [&] {
            for (qsizetype i = next++; i < pages.paths().size(); i = next++)
                benchmark::DoNotOptimize(JPGDataFromNSImage(QImage(pages.paths()[i]), 0.7F));
        };
        std::vector<std::jthread> threads;
        for (unsigned i = 0; i < std::thread::hardware_concurrency(); ++i)
            threads.emplace_back(work);
    }
}
BENCHMARK(encodePages)
    ->Name("assemblePages/baseline")
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

// --- One page

// For the preview the page is as large as the view.
static void previewEdits(benchmark::State &state)
{
    const QImage image = page().scaled(1000, 1300, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    XPPageEdit edit;
    edit.quarterTurns = 1;
    edit.straightenAngle = 1.5;
    edit.crop = {0.05, 0.05, 0.9, 0.9};
    edit.contrastPercentage = 130;
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(edit.applied(image));
    state.SetItemsProcessed(state.iterations());
    XPBench::itemsPerSecondAtLeast(state, 20); // 50 ms
}
BENCHMARK(previewEdits)->Unit(benchmark::kMillisecond);

static void findPaperAndAngle(benchmark::State &state)
{
    const QImage image = page();
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(XPPageAnalysis::paper(image));
        benchmark::DoNotOptimize(XPPageAnalysis::angle(image));
    }
    state.SetItemsProcessed(state.iterations());
    XPBench::itemsPerSecondAtLeast(state, 1000.0 / 150);
}
BENCHMARK(findPaperAndAngle)->Unit(benchmark::kMillisecond);

// --- Documents combined

namespace {

// A hundred documents of ten pages with text.
class Documents
{
public:
    Documents()
    {
        for (int number = 0; number < 100; ++number) {
            QPDF pdf;
            pdf.emptyPDF();
            for (int i = 0; i < 10; ++i) {
                std::string text = "BT /F 12 Tf 72 700 Td ";
                for (int line = 0; line < 40; ++line)
                    text += "(line " + std::to_string(line * number + i) + ") Tj 0 -14 Td ";
                QPDFObjectHandle made = QPDFObjectHandle::parse(
                    "<< /Type /Page /MediaBox [0 0 612 792] /Resources << /Font << /F << /Type "
                    "/Font /Subtype /Type1 /BaseFont /Helvetica >> >> >> >>");
                made.replaceKey("/Contents", QPDFObjectHandle::newStream(&pdf, text + "ET"));
                pdf.addPage(pdf.makeIndirectObject(made), false);
            }
            const QString path = m_folder.filePath(QStringLiteral("%1.pdf").arg(number));
            const QByteArray name = XPPath::encode(path); // the writer keeps no copy
            QPDFWriter writer(pdf, name.constData());
            writer.write();
            m_paths.append(path);
        }
    }
    const QStringList &paths() const { return m_paths; }
    QString out() const { return m_folder.filePath(QStringLiteral("out.pdf")); }

private:
    QTemporaryDir m_folder{QDir::currentPath() + QStringLiteral("/combine-XXXXXX")};
    QStringList m_paths;
};

} // namespace

static void combineDocuments(benchmark::State &state)
{
    const Documents documents;
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        QFile::remove(documents.out());
        state.ResumeTiming();
        const auto result = XPCombinedPDF::combine(documents.paths(), documents.out());
        const auto *made = std::get_if<XPCombinedPDF::Made>(&result);
        if (made == nullptr || made->pages != 1000)
            state.SkipWithError("not combined");
    }
    XPBench::timeAtMost(state, 1.3);
}
BENCHMARK(combineDocuments)->Unit(benchmark::kMillisecond);

static void bareCombine(benchmark::State &state)
{
    const Documents documents;
    for ([[maybe_unused]] auto _ : state) {
        std::vector<std::unique_ptr<QPDF>> sources;
        QPDF pdf;
        pdf.emptyPDF();
        for (const QString &path : documents.paths()) {
            sources.push_back(std::make_unique<QPDF>());
            sources.back()->processFile(XPPath::encode(path).constData());
            for (const auto &each : sources.back()->getAllPages())
                pdf.addPage(each, false);
        }
        const QByteArray name = XPPath::encode(documents.out());
        QPDFWriter writer(pdf, name.constData());
        writer.write();
    }
}
BENCHMARK(bareCombine)->Name("combineDocuments/baseline")->Unit(benchmark::kMillisecond);

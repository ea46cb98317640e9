// murnctl capture: web pages as PDF documents.
#include "KPFileSteps.h"
#include "XPFolders.h"
#include "XPPath.h"
#include "XPURLToPDF.h"
#include "XPWebPages.h"

#include <QEventLoop>

// Nothing: interrupted.
static std::optional<XPResult<XPURLToPDF::Page>>
capture(const QString &address, const XPURLToPDF::Options &options, KPInterrupt &interrupt)
{
    XPURLToPDF capture(options);
    QEventLoop loop;
    std::optional<XPResult<XPURLToPDF::Page>> result;
    QObject::connect(&capture, &XPURLToPDF::captured, &loop, [&](const XPURLToPDF::Page &page) {
        result.emplace(page);
        loop.quit();
    });
    QObject::connect(&capture, &XPURLToPDF::failed, &loop, [&](const XPError &error) {
        result.emplace(error);
        loop.quit();
    });
    QObject::connect(&interrupt, &KPInterrupt::interrupted, &loop, &QEventLoop::quit);
    capture.start(address);
    loop.exec();
    return result;
}

static XPResult<XPURLToPDF::Options> optionsOf(const KPCommandLine &line)
{
    XPURLToPDF::Options options = XPURLToPDF::Options::fromSettings();
    options.paginates = options.paginates || line.has("--pages");
    options.hasBackgrounds = options.hasBackgrounds && !line.has("--no-backgrounds");
    if (!line.has("--width"))
        return options;
    bool isNumber = false;
    options.width = line.values("--width").last().toDouble(&isNumber);
    constexpr double least = 200;
    constexpr double most = 5000;
    if (!isNumber || !(options.width >= least && options.width <= most))
        return kpUsageError(QStringLiteral("--width needs a number from 200 to 5000"));
    return options;
}

static int run(const KPCommandLine &line, KPCommandOutput &output)
{
    const QString to = line.values("--to").value(0);
    const auto options = optionsOf(line);
    if (!options)
        return kpReportUsage(&kpCaptureCommand, options.error().message);
    if (line.operands().isEmpty())
        return kpReportUsage(&kpCaptureCommand, QStringLiteral("an address is needed"));
    if (line.values("--to").size() > 1 || line.values("--to").contains(QString()))
        return kpReportUsage(&kpCaptureCommand, QStringLiteral("--to takes one folder"));
    const auto folder = XPFolders::realFolder(to.isEmpty() ? QStringLiteral("/") : to);
    if (!folder) {
        output.fail(to, folder.error().reason());
        return output.exitStatus();
    }
    KPInterrupt interrupt;
    XPFileReport report;
    for (const QString &text : line.operands()) {
        const auto address = XPURLToPDF::addressFrom(text);
        if (!address) {
            output.fail(text, QStringLiteral("is no address of a web page (http or https)"));
            continue;
        }
        const auto page = capture(*address, *options, interrupt);
        if (!page)
            return KPExitInterrupted;
        if (!*page) {
            output.fail(text, page->error().reason());
            continue;
        }
        const auto path = XPWebPages::file(page->value().pdf, page->value().title,
                                           page->value().url, to.isEmpty() ? to : *folder);
        if (path)
            report.steps.append({*path, *path, XPFileStep::Action::Marked, {}});
        else
            output.fail(text, path.error().reason());
    }
    return KPFileSteps::print(report, output);
}

const KPCommand kpCaptureCommand = {
    "capture",
    "[--to DIR] [--pages] [--no-backgrounds] [--width N] URL…",
    "Makes PDF documents of web pages.",
    "An installed browser (Chromium, or one that is built on it) draws the page, without a window "
    "and\n"
    "with a profile of its own, which knows nothing of yours. The document is called by the "
    "title\n"
    "of the page, carries its address (kMDItemKXBookmarks) and goes to today's folder in \"Filed\n"
    "Documents\", or to DIR; its path is printed. The settings KPURLToPDFPaginate,\n"
    "KPURLToPDFBackgrounds and KPURLToPDFWebViewWidth hold where no option says otherwise.\n",
    {{"--to", "DIR", "write it to this folder"},
     {"--pages", nullptr, "in pages of A4, instead of one long page"},
     {"--no-backgrounds", nullptr, "without the colours and pictures behind the text"},
     {"--width", "N", "lay the page out N pixels wide"},
     {"--json", nullptr, "print a list of objects"},
     {"--print0", nullptr, "a NUL after each path"}},
    run};

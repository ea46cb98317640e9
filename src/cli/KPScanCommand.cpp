// murnctl scan: paper to PDF.
#include "KPCommandOutput.h"
#include "KPDocEdits.h"
#include "KPScanRun.h"
#include "XPFileInfo.h"
#include "XPScanDocument.h"

static int list(KPScanRun &scan, KPCommandOutput &output)
{
    const QStringList titles = scan.list();
    if (output.isJson())
        output.write(KPCommandOutput::json(titles) + '\n');
    for (const QString &title : titles) {
        if (!output.isJson())
            output.writeRecord(output.name(title));
    }
    if (titles.isEmpty())
        KPCommandOutput::note(QStringLiteral("no scanner was found"));
    return output.exitStatus();
}

// What was to be put on the document; the document is whole whether or not this works.
static void mark(const QString &path, const KPScanOptions &options, KPCommandOutput &output)
{
    if (!options.tags.isEmpty()) {
        if (const auto error = KPDocEdits::addUserTags(options.tags, path))
            output.fail(path, "the tags cannot be written", *error);
    }
    if (options.rating) {
        if (const auto error = KPDocEdits::setRating(*options.rating, path))
            output.fail(path, "the rating cannot be written", *error);
    }
}

static int finish(KPScanRun &scan, const KPScanOptions &options, XPScannedPages &pages,
                  KPCommandOutput &output)
{
    QByteArrayList objects;
    while (pages.numberOfPages() > 0) {
        XPScanDocument::FirstOfPile first{pages.pages(), pages.numberOfPages()};
        if (options.separates)
            first = XPScanDocument::firstOfPile(pages.pages());
        const QString path = scan.file(first.pages, options);
        if (path.isEmpty()) {
            KPCommandOutput::note(
                QStringLiteral("the pages are kept; 'murnctl scan --resume' files them"));
            break;
        }
        mark(path, options, output);
        XPScanDocument::removePlaceholderPDF(pages.folder());
        if (first.used < pages.numberOfPages())
            pages.forgetFirst(first.used);
        else
            pages.clearAllImages();
        objects.append("{\"path\": " + KPCommandOutput::json(path) + '}');
        if (!output.isJson())
            output.writeRecord(output.name(path));
    }
    // One value, however many documents the pages make.
    if (output.isJson())
        output.write('[' + objects.join(",\n ") + "]\n");
    return output.exitStatus();
}

static int run(const KPCommandLine &line, KPCommandOutput &output)
{
    const auto options = KPScanOptions::parse(line);
    if (!options)
        return kpReportUsage(&kpScanCommand, options.error().message);
    if (!line.operands().isEmpty())
        return kpReportUsage(&kpScanCommand, QStringLiteral("scan takes no files"));
    for (const auto &error : {line.onlyOneOf({"--list", "--resume", "--discard"}),
                              line.onlyOneOf({"--separate", "--to"})}) {
        if (error)
            return kpReportUsage(&kpScanCommand, error->message);
    }
    // Nothing is ever written over.
    if (!options->toPath.isEmpty() && XPFileInfo::read(options->toPath))
        return kpReportUsage(&kpScanCommand, QStringLiteral("the file of --to is there already"));
    if (line.has("--save-profile")) {
        if (const auto error = options->save(line.values("--save-profile").last()))
            output.fail(QStringLiteral("the profile cannot be saved: ") + error->reason());
    }
    XPScannedPages pages;
    KPScanRun scan(output, pages);
    if (line.has("--list"))
        return list(scan, output);
    if (pages.error()) {
        output.fail(pages.folder(), pages.error()->reason());
        return output.exitStatus();
    }
    if (line.has("--discard")) {
        pages.clearAllImages();
        XPScanDocument::removePlaceholderPDF(pages.folder());
        return output.exitStatus();
    }
    if (line.has("--resume")) {
        if (pages.numberOfPages() == 0)
            output.fail(QStringLiteral("there are no pages"));
        return pages.numberOfPages() ? finish(scan, *options, pages, output) : output.exitStatus();
    }
    if (pages.numberOfPages() > 0) {
        output.fail(QStringLiteral("%1 pages of an earlier scan are not filed yet: --resume files "
                                   "them, --discard gives them up")
                        .arg(pages.numberOfPages()));
        return output.exitStatus();
    }
    if (!scan.scan(*options)) {
        if (pages.numberOfPages() > 0)
            KPCommandOutput::note(
                QStringLiteral("the pages so far are kept; 'murnctl scan --resume' files them"));
        const int status = output.exitStatus();
        return status == KPExitDone ? int{KPExitInterrupted} : status;
    }
    return finish(scan, *options, pages, output);
}

const KPCommand kpScanCommand = {
    "scan",
    "[OPTION]…",
    "Scans paper to a PDF and files it.",
    "The document goes into the managed folder, or to the file of --to. A flatbed gives one page, "
    "a\n"
    "feeder all it holds. Pages are on disk as they come: what was interrupted is filed by\n"
    "--resume or given up by --discard.\n",
    {{"--list", nullptr, "print what can be scanned with, and scan nothing"},
     {"--device", "NAME", "a scanner whose name holds this; else the one last used"},
     {"--source", "WHAT", "flatbed, feeder, transparency or negative"},
     {"--mode", "WHAT", "color, gray or bw"},
     {"--resolution", "DPI", "dots an inch, or the next more that the scanner has; usually 300"},
     {"--paper", "NAME", "A4, Letter, …; All is the whole glass"},
     {"--duplex", nullptr, "both sides, where the feeder can"},
     {"--pages", "N", "no more than these"},
     {"--clean-up", nullptr, "crop to the paper and straighten"},
     {"--upright", nullptr, "turn pages so that their text stands upright"},
     {"--skip-blank", nullptr, "leave out pages with nothing on them"},
     {"--separate", nullptr, "a page with nothing on it ends a document"},
     {"--text", nullptr, "recognise the text, so that it can be searched"},
     {"--profile", "NAME", "as kept under this name; other options come on top"},
     {"--save-profile", "NAME", "keep these options under this name"},
     {"--tag", "TAG", "put this tag on the document; may be repeated"},
     {"--rating", "N", "rate it"},
     {"--to", "FILE", "write it there instead of filing it"},
     {"--file", nullptr, "file it (usual)"},
     {"--resume", nullptr, "file the pages that are left from before"},
     {"--discard", nullptr, "give them up"},
     {"--print0", nullptr, "a NUL after each path"},
     {"--json", nullptr, "print a list of objects"}},
    run};

// murnctl paste: a document from standard input or from the clipboard.
#include "KPFileSteps.h"
#include "XPFilingRun.h"
#include "XPFolders.h"
#include "XPPasteboardSupport.h"
#include "XPPath.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeDatabase>
#include <QStringDecoder>
#include <cerrno>
#include <unistd.h>

static constexpr qsizetype longest = 1 << 30;

static XPResult<QByteArray> standardInput()
{
    constexpr qsizetype step = 1 << 20;
    QByteArray bytes;
    qsizetype size = 0;
    while (true) {
        bytes.resize(size + step);
        const ssize_t count = ::read(STDIN_FILENO, bytes.data() + size, step);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return XPError::fromErrno(errno);
        size += count;
        if (count == 0)
            break;
        if (size > longest)
            return XPError::make(XPError::Kind::TooLarge,
                                 QStringLiteral("more than 1 GiB is no document"));
    }
    bytes.truncate(size);
    return bytes;
}

static bool isText(const QByteArray &bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(bytes);
    return !decoder.hasError() && !text.contains(QChar::Null);
}

// By what the bytes look like, where nobody says.
static XPPasteboard recognised(const QByteArray &bytes)
{
    QString type = QMimeDatabase().mimeTypeForData(bytes).name();
    auto found = XPPasteboard::of(type, bytes);
    if (!found.isEmpty() || !isText(bytes))
        return found;
    return XPPasteboard::of(QStringLiteral("text/plain"), bytes);
}

static XPResult<XPPasteboard> source(const KPCommandLine &line)
{
    const QString type = line.values("--type").value(0);
    if (type.isEmpty() && ::isatty(STDIN_FILENO)) {
        if (QGuiApplication::platformName() == u"offscreen")
            return XPError::make(XPError::Kind::Unsupported,
                                 QStringLiteral("no clipboard without a display; give the "
                                                "document on standard input"));
        return XPPasteboard::from(QGuiApplication::clipboard()->mimeData());
    }
    const auto bytes = standardInput();
    if (!bytes)
        return bytes.error();
    return type.isEmpty() ? recognised(*bytes) : XPPasteboard::of(type, *bytes);
}

static int run(const KPCommandLine &line, KPCommandOutput &output)
{
    if (!line.operands().isEmpty())
        return kpReportUsage(&kpPasteCommand, QStringLiteral("takes no files"));
    if (const auto error = line.onlyOneOf({"--json", "--print0"}))
        return kpReportUsage(&kpPasteCommand, error->message);
    for (const char *option : {"--to", "--type", "--name"}) {
        const QStringList values = line.values(option);
        if (values.size() > 1 || values.contains(QString()))
            return kpReportUsage(&kpPasteCommand,
                                 QStringLiteral("%1 takes one value").arg(QLatin1String(option)));
    }
    XPFileReport report;
    auto pasteboard = source(line);
    if (!pasteboard) {
        output.fail(QStringLiteral("paste"), pasteboard.error().reason());
        return KPFileSteps::print(report, output);
    }
    XPPasteboard taken = *std::move(pasteboard);
    if (const QString name = line.values("--name").value(0); !name.isEmpty())
        taken.setUrlName(name);
    const QString to = line.values("--to").value(0);
    const auto folder = XPFolders::realFolder(to.isEmpty() ? QStringLiteral("/") : to);
    if (!folder) {
        output.fail(to, folder.error().reason());
        return KPFileSteps::print(report, output);
    }
    const auto paths = to.isEmpty() ? XPPasteboardSupport::importFromPBToFiledDocuments(taken)
                                    : XPPasteboardSupport::importFromPB(taken, *folder);
    if (!paths)
        output.fail(QStringLiteral("paste"), paths.error().reason());
    else if (paths->isEmpty())
        output.fail(QStringLiteral("paste"), QStringLiteral("nothing that is a document"));
    if (paths && !taken.fileNames().isEmpty()) { // which lie somewhere already
        XPFilingRun marking;
        marking.setToManaged(*paths);
        return KPFileSteps::print(marking.report(), output);
    }
    for (const QString &path : paths.valueOr({}))
        report.steps.append({path, path, XPFileStep::Action::Marked, {}});
    return KPFileSteps::print(report, output);
}

const KPCommand kpPasteCommand = {
    "paste",
    "[--to DIR] [--type MIME] [--name TEXT]",
    "Makes a document of standard input, or of the clipboard.",
    "It is written to today's folder in \"Filed Documents\", or to DIR, and marked as a document\n"
    "of the library; its path is printed. Pictures become PNG, styled text (text/html)\n"
    "OpenDocument with the pictures in it, mail .eml, http addresses web locations. Text of less\n"
    "than 21 characters is none. On a terminal without --type the clipboard is taken.\n",
    {{"--to", "DIR", "write it to this folder"},
     {"--type", "MIME", "what standard input is; else it is looked at"},
     {"--name", "TEXT", "call it so, instead of by its content"},
     {"--json", nullptr, "print a list of objects"},
     {"--print0", nullptr, "a NUL after each path"}},
    run,
    true};

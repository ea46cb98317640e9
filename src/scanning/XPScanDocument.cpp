#include "XPScanDocument.h"

#include "UserDefaults.h"
#include "XPAtomicFile.h"
#include "XPDocumentFile.h"
#include "XPFileUtils.h"
#include "XPFiledDocuments.h"
#include "XPFolders.h"
#include "XPPath.h"
#include "XPQpdf.h"
#include "XPScanPDF.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
static const QString ending = QStringLiteral(".pdf");
static const QString qualityKey = QStringLiteral("KPCompressionFactor3");

// --- The placeholder

QString XPScanDocument::placeholderName(const QDateTime &now, const QLocale &locale)
{
    const QString date = locale.toString(now.date(), QLocale::ShortFormat) + u' ' +
                         locale.toString(now.time(), QLocale::ShortFormat);
    QString name = qtTrId("KPScanPlaceholderName");
    name.replace(QStringLiteral("DATE_HERE"), date);
    name.replace(u':', u'.').replace(u'/', u'.');
    return name.endsWith(ending, Qt::CaseInsensitive) ? name : name + ending;
}

// A page that says what it is, should anybody open it; in one of the fonts that every reader has.
static XPResult<QByteArray> placeholderContents()
{
    try {
        QPDF pdf;
        pdf.emptyPDF();
        QByteArray text = qtTrId("KPCurrentlyScanning").toLatin1();
        text.replace('\\', "\\\\").replace('(', "\\(").replace(')', "\\)");
        QPDFObjectHandle page = pdf.makeIndirectObject(QPDFObjectHandle::parse(
            "<< /Type /Page /MediaBox [0 0 612 792] /Resources << /Font << /F1 << /Type /Font "
            "/Subtype /Type1 /BaseFont /Helvetica /Encoding /WinAnsiEncoding >> >> >> >>"));
        const QByteArray font = "/F1 20 Tf ";
        const QByteArray show = "BT " + font + "72 600 Td (" + text + ") Tj ET";
        page.replaceKey("/Contents", QPDFObjectHandle::newStream(&pdf, show.toStdString()));
        QPDFPageDocumentHelper(pdf).addPage(page, true);
        QPDFWriter writer(pdf);
        writer.setOutputMemory();
        writer.write();
        const auto bytes = writer.getBufferSharedPointer();
        return QByteArray(reinterpret_cast<const char *>(bytes->getBuffer()),
                          static_cast<qsizetype>(bytes->getSize()));
    } catch (const std::exception &failure) {
        return XPError::make(XPError::Kind::Io, QString::fromLocal8Bit(failure.what()));
    }
}

static QStringList placeholders(const QString &folder)
{
    return QDir(folder).entryList({u'*' + ending}, QDir::Files, QDir::Name);
}

XPResult<QString> XPScanDocument::createPlaceholderPDF(const QString &folder)
{
    const QString path =
        XPFileUtils::findUnusedPath(folder + u'/' + placeholderName(QDateTime::currentDateTime()));
    const auto contents = placeholderContents();
    if (!contents)
        return contents.error();
    if (auto error = XPAtomicFile::write(path, *contents))
        return *error;
    return path;
}

XPResult<QString> XPScanDocument::placeholderPDFPath(const QString &folder)
{
    const QStringList names = placeholders(folder);
    return names.isEmpty() ? createPlaceholderPDF(folder) : folder + u'/' + names.last();
}

void XPScanDocument::removePlaceholderPDF(const QString &folder)
{
    for (const QString &name : placeholders(folder))
        QFile::remove(folder + u'/' + name);
}

// --- Filing

// Where the document is to be: the placeholder's new place, or a free one in today's folder.
static QString destination(const QString &placeholder)
{
    const QStringList filed = XPFiledDocuments::putFilesIntoFiledDocuments({placeholder});
    if (!filed.isEmpty())
        return filed.first();
    return XPFiledDocuments::unusedDestinationPath(QStringLiteral("new scan.pdf"));
}

static std::optional<XPError> putInPlace(const QString &made, const QString &path)
{
    return xpReplaceContents(path, [&](const QString &temporary) {
        const bool copied = QFile::copy(made, temporary);
        return copied ? std::nullopt
                      : std::optional(XPError::make(XPError::Kind::NoSpace,
                                                    qtTrId("KPScanNotWritten"), path));
    });
}

XPScanDocument::FirstOfPile XPScanDocument::firstOfPile(const QList<XPScannedPages::Page> &pile)
{
    const auto isBlank = [](const XPScannedPages::Page &page) { return page.isBlank; };
    const auto begin = std::find_if_not(pile.begin(), pile.end(), isBlank);
    const auto end = std::find_if(begin, pile.end(), isBlank);
    const auto next = std::find_if_not(end, pile.end(), isBlank);
    if (begin == pile.end())
        return {pile, static_cast<int>(pile.size())};
    return {QList<XPScannedPages::Page>(begin, end), static_cast<int>(next - pile.begin())};
}

XPResult<QString> XPScanDocument::file(const Request &request,
                                       const std::function<bool(double)> &progress)
{
    QList<XPScannedPages::Page> pages = request.pages;
    if (request.leavesOutBlank)
        pages.removeIf([](const XPScannedPages::Page &page) { return page.isBlank; });
    if (pages.isEmpty())
        return XPError::make(XPError::Kind::InvalidArgument, qtTrId("KPScanNoPages"));
    const double count = static_cast<double>(pages.size());
    const double steps = request.recognisesText ? 3 : 2;
    const auto part = [&](double step) {
        return [=](int page) { return !progress || progress((step + page / count) / steps); };
    };
    const auto files = XPScannedPages::filesOf(pages, request.folder, part(0));
    if (!files)
        return files.error();
    const QString made = request.folder + QStringLiteral("/made-document.part");
    QFile::remove(made);
    const auto quality = static_cast<float>(UserDefaults::standard().doubleValue(qualityKey));
    const auto written = ImageArrayToPDFDocument(*files, false, quality, made, part(1));
    if (!written)
        return written.error();
    // A page that cannot be read is a loss that only the user can judge.
    if (*written < pages.size())
        return XPError::make(XPError::Kind::Malformed, qtTrId("KPScanPageNotMade"));
    if (request.recognisesText) {
        const auto picture = [&](int page) { return QImage(files->at(page)); };
        const auto recognised =
            XPTextLayer::recognise(made, picture, {XPTextLayer::Mode::Skip, request.languages},
                                   [&](int page, int) { return part(2)(page); });
        if (!recognised)
            return recognised.error();
    }
    QString path = request.toPath;
    if (path.isEmpty()) {
        const auto placeholder = placeholderPDFPath(request.folder);
        path = placeholder
                   ? destination(*placeholder)
                   : XPFiledDocuments::unusedDestinationPath(QStringLiteral("new scan.pdf"));
    }
    if (auto error = XPFolders::create(XPPath::folder(path)))
        return *error;
    if (auto error = putInPlace(made, path))
        return *error;
    XPFiledDocuments::runMDImport(path);
    return path;
}

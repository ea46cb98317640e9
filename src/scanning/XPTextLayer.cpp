#include "XPTextLayer.h"

#include "XPDocumentFile.h"
#include "XPPath.h"
#include "XPQpdf.h"

#include <QFile>
#include <QLocale>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTransform>
#include <algorithm>
#include <list>
static const char *const layerName = "/MurnText"; // by which a layer of ours is known
static constexpr int mostMillisecondsAPage = 120'000;
static constexpr int usualDpi = 300;

static QString program()
{
    return QStandardPaths::findExecutable(QStringLiteral("tesseract"));
}

bool XPTextLayer::isAvailable()
{
    return !program().isEmpty();
}

QStringList XPTextLayer::languages()
{
    QProcess process;
    process.start(program(), {QStringLiteral("--list-langs")});
    if (!process.waitForFinished(10'000))
        return {};
    QStringList names = QString::fromUtf8(process.readAllStandardOutput()).split(u'\n');
    names.removeFirst(); // a heading
    names.removeAll(QString());
    names.removeAll(QStringLiteral("osd"));
    return names;
}

// The user's own language and English, as far as they are installed.
static QStringList usualLanguages()
{
    const QStringList installed = XPTextLayer::languages();
    QStringList names;
    for (const QString &name :
         {QLocale::languageToCode(QLocale().language(), QLocale::ISO639Part2T),
          QStringLiteral("eng")}) {
        if (installed.contains(name) && !names.contains(name))
            names.append(name);
    }
    return names.isEmpty() ? installed.mid(0, 1) : names;
}

// Whether it came to its end. With one thread, which is more than twice as fast: those of tesseract
// wait for each other most of the time.
static bool recognise(QProcess &process, const QStringList &arguments)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("OMP_THREAD_LIMIT"), QStringLiteral("1"));
    process.setProcessEnvironment(environment);
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(program(), arguments);
    if (process.waitForFinished(mostMillisecondsAPage))
        return true;
    process.kill();
    process.waitForFinished();
    return false;
}

int XPTextLayer::turnsToUpright(const QImage &image)
{
    constexpr int enoughPixels = 1754; // of the longer side: a page at 150 dots an inch
    constexpr double sure = 2;         // less is often said of pages with little text
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("page.png"));
    const QImage smaller = std::max(image.width(), image.height()) <= enoughPixels
                               ? image
                               : image.scaled(enoughPixels, enoughPixels, Qt::KeepAspectRatio,
                                              Qt::SmoothTransformation);
    if (!isAvailable() || !smaller.save(path, "PNG", 80))
        return 0;
    QProcess process;
    if (!recognise(process, {path, QStringLiteral("-"), QStringLiteral("--psm"),
                             QStringLiteral("0"), QStringLiteral("--dpi"), QStringLiteral("150")}))
        return 0;
    int degrees = 0;
    double confidence = 0;
    for (const QByteArray &line : process.readAllStandardOutput().split('\n')) {
        const auto value = line.mid(line.indexOf(':') + 1).trimmed();
        if (line.startsWith("Rotate:"))
            degrees = value.toInt();
        else if (line.startsWith("Orientation confidence:"))
            confidence = value.toDouble();
    }
    return confidence >= sure ? (degrees / 90) % 4 : 0;
}

// A PDF of one page that holds nothing but invisible text; an empty path when it failed.
static QString textOf(const QImage &picture, const QStringList &languages, const QString &folder,
                      int number)
{
    const QString stem = folder + u'/' + QString::number(number);
    if (!picture.save(stem + QStringLiteral(".png"), "PNG", 80))
        return {};
    // One drawn of a page knows no resolution; it has the screen's.
    const bool isDrawn = std::max(picture.width(), picture.height()) == XPTextLayer::pixelsOfAPage;
    const int dpi = picture.dotsPerMeterX() > 3000 && !isDrawn
                        ? qRound(picture.dotsPerMeterX() * 0.0254)
                        : usualDpi;
    QProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    if (!recognise(process,
                   {stem + QStringLiteral(".png"), stem, QStringLiteral("-l"), languages.join(u'+'),
                    QStringLiteral("--dpi"), QString::number(dpi), QStringLiteral("-c"),
                    QStringLiteral("textonly_pdf=1"), QStringLiteral("pdf")}))
        return {};
    QFile::remove(stem + QStringLiteral(".png"));
    const bool worked = process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    return worked ? stem + QStringLiteral(".pdf") : QString();
}

static bool hasLayer(QPDFPageObjectHelper &page)
{
    QPDFObjectHandle resources = page.getAttribute("/Resources", false);
    return resources.isDictionary() && resources.getKey("/XObject").isDictionary() &&
           resources.getKey("/XObject").hasKey(layerName);
}

// Fonts, in the page itself or in a form on it.
static bool hasText(QPDFPageObjectHelper &page)
{
    bool found = hasLayer(page);
    const auto look = [&](QPDFObjectHandle resources) {
        found = found || (resources.isDictionary() && resources.getKey("/Font").isDictionary() &&
                          !resources.getKey("/Font").getKeys().empty());
    };
    look(page.getAttribute("/Resources", false));
    page.forEachFormXObject(true,
                            [&](QPDFObjectHandle &form, QPDFObjectHandle &, std::string const &) {
                                look(form.getDict().getKey("/Resources"));
                            });
    return found;
}

static void removeLayer(QPDFPageObjectHelper &page)
{
    page.getAttribute("/Resources", true).getKey("/XObject").removeKey(layerName);
    // What draws it stands in a stream of its own.
    QPDFObjectHandle kept = QPDFObjectHandle::newArray();
    for (QPDFObjectHandle &content : page.getPageContents()) {
        const auto data = content.getStreamData();
        const QByteArray text(reinterpret_cast<const char *>(data->getBuffer()),
                              static_cast<qsizetype>(data->getSize()));
        if (!text.contains(layerName))
            kept.appendItem(content);
    }
    page.getObjectHandle().replaceKey("/Contents", kept);
}

// `turns`: the quarter turns, clockwise, that the page had when its text was recognised.
static void addLayer(QPDF &pdf, QPDFPageObjectHelper &page, QPDF &text, int turns)
{
    std::vector<QPDFPageObjectHelper> pages = QPDFPageDocumentHelper(text).getAllPages();
    if (pages.empty())
        return;
    pages.front().rotatePage(-90 * turns, false);
    QPDFObjectHandle form = pdf.copyForeignObject(pages.front().getFormXObjectForPage());
    // What went before may have left the coordinates changed.
    page.addPageContents(QPDFObjectHandle::newStream(&pdf, "q\n"), true);
    page.addPageContents(QPDFObjectHandle::newStream(&pdf, "\nQ\n"), false);
    const std::string draw = page.placeFormXObject(
        form, layerName, page.getCropBox().getArrayAsRectangle(), true, true, true);
    QPDFObjectHandle resources = page.getAttribute("/Resources", true);
    if (!resources.getKey("/XObject").isDictionary())
        resources.replaceKey("/XObject", QPDFObjectHandle::newDictionary());
    else
        resources.replaceKey("/XObject", resources.getKey("/XObject").shallowCopy());
    resources.getKey("/XObject").replaceKey(layerName, form);
    page.addPageContents(QPDFObjectHandle::newStream(&pdf, draw), false);
}

static XPResult<QList<int>> layOver(QPDF &pdf, const QString &pdfPath, const QString &folder,
                                    const XPTextLayer::Picture &picture,
                                    const XPTextLayer::Options &options,
                                    const std::function<bool(int, int)> &progress)
{
    using Mode = XPTextLayer::Mode;
    const QStringList languages =
        options.languages.isEmpty() ? usualLanguages() : options.languages;
    std::vector<QPDFPageObjectHelper> pages = QPDFPageDocumentHelper(pdf).getAllPages();
    const int count = static_cast<int>(pages.size());
    std::list<QPDF> texts; // what was copied from them is read when the document is written
    QList<int> done;
    std::optional<XPError> failure;
    for (int number = 0; number < count; ++number) {
        if (progress && !progress(number, count))
            return XPError::make(XPError::Kind::Cancelled, QStringLiteral("cancelled"));
        QPDFPageObjectHelper &page = pages[static_cast<std::size_t>(number)];
        const bool isOurs = hasLayer(page);
        if (options.mode == Mode::Skip && hasText(page))
            continue;
        if (options.mode == Mode::Redo && !isOurs && hasText(page))
            continue;
        const XPResult<QImage> image = picture(number);
        if (!image) {
            failure = image.error();
            continue;
        }
        const int turns = XPTextLayer::turnsToUpright(*image);
        const QString made =
            textOf(turns ? image->transformed(QTransform().rotate(90.0 * turns)) : *image,
                   languages, folder, number);
        if (made.isEmpty()) {
            failure = XPError::make(XPError::Kind::Io, qtTrId("KPNotRecognised"), pdfPath);
            continue;
        }
        if (isOurs)
            removeLayer(page);
        texts.emplace_back().processFile(XPPath::encode(made).constData());
        addLayer(pdf, page, texts.back(), turns);
        done.append(number);
    }
    if (done.isEmpty() && failure) // else it would pass for one whose pages all have text
        return *failure;
    if (done.isEmpty())
        return done;
    if (auto error = xpWritePDF(pdf, pdfPath))
        return *error;
    return done;
}

// Runs `work` on the document, with what qpdf throws as a value.
template <typename Result, typename Work>
static Result onDocument(const QString &pdfPath, Work work)
{
    try {
        QPDF pdf;
        if (auto error = xpOpenPDF(pdf, pdfPath))
            return *error;
        return work(pdf);
    } catch (const QPDFExc &failure) {
        return xpErrorOf(failure, pdfPath);
    } catch (const std::exception &failure) {
        return XPError::make(XPError::Kind::Io, QString::fromLocal8Bit(failure.what()), pdfPath);
    }
}

XPResult<QList<int>> XPTextLayer::recognise(const QString &pdfPath, const Picture &picture,
                                            const Options &options,
                                            const std::function<bool(int, int)> &progress)
{
    using Result = XPResult<QList<int>>;
    if (!isAvailable())
        return XPError::make(XPError::Kind::Unsupported, qtTrId("KPNoTextRecognition"));
    return onDocument<Result>(pdfPath, [&](QPDF &pdf) -> Result {
        const QTemporaryDir folder;
        if (!folder.isValid())
            return XPError::make(XPError::Kind::NoSpace, qtTrId("KPScanPageNotMade"));
        return layOver(pdf, pdfPath, folder.path(), picture, options, progress);
    });
}

std::optional<XPError> XPTextLayer::remove(const QString &pdfPath, const QList<int> &pages)
{
    using Result = std::optional<XPError>;
    return onDocument<Result>(pdfPath, [&](QPDF &pdf) -> Result {
        std::vector<QPDFPageObjectHelper> all = QPDFPageDocumentHelper(pdf).getAllPages();
        for (const int number : pages) {
            const auto place = static_cast<std::size_t>(number);
            if (place >= all.size() || !hasLayer(all[place]))
                return XPError::make(XPError::Kind::InvalidArgument, qtTrId("KPChangedMeanwhile"),
                                     pdfPath);
            removeLayer(all[place]);
        }
        return xpWritePDF(pdf, pdfPath);
    });
}

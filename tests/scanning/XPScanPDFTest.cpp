#include "XPScanPDF.h"

#include "TestHome.h"
#include "XPDocumentFile.h"
#include "XPExtendedAttributes.h"
#include "XPQpdf.h"
#include "XPTextLayer.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QPainter>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTransform>
#include <gtest/gtest.h>
static QImage picture(int width, int height, Qt::GlobalColor colour = Qt::yellow)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(colour);
    return image;
}

static QString saved(const TestFolder &folder, const QString &name, const QImage &image)
{
    EXPECT_TRUE(image.save(folder.path(name)));
    return folder.path(name);
}

namespace {

struct PageFacts
{
    double width, height;
    std::string filter;
    QByteArray data; // as it stands in the file
};

} // namespace

static std::vector<PageFacts> pagesOf(const QString &path)
{
    QPDF pdf;
    pdf.processFile(QFile::encodeName(path).constData());
    std::vector<PageFacts> facts;
    for (QPDFPageObjectHelper &page : QPDFPageDocumentHelper(pdf).getAllPages()) {
        const auto box = page.getMediaBox().getArrayAsRectangle();
        QPDFObjectHandle image = page.getImages().begin()->second;
        const auto data = image.getRawStreamData();
        QPDFObjectHandle filter = image.getDict().getKey("/Filter");
        facts.push_back({box.urx - box.llx, box.ury - box.lly,
                         filter.isName() ? filter.getName() : std::string(),
                         QByteArray(reinterpret_cast<const char *>(data->getBuffer()),
                                    static_cast<qsizetype>(data->getSize()))});
    }
    return facts;
}

TEST(ScanPDF, PagesHaveTheSizesAndQualitiesAskedFor)
{
    const TestFolder folder;
    const QString letter = saved(folder, QStringLiteral("1.jpg"), picture(2550, 3300));
    const QString square = saved(folder, QStringLiteral("2.png"), picture(1000, 1000));
    QImage mono = picture(64, 64, Qt::white).convertToFormat(QImage::Format_Mono);
    const QString bits = saved(folder, QStringLiteral("3.png"), mono);
    const QString broken = folder.file(QStringLiteral("4.png"), "no picture");
    const QString to = folder.path(QStringLiteral("out.pdf"));

    const auto lossy = ImageArrayToPDFDocument({letter, square, broken}, true, 0.35F, to);
    ASSERT_TRUE(lossy) << lossy.error().message.toStdString();
    EXPECT_EQ(*lossy, 2); // what cannot be read is left out
    auto pages = pagesOf(to);
    ASSERT_EQ(pages.size(), 2U);
    EXPECT_NEAR(pages[0].width, 581.4, 0.1);
    EXPECT_NEAR(pages[0].height, 752.4, 0.1);
    EXPECT_DOUBLE_EQ(pages[1].width, 500);
    EXPECT_EQ(pages[0].filter, "/DCTDecode");
    EXPECT_EQ(pages[1].filter, "/DCTDecode");

    ASSERT_TRUE(ImageArrayToPDFDocument({letter, square, bits}, false, 0.95F, to));
    pages = pagesOf(to);
    ASSERT_EQ(pages.size(), 3U);
    QFile original(letter);
    ASSERT_TRUE(original.open(QIODevice::ReadOnly));
    EXPECT_EQ(pages[0].data, original.readAll()); // byte for byte
    EXPECT_EQ(pages[1].filter, "/FlateDecode");
    EXPECT_EQ(pages[2].filter, "/FlateDecode");

    EXPECT_EQ(ImageArrayToPDFDocument({}, false, 0.5F, to).valueOr(-1), 0);
    EXPECT_EQ(ImageArrayToPDFDocument({broken}, false, 0.5F, to).valueOr(-1), 0);
    EXPECT_EQ(pagesOf(to).size(), 3U); // nothing was written over
    const auto stopped =
        ImageArrayToPDFDocument({letter}, false, 0.5F, to, [](int) { return false; });
    ASSERT_FALSE(stopped);
    EXPECT_EQ(stopped.error().kind, XPError::Kind::Cancelled);
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 5);
}

TEST(ScanPDF, ReplacingKeepsWhatIsOnTheFile)
{
    const TestFolder folder;
    const QString path = folder.file(QStringLiteral("doc.pdf"), "old");
    const QString name = QStringLiteral("mine");
    ASSERT_FALSE(XPExtendedAttributes::write(path, name, "kept"));
    const auto write = [](const QByteArray &bytes) {
        return [bytes](const QString &temporary) -> std::optional<XPError> {
            QFile file(temporary);
            if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
                return XPError::fromErrno(EIO, temporary);
            return {};
        };
    };
    ASSERT_FALSE(xpReplaceContents(path, write("new")));
    EXPECT_EQ(XPExtendedAttributes::read(path, name).valueOr({}), QByteArray("kept"));
    EXPECT_EQ(QFile(path).size(), 3);
    const auto failed = xpReplaceContents(path, [](const QString &temporary) {
        (void)QFile(temporary).open(QIODevice::WriteOnly);
        return std::optional(XPError::fromErrno(ENOSPC, temporary));
    });
    EXPECT_TRUE(failed);
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden),
              QStringList{QStringLiteral("doc.pdf")});
}

TEST(ScanPDF, TextIsLaidOverOnceAndFoundAgain)
{
    if (!XPTextLayer::isAvailable())
        GTEST_SKIP() << "the program that recognises text is not installed";
    const TestFolder folder;
    QImage page = picture(1240, 1754, Qt::white);
    {
        QPainter painter(&page);
        QFont font(QStringLiteral("DejaVu Sans"));
        font.setPixelSize(40);
        painter.setFont(font);
        painter.drawText(100, 300, QStringLiteral("The contract for the dry dock"));
    }
    const QString image = saved(folder, QStringLiteral("page.png"), page);
    const QString path = folder.path(QStringLiteral("doc.pdf"));
    ASSERT_TRUE(ImageArrayToPDFDocument({image, image}, false, 0.5F, path));
    const auto pictureOf = [&](int) { return page; };
    const XPTextLayer::Options options{XPTextLayer::Mode::Skip, {QStringLiteral("eng")}};
    const auto pagesWith = [&](const XPTextLayer::Options &wanted) {
        return XPTextLayer::recognise(path, pictureOf, wanted).valueOr({-1});
    };
    // Nothing came of any page: not the answer of one whose pages all have text.
    const auto onlyFrom = [&](int first) {
        const auto picture = [&, first](int number) -> XPResult<QImage> {
            if (number < first)
                return XPError::make(XPError::Kind::Malformed, QStringLiteral("damaged"));
            return page;
        };
        const auto done = XPTextLayer::recognise(path, picture, options);
        return done ? done.value() : QList<int>{-1};
    };
    EXPECT_EQ(onlyFrom(2), QList<int>{-1});
    EXPECT_EQ(onlyFrom(1), QList<int>{1});
    EXPECT_EQ(pagesWith(options), QList<int>{0});
    const auto contents = [&] {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    };
    const QByteArray once = contents();
    EXPECT_EQ(once.count("/MurnText"), 2); // in the resources of each page
    EXPECT_EQ(pagesWith(options), QList<int>());
    EXPECT_EQ(contents(), once);
    const XPTextLayer::Options again{XPTextLayer::Mode::Redo, {QStringLiteral("eng")}};
    EXPECT_EQ(pagesWith(again), (QList<int>{0, 1}));
    EXPECT_EQ(pagesOf(path).size(), 2U);

    EXPECT_FALSE(XPTextLayer::remove(path, {1}));
    EXPECT_EQ(contents().count("/MurnText"), 1);
    // Page 1 has none any more: somebody changed the document, which is left as it is.
    EXPECT_TRUE(XPTextLayer::remove(path, {0, 1}));
    EXPECT_EQ(contents().count("/MurnText"), 1);
    EXPECT_FALSE(XPTextLayer::remove(path, {0}));
    EXPECT_EQ(contents().count("/MurnText"), 0);

    const QString junk = folder.file(QStringLiteral("junk.pdf"), "junk");
    EXPECT_FALSE(XPTextLayer::recognise(junk, pictureOf, options));
    EXPECT_EQ(QFile(junk).size(), 4);
    // Told apart from one whose pages all have text.
    const QString pageless = folder.path(QStringLiteral("pageless.pdf"));
    {
        QPDF pdf;
        pdf.emptyPDF();
        ASSERT_FALSE(xpWritePDF(pdf, pageless));
    }
    EXPECT_FALSE(XPTextLayer::recognise(pageless, pictureOf, options));
    EXPECT_FALSE(XPTextLayer::recognise(folder.path(QStringLiteral("none")), pictureOf, options));
}

// Where "Lighthouse" lies, in points of the page as people see it; nothing: it is not there.
static std::optional<QPointF> placeOfLighthouse(const QString &path)
{
    QProcess process;
    process.start(QStringLiteral("pdftotext"),
                  {QStringLiteral("-bbox"), path, QStringLiteral("-")});
    EXPECT_TRUE(process.waitForFinished());
    static const QRegularExpression word(
        QStringLiteral("xMin=\"(.+?)\" yMin=\"(.+?)\" xMax=\"(.+?)\" yMax=\"(.+?)\">Lighthouse<"));
    const auto box = word.match(QString::fromUtf8(process.readAllStandardOutput()));
    if (!box.hasMatch())
        return {};
    const auto number = [&](int group) { return box.captured(group).toDouble(); };
    return QPointF(number(1) + number(3), number(2) + number(4)) / 2;
}

// Text that lies in every direction on pages that are shown in every direction.
TEST(ScanPDF, TextIsReadHoweverThePageLies)
{
    if (!XPTextLayer::isAvailable() ||
        QStandardPaths::findExecutable(QStringLiteral("pdftotext")).isEmpty())
        GTEST_SKIP() << "no program that recognises text, or none that reads it";
    QImage upright = picture(1240, 1754, Qt::white);
    {
        QPainter painter(&upright);
        QFont font(QStringLiteral("DejaVu Sans"));
        font.setPixelSize(30);
        painter.setFont(font);
        painter.drawText(120, 160, QStringLiteral("Lighthouse"));
        for (int line = 1; line < 12; ++line)
            painter.drawText(120, 160 + line * 46,
                             QStringLiteral("The harbour master asks for the papers of the ship"));
    }
    const QPointF middle(210 / 1240.0, 150 / 1754.0);
    for (const auto &[inFile, rotate] : {std::pair(0, 180), {0, 270}, {180, 180}, {90, 0}}) {
        SCOPED_TRACE(testing::Message() << inFile << " in the file, shown at " << rotate);
        const TestFolder folder;
        const QString path = folder.path(QStringLiteral("doc.pdf"));
        const QImage stored = upright.transformed(QTransform().rotate(inFile));
        const QString image = saved(folder, QStringLiteral("page.png"), stored);
        ASSERT_TRUE(ImageArrayToPDFDocument({image}, false, 0.5F, path));
        {
            QPDF pdf;
            pdf.processFile(QFile::encodeName(path).constData());
            QPDFPageDocumentHelper(pdf).getAllPages().front().rotatePage(rotate, false);
            ASSERT_FALSE(xpWritePDF(pdf, path));
        }
        const QImage seen = stored.transformed(QTransform().rotate(rotate));
        ASSERT_EQ(XPTextLayer::recognise(path, [&](int) { return QImage(seen); },
                                         {{}, {QStringLiteral("eng")}})
                      .valueOr({}),
                  QList<int>{0});
        const auto place = placeOfLighthouse(path);
        ASSERT_TRUE(place);
        QSizeF size = xpPageSizeInPoints(stored.size());
        if (rotate % 180)
            size.transpose();
        QTransform turned; // a page of the size 1 around its middle
        turned.scale(size.width(), size.height());
        turned.translate(0.5, 0.5);
        turned.rotate(inFile + rotate);
        turned.translate(-0.5, -0.5);
        const QPointF expected = turned.map(middle);
        EXPECT_NEAR(place->x(), expected.x(), 10);
        EXPECT_NEAR(place->y(), expected.y(), 10);
    }
}

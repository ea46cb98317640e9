#include "XPScannedPages.h"

#include "TestHome.h"
#include "XPFiledDocuments.h"
#include "XPFolders.h"
#include "XPPageAnalysis.h"
#include "XPScanDocument.h"
#include "XPTranslations.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QPainter>
#include <QTransform>
#include <gtest/gtest.h>

static QImage coloured(Qt::GlobalColor colour)
{
    QImage image(40, 20, QImage::Format_RGB32);
    image.fill(colour);
    return image;
}

// Lines of ink like those of a text, on paper.
static QImage textPage(double degrees)
{
    QImage page(1240, 1754, QImage::Format_RGB32);
    page.fill(Qt::white);
    QPainter painter(&page);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(620, 877);
    painter.rotate(degrees);
    painter.translate(-620, -877);
    for (int line = 0; line < 24; ++line) {
        for (int word = 0; word < 10; ++word)
            painter.fillRect(200 + word * 85, 250 + line * 50, 30 + (line * 7 + word * 13) % 45, 22,
                             Qt::black);
    }
    return page;
}

TEST(ScannedPages, SurviveACrashInTheirOrder)
{
    const TestFolder folder;
    QStringList names;
    {
        XPScannedPages pages(folder.path());
        ASSERT_FALSE(pages.error());
        for (const Qt::GlobalColor colour : {Qt::red, Qt::green, Qt::blue})
            ASSERT_FALSE(pages.addPageImage(coloured(colour)));
        pages.movePage(2, 0);
        pages.setEdit(1, {.quarterTurns = 1});
        pages.deletePage(2);
        names = pages.scannedImages();
        ASSERT_EQ(names.size(), 2);
        // Somebody else wants to scan too.
        EXPECT_TRUE(XPScannedPages(folder.path()).error());
    }
    // A picture came, and the power went before it was in the list.
    const QString late = folder.path(QStringLiteral("99999999999.png"));
    ASSERT_TRUE(coloured(Qt::cyan).save(late));
    XPScannedPages pages(folder.path());
    EXPECT_EQ(pages.scannedImages(), names + QStringList{late});
    EXPECT_EQ(pages.edit(1).quarterTurns, 1);
    EXPECT_EQ(pages.currentPageNumber(), 3);
    pages.clearAllImages();
    EXPECT_EQ(QDir(folder.path()).entryList({QStringLiteral("*.png")}).size(), 0);
    EXPECT_EQ(pages.currentPageNumber(), 0);
    EXPECT_TRUE(pages.currentPagePath().isEmpty());
}

TEST(ScannedPages, StepsAreTakenBack)
{
    const TestFolder folder;
    XPScannedPages pages(folder.path());
    for (int page = 0; page < 5; ++page)
        ASSERT_FALSE(pages.addPageImage(coloured(Qt::red)));
    const QStringList before = pages.scannedImages();
    pages.interleave();
    EXPECT_EQ(pages.scannedImages(),
              (QStringList{before[0], before[4], before[1], before[3], before[2]}));
    pages.deletePage(0);
    pages.setEdit(0, {.contrastPercentage = 150});
    EXPECT_EQ(pages.numberOfPages(), 4);
    for (int step = 0; step < 3; ++step)
        pages.undoStack().undo();
    EXPECT_EQ(pages.scannedImages(), before);
    EXPECT_TRUE(pages.edit(0).isNone());
    EXPECT_EQ(QDir(folder.path()).entryList({QStringLiteral("*.png")}).size(), 5);
    // Broken and hostile lists lose no page.
    pages.setEdit(2, {.straightenAngle = 3});
}

TEST(ScannedPages, AListThatCannotBeReadLosesNothing)
{
    for (const QByteArray list : {"", "garbage",
                                  "<plist><dict><key>pages</key><array><dict>"
                                  "<key>file</key><string>../../x</string></dict>"
                                  "</array></dict></plist>"}) {
        const TestFolder folder;
        ASSERT_TRUE(coloured(Qt::red).save(folder.path(QStringLiteral("12.png"))));
        (void)folder.file(QStringLiteral("pages.plist"), list);
        const XPScannedPages pages(folder.path());
        EXPECT_EQ(pages.scannedImages(), QStringList{folder.path(QStringLiteral("12.png"))});
    }
}

TEST(PageEdit, IsAppliedAndKept)
{
    QImage image = coloured(Qt::white);
    image.setPixelColor(0, 0, Qt::black);
    const XPPageEdit edit{.quarterTurns = 1,
                          .crop = QRectF(0.5, 0, 0.5, 0.25),
                          .contrastPercentage = 120,
                          .colours = XPPageEdit::Colours::BlackAndWhite};
    EXPECT_EQ(XPPageEdit::fromSaved(edit.saved()), edit);
    const QImage result = edit.applied(image);
    EXPECT_EQ(result.size(), QSize(10, 10));
    EXPECT_EQ(result.format(), QImage::Format_Mono);
    EXPECT_EQ(result.pixelColor(9, 0), QColor(Qt::black)); // turned clockwise
    EXPECT_EQ(result.pixelColor(0, 9), QColor(Qt::white));
    // Contrast leaves the middle where it is.
    QImage grey(2, 1, QImage::Format_Grayscale8);
    grey.fill(100);
    EXPECT_NEAR(qGray(XPPageEdit{.contrastPercentage = 200}.applied(grey).pixel(0, 0)), 72, 1);
    // Nonsense in a file is no edit.
    EXPECT_TRUE(
        XPPageEdit::fromSaved({{QStringLiteral("crop"), PropertyValue::Array{}},
                               {QStringLiteral("contrastPercentage"), QStringLiteral("much")}})
            .isNone());
}

TEST(PageAnalysis, SeesAnglePaperAndEmptiness)
{
    for (const double degrees : {-7.0, -2.3, 0.0, 0.7, 4.1})
        EXPECT_NEAR(XPPageAnalysis::angle(textPage(degrees)), degrees, 0.2) << degrees;
    EXPECT_EQ(XPPageAnalysis::angle(coloured(Qt::white)), 0);

    // Paper on a dark lid.
    QImage glass(1000, 1400, QImage::Format_RGB32);
    glass.fill(QColor(30, 30, 30));
    QPainter(&glass).drawImage(QRect(100, 70, 800, 1200), textPage(0));
    const QRectF paper = XPPageAnalysis::paper(glass);
    EXPECT_NEAR(paper.left(), 0.1, 0.005);
    EXPECT_NEAR(paper.top(), 0.05, 0.005);
    EXPECT_NEAR(paper.right(), 0.9, 0.005);
    EXPECT_NEAR(paper.bottom(), 1270.0 / 1400, 0.005);
    EXPECT_EQ(XPPageAnalysis::paper(textPage(0)), QRectF(0, 0, 1, 1));

    EXPECT_TRUE(XPPageAnalysis::isBlank(coloured(Qt::white)));
    EXPECT_FALSE(XPPageAnalysis::isBlank(textPage(0)));
    QImage line = textPage(0).copy();
    line.fill(Qt::white);
    QPainter(&line).fillRect(200, 250, 300, 20, Qt::black);
    EXPECT_FALSE(XPPageAnalysis::isBlank(line));
}

TEST(ScanDocument, IsFiledInPlaceOfItsPlaceholder)
{
    XPTranslations::install(QLocale(QLocale::English));
    const TestFolder folder;
    EXPECT_EQ(XPScanDocument::placeholderName(QDateTime({2024, 3, 5}, {14, 30}),
                                              QLocale(QLocale::English, QLocale::UnitedStates)),
              QStringLiteral("Scan 3.5.24 2.30 PM.pdf"));
    XPScannedPages pages(folder.path(QStringLiteral("scans")));
    XPScanDocument::Request request;
    request.folder = pages.folder();
    EXPECT_FALSE(XPScanDocument::file(request)); // nothing is there
    ASSERT_FALSE(pages.addPageImage(coloured(Qt::red)));
    ASSERT_FALSE(pages.addPageImage(coloured(Qt::white)));
    pages.markBlank(1, true);
    request.pages = pages.pages();
    request.leavesOutBlank = true;
    const auto stopped = XPScanDocument::file(request, [](double) { return false; });
    ASSERT_FALSE(stopped);
    EXPECT_EQ(pages.numberOfPages(), 2);

    ASSERT_TRUE(QDir().mkpath(XPFolders::documents() + QStringLiteral("/Filed Documents")));
    XPFiledDocuments::rebuildFiledDocsPath();
    const auto placeholder = XPScanDocument::placeholderPDFPath(pages.folder());
    ASSERT_TRUE(placeholder);
    EXPECT_EQ(XPScanDocument::placeholderPDFPath(pages.folder()).valueOr({}), *placeholder);
    const auto filed = XPScanDocument::file(request);
    ASSERT_TRUE(filed) << filed.error().message.toStdString();
    EXPECT_FALSE(QFile::exists(*placeholder));
    EXPECT_GT(QFile(*filed).size(), 0);
    EXPECT_TRUE(XPFiledDocuments::pathIsInFiledDocuments(*filed));
    EXPECT_TRUE(XPFiledDocuments::isManaged(*filed));
    // A name of one's own, in a folder that has to be made.
    request.toPath = folder.path(QStringLiteral("new/mine.pdf"));
    EXPECT_EQ(XPScanDocument::file(request).valueOr({}), request.toPath);
}

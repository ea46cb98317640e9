// Makes the user guide: murn-make-guide VERSION OUT.pdf CHAPTER.md…
//
// The same chapters give the same bytes on the same machine: the date that the PDF's writer puts
// into the file is replaced.
#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QTextBlock>
#include <QTextDocument>
#include <QUrl>
#include <cstdio>

static constexpr int resolution = 300;              // dots per inch
static constexpr QMarginsF margins{20, 20, 20, 22}; // millimetres
static constexpr double bodySize = 10.5;            // points
static constexpr double footerSize = 8.5;

static int fail(const QString &message)
{
    std::fprintf(stderr, "murn-make-guide: %s\n", qPrintable(message));
    return 1;
}

static QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Each chapter begins on a page of its own; headings keep away from what is above.
static void layOut(QTextDocument &guide)
{
    bool isFirst = true;
    for (QTextBlock block = guide.begin(); block.isValid(); block = block.next()) {
        const int level = block.blockFormat().headingLevel();
        QTextCursor cursor(block);
        QTextBlockFormat format = block.blockFormat();
        format.setLineHeight(125, QTextBlockFormat::ProportionalHeight);
        if (level == 1 && !isFirst)
            format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
        if (level > 1)
            format.setTopMargin(14);
        if (level == 1)
            isFirst = false;
        cursor.setBlockFormat(format);
    }
}

// Pictures are no wider than the text.
static void fitPictures(QTextDocument &guide, double width)
{
    for (QTextBlock block = guide.begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            if (!fragment.charFormat().isImageFormat())
                continue;
            QTextImageFormat format = fragment.charFormat().toImageFormat();
            format.setWidth(width);
            QTextCursor cursor(&guide);
            cursor.setPosition(fragment.position());
            cursor.setPosition(fragment.position() + fragment.length(), QTextCursor::KeepAnchor);
            cursor.setCharFormat(format);
            break;
        }
    }
}

static void paintPages(QTextDocument &guide, QPdfWriter &pdf, const QString &footer)
{
    const QRectF page(QPointF(), QSizeF(pdf.width(), pdf.height()));
    const double scale = resolution / 72.0; // the text is laid out in points
    const QSizeF points(page.width() / scale, page.height() / scale);
    guide.setPageSize(points);
    fitPictures(guide, points.width());
    QPainter painter(&pdf);
    const int pages = guide.pageCount();
    for (int number = 0; number < pages; ++number) {
        if (number > 0)
            pdf.newPage();
        painter.save();
        painter.scale(scale, scale);
        painter.save();
        painter.translate(0, -number * points.height());
        guide.drawContents(&painter, QRectF(QPointF(0, number * points.height()), points));
        painter.restore();
        QFont font = guide.defaultFont();
        font.setPointSizeF(footerSize);
        painter.setFont(font);
        painter.setPen(Qt::darkGray);
        const QRectF line(0, points.height() + 8, points.width(), 20);
        painter.drawText(line, Qt::AlignLeft, footer);
        painter.drawText(line, Qt::AlignRight, QString::number(number + 1));
        painter.restore();
    }
}

static bool make(const QString &version, const QStringList &chapters, QByteArray &bytes)
{
    QString text;
    for (const QString &chapter : chapters) {
        const QByteArray markdown = read(chapter);
        if (markdown.isEmpty())
            return false;
        text += QString::fromUtf8(markdown).replace(QStringLiteral("%VERSION%"), version) +
                QStringLiteral("\n\n");
    }
    QTextDocument guide;
    guide.setBaseUrl(QUrl::fromLocalFile(QFileInfo(chapters.first()).absolutePath() + u'/'));
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPointSizeF(bodySize);
    guide.setDefaultFont(font);
    guide.setMarkdown(text, QTextDocument::MarkdownDialectGitHub);
    layOut(guide);
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter pdf(&buffer);
    pdf.setResolution(resolution);
    pdf.setPageSize(QPageSize(QPageSize::A4));
    pdf.setPageMargins(margins, QPageLayout::Millimeter);
    pdf.setTitle(QStringLiteral("Zel Manual"));
    pdf.setCreator(QStringLiteral("Murn ") + version);
    paintPages(guide, pdf, QStringLiteral("Murn ") + version);
    return true;
}

int main(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    const QStringList words = QGuiApplication::arguments();
    if (words.size() < 4)
        return fail(QStringLiteral("takes VERSION OUT.pdf CHAPTER.md…"));
    QByteArray bytes;
    if (!make(words[1], words.mid(3), bytes))
        return fail(QStringLiteral("a chapter cannot be read"));
    // Of the same length, as the file's table of contents counts bytes.
    for (qsizetype at = bytes.indexOf("/CreationDate (D:"); at >= 0;
         at = bytes.indexOf("/CreationDate (D:", at + 1)) {
        for (qsizetype digit = at + 17; digit < bytes.size() && bytes[digit] != ')'; ++digit) {
            if (bytes[digit] >= '0' && bytes[digit] <= '9')
                bytes[digit] = digit < at + 21 ? "2000"[digit - at - 17] : '1';
        }
    }
    QFile out(words[2]);
    if (!out.open(QIODevice::WriteOnly) || out.write(bytes) != bytes.size())
        return fail(out.errorString());
    return 0;
}

#include "TextPage.h"

#include "DocumentSource.h"
#include "DocumentTable.h"

#include <QFontDatabase>
#include <QImage>
#include <QPainter>
#include <QRegularExpression>
#include <QTextLayout>
#include <algorithm>
#include <cmath>

namespace {

// Paper of ISO 216 (A4) in points of 1/72 inch; everything is laid out in these and scaled.
constexpr double paperWidth = 595;
constexpr double paperHeight = 842;
constexpr double margin = 56;
constexpr double bodySize = 12;
constexpr double titleSize = 24;
constexpr double headingSize = 16;
constexpr double paragraphGap = 5;
constexpr int mostColumns = 12;
constexpr QRgb ink = 0xFF26261F;
constexpr QRgb faint = 0xFFC9C6BE;

QFont font(double size, bool bold, bool fixed)
{
    QFont result = fixed ? QFontDatabase::systemFont(QFontDatabase::FixedFont) : QFont();
    result.setPixelSize(static_cast<int>(size));
    result.setBold(bold);
    return result;
}

class Page
{
public:
    explicit Page(QPainter &painter) : m_painter(painter) {}

    bool isFull() const { return m_y >= paperHeight - margin; }

    void paragraph(const QString &text, const QFont &font, double gap)
    {
        QTextLayout layout(text, font);
        QTextOption option;
        option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        layout.setTextOption(option);
        layout.beginLayout();
        while (!isFull()) {
            QTextLine line = layout.createLine();
            if (!line.isValid())
                break;
            line.setLineWidth(paperWidth - 2 * margin);
            line.setPosition({margin, m_y});
            m_y += line.height();
        }
        layout.endLayout();
        layout.draw(&m_painter, {});
        m_y += gap;
    }

    // Rows of cells under each other, with a hairline below each.
    void table(const QList<QStringList> &rows)
    {
        const QFont plain = font(bodySize - 1, false, false);
        const QFontMetricsF metrics(plain);
        std::vector<double> widths;
        for (const QStringList &row : rows) {
            widths.resize(std::max(widths.size(), static_cast<size_t>(row.size())), 24);
            for (size_t i = 0; i < static_cast<size_t>(row.size()); ++i)
                widths[i] = std::max(
                    widths[i], std::min(metrics.horizontalAdvance(row[qsizetype(i)]), 150.0) + 10);
        }
        m_painter.setFont(plain);
        for (const QStringList &row : rows) {
            double x = margin;
            for (size_t i = 0; i < static_cast<size_t>(row.size()) && x < paperWidth - margin;
                 ++i) {
                const QRectF cell(x, m_y, std::min(widths[i], paperWidth - margin - x),
                                  metrics.height() + 6);
                m_painter.setPen(QColor(ink));
                m_painter.drawText(
                    cell.adjusted(2, 0, -6, 0), Qt::AlignVCenter | Qt::TextSingleLine,
                    metrics.elidedText(row[qsizetype(i)], Qt::ElideRight, cell.width() - 8));
                x += widths[i];
            }
            m_y += metrics.height() + 6;
            m_painter.setPen(QColor(faint));
            m_painter.drawLine(QPointF(margin, m_y),
                               QPointF(std::min(x, paperWidth - margin), m_y));
            if (isFull())
                return;
        }
    }

private:
    QPainter &m_painter;
    double m_y = margin;
};

void fill(Page &page, const DocumentSource &source, const QString &title, const QStringList &lines)
{
    if (!title.isEmpty())
        page.paragraph(title.left(300), font(titleSize, true, false), 14);
    const bool isSeparated = source.conformsTo(u"public.comma-separated-values-text");
    if (const auto separator = DocumentTable::separatorOf(lines, isSeparated)) {
        QList<QStringList> rows;
        for (const QString &line : lines)
            rows.append(DocumentTable::cellsOf(line, *separator, mostColumns));
        page.table(rows);
        return;
    }
    const bool isCode = source.conformsTo(u"public.source-code");
    const QFont body = font(isCode ? bodySize - 2 : bodySize, false, isCode);
    for (const QString &line : lines) {
        if (page.isFull())
            return;
        const auto level = line.indexOf(u' '); // of a heading in Markdown
        if (!isCode && level > 0 && level <= 6 && line.startsWith(QString(level, u'#')))
            page.paragraph(line.mid(level + 1), font(headingSize, true, false), paragraphGap);
        else
            page.paragraph(line, body, isCode ? 0 : paragraphGap);
    }
}

} // namespace

void TextPage::prepare()
{
    QImage image(8, 8, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    for (const bool fixed : {false, true}) {
        for (const bool bold : {false, true}) {
            painter.setFont(font(bodySize, bold, fixed));
            painter.drawText(QPointF(0, 8), QStringLiteral("Aa\u00e9"));
        }
    }
}

bool TextPage::draw(const DocumentSource &source, const DocumentAnswer &answer, int pixels,
                    QImage &image)
{
    QStringList lines;
    for (const QString &line : QString::fromUtf8(answer.text.utf8()).split(u'\n')) {
        if (!line.trimmed().isEmpty())
            lines.append(line);
    }
    // What is written on pages may have an empty one; a sound has none.
    const bool hasPages =
        source.conformsTo(u"public.text") || source.conformsTo(u"public.composite-content");
    if (lines.isEmpty() && answer.title.isEmpty() && (answer.failure || !hasPages))
        return false;
    // The title stands above, also where it is the first heading of a Markdown text.
    const qsizetype words =
        lines.isEmpty() ? 0 : lines.first().indexOf(QRegularExpression(QStringLiteral("[^# ]")));
    if (!lines.isEmpty() && words >= 0 && lines.first().mid(words).trimmed() == answer.title)
        lines.removeFirst();
    const double scale = pixels / paperHeight;
    image = QImage(std::max(1, static_cast<int>(std::lround(paperWidth * scale))), pixels,
                   QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return false;
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter.scale(scale, scale);
    painter.setPen(QColor(ink));
    Page page(painter);
    fill(page, source, answer.title, lines);
    return true;
}

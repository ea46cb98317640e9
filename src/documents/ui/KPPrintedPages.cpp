#include "KPPrintedPages.h"

#include "ImportPagePicture.h"
#include "KPContentTypes.h"
#include "XPPath.h"

#include <QAbstractTextDocumentLayout>
#include <QFile>
#include <QFontDatabase>
#include <QPainter>
#include <QPrinter>
#include <QTextDocument>
#include <memory>

static constexpr int pixelsOfPaper = 3508; // A4 (ISO 216) at 300 dots an inch
static constexpr int pixelsOfPreview = 900;
static constexpr int pointsOfText = 10;

using Kind = XPError::Kind;

// --- Making

std::shared_ptr<KPPrintedPages> KPPrintedPages::make(const QStringList &paths,
                                                     const XPProgress::Task &task)
{
    auto made = std::make_shared<KPPrintedPages>();
    if (!made->m_folder.isValid()) {
        made->m_failures.append(XPError::make(Kind::NoSpace, made->m_folder.errorString()));
        return made;
    }
    for (const QString &path : paths) {
        if (task->isStopAsked || made->m_isCutOff)
            break;
        made->add(path, task);
        ++task->done;
    }
    return made;
}

bool KPPrintedPages::addPicture(const QImage &image)
{
    const QString stem = m_folder.filePath(QString::number(m_sheets.size()));
    const Picture picture{stem + QStringLiteral(".png"), stem + QStringLiteral(".jpg"),
                          image.size()};
    // Paper is white where a picture lets it through.
    QImage opaque(image.size(), QImage::Format_RGB32);
    opaque.fill(Qt::white);
    QPainter(&opaque).drawImage(0, 0, image);
    const QImage small = opaque.scaled(QSize(pixelsOfPreview, pixelsOfPreview), Qt::KeepAspectRatio,
                                       Qt::SmoothTransformation);
    constexpr int fast = 80; // little compression: it lies there for minutes
    if (!opaque.save(picture.large, "PNG", fast) || !small.save(picture.small, "JPG", 85))
        return false;
    m_sheets.append(picture);
    return true;
}

void KPPrintedPages::add(const QString &path, const XPProgress::Task &task)
{
    ImportedDocument document(path);
    const auto answer = document.read();
    const bool isImage =
        KPContentTypes::conformsTo(document.type(), QStringLiteral("public.image"));
    if (!answer && !isImage) {
        m_failures.append(answer.error());
        m_failures.last().path = path;
        return;
    }
    // What has neither pages nor a picture of its own is printed as its words.
    if (!isImage && answer->pages == 0 && !answer->text.isEmpty()) {
        m_sheets.append(Text{XPPath::printable(XPPath::fileName(path)),
                             QString::fromUtf8(answer->text.utf8())});
        return;
    }
    const int pages = answer ? std::max(1, answer->pages) : 1;
    for (int page = 1; page <= pages && !task->isStopAsked; ++page) {
        if (m_sheets.size() >= mostPages) {
            m_isCutOff = true;
            return;
        }
        const auto image = document.picture(page, pixelsOfPaper);
        if (image && addPicture(*image))
            continue;
        m_failures.append(image ? XPError::make(Kind::NoSpace, qtTrId("KPPrintNoSpace"))
                                : image.error());
        m_failures.last().path = path;
        return;
    }
}

// --- Painting

namespace {

// Pages as they come, of which some are wanted.
class Paper
{
public:
    Paper(QPrinter *printer, bool takesAll)
        : m_printer(printer), m_takesAll(takesAll), m_painter(printer),
          m_isTaking(m_painter.isActive())
    {
    }
    // Null: this page is not wanted.
    QPainter *next()
    {
        ++m_number;
        if (!isWanted())
            return nullptr;
        if (std::exchange(m_isUsed, true))
            m_isTaking = m_isTaking && m_printer->newPage();
        return m_isTaking ? &m_painter : nullptr;
    }
    bool isTaking() const { return m_isTaking; }
    QRectF area() const { return m_painter.viewport(); }

private:
    bool isWanted() const
    {
        if (m_takesAll || m_printer->printRange() != QPrinter::PageRange)
            return true;
        const QPageRanges ranges = m_printer->pageRanges();
        if (!ranges.isEmpty())
            return ranges.contains(m_number);
        return m_number >= m_printer->fromPage() &&
               (m_printer->toPage() == 0 || m_number <= m_printer->toPage());
    }

    QPrinter *const m_printer;
    const bool m_takesAll;
    QPainter m_painter;
    bool m_isTaking;
    int m_number = 0;
    bool m_isUsed = false;
};

} // namespace

// As large as the paper lets it, turned where it lies across.
static void drawPicture(QPainter &painter, const QRectF &area, const QString &file, QSize size)
{
    const QImage image(file);
    if (image.isNull())
        return;
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    QRectF room(QPointF(), area.size());
    if ((size.width() > size.height()) != (area.width() > area.height())) {
        painter.translate(area.width(), 0);
        painter.rotate(90);
        room = room.transposed();
    }
    QRectF place(QPointF(), QSizeF(size).scaled(room.size(), Qt::KeepAspectRatio));
    place.moveCenter(room.center());
    painter.drawImage(place, image);
    painter.restore();
}

static void drawText(Paper &paper, QPrinter *printer, const QString &title, const QString &text)
{
    QTextDocument document;
    document.documentLayout()->setPaintDevice(printer);
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSize(pointsOfText);
    document.setDefaultFont(font);
    document.setDocumentMargin(0);
    document.setPlainText(title + QStringLiteral("\n\n") + text);
    const QSizeF size = paper.area().size();
    document.setPageSize(size);
    const int pages = document.pageCount();
    for (int page = 0; page < pages; ++page) {
        QPainter *painter = paper.next();
        if (!painter)
            continue;
        painter->save();
        painter->translate(0, -page * size.height());
        document.drawContents(painter, QRectF(QPointF(0, page * size.height()), size));
        painter->restore();
    }
}

bool KPPrintedPages::drawSheets(QPrinter *printer, bool isPreview,
                                const XPProgress::Task &task) const
{
    Paper paper(printer, isPreview);
    for (const Sheet &sheet : m_sheets) {
        if (!paper.isTaking())
            break;
        if (task->isStopAsked) {
            printer->abort();
            return true;
        }
        if (const auto *picture = std::get_if<Picture>(&sheet)) {
            if (QPainter *painter = paper.next())
                drawPicture(*painter, paper.area(), isPreview ? picture->small : picture->large,
                            picture->size);
        } else if (const auto *text = std::get_if<Text>(&sheet)) {
            drawText(paper, printer, text->title, text->text);
        }
        ++task->done;
    }
    return paper.isTaking();
}

bool KPPrintedPages::paint(QPrinter *printer, bool isPreview, const XPProgress::Task &task) const
{
    const bool isTaken = drawSheets(printer, isPreview, task);
    // A file with a part of the pages would pass for the whole: nothing gives it up.
    const QString file = printer->outputFileName();
    if (isTaken && task->isStopAsked && task->done < count() && !file.isEmpty())
        QFile::remove(file);
    return isTaken;
}

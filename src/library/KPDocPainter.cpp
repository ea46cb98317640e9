#include "KPDocPainter.h"

#include "KPDoc.h"
#include "KPDocIcons.h"
#include "KPElidedName.h"
#include "KPFileType.h"
#include "KPQuickLook.h"
#include "KPTagChips.h"
#include "UserDefaults.h"
#include "XPPath.h"
#include "XPStars.h"

#include <QFontInfo>
#include <QPainter>
#include <QPainterPath>
#include <cmath>

static constexpr double usualFontSize = 13; // of texts, in pixels: the scale is 1 then
static constexpr double iconPart = 0.8;     // of the square
static constexpr double textPadding = 6;    // between a frame and what is written in it
static constexpr int tagLine = 1;           // a line of tags was drawn

KPDocPainter::KPDocPainter(const KPQuickLook &pictures, const QPalette &palette, const QFont &font)
    : m_pictures(pictures), m_colours(palette)
{
    update(palette, font);
}

// A user who wants larger texts gets them; the usual sizes of desktops make no difference.
static double scaleOf(const QFont &font)
{
    const double scale = QFontInfo(font).pixelSize() / usualFontSize;
    return scale > 0.8 && scale < 1.2 ? 1 : scale;
}

void KPDocPainter::update(const QPalette &palette, const QFont &font)
{
    const UserDefaults &defaults = UserDefaults::standard();
    m_showsTitle = defaults.boolValue(QStringLiteral("KPShowTitle"));
    m_showsTags = defaults.boolValue(QStringLiteral("KPShowTags"));
    m_showsRating = defaults.boolValue(QStringLiteral("KPShowRating"));
    m_colours = KPLibraryColours(palette);
    m_font = font;
    m_scale = scaleOf(font);
    setThumbnailWidth(m_width);
}

void KPDocPainter::setThumbnailWidth(double width)
{
    m_width = width;
    const double size = KPDocsGeometry::labelFontSize(width) * m_scale;
    m_titleFont = m_tagFont = m_font;
    m_titleFont.setPixelSize(static_cast<int>(std::lround(size)));
    m_tagFont.setPixelSize(static_cast<int>(std::lround(size - 1)));
}

QRectF KPDocPainter::line(const QRectF &doc, const QRectF &frame, int number) const
{
    const int lines = textLines();
    const double height = KPDocsGeometry::textRoom(m_width, lines, m_scale) / std::max(1, lines);
    const double top = doc.bottom() - height * (lines - number);
    return {frame.left() + textPadding, top, frame.width() - 2 * textPadding, height};
}

QRectF KPDocPainter::titleRect(const QRectF &doc, const QRectF &frame) const
{
    return m_showsTitle ? line(doc, frame, 0) : QRectF();
}

void KPDocPainter::paint(QPainter &painter, const QRectF &doc, const QRectF &frame,
                         const KPDoc &record, const Look &look) const
{
    paintFrame(painter, frame, look);
    const QRectF square(doc.topLeft(), QSizeF(doc.width(), doc.width()));
    const QRectF picture = paintPicture(painter, square, record);
    if (record.isFlagged())
        paintFlag(painter, picture);
    int number = 0;
    if (m_showsTitle) {
        if (!look.isNameEdited)
            paintTitle(painter, line(doc, frame, number), record);
        ++number;
    }
    if (m_showsTags)
        number += paintTags(painter, line(doc, frame, number), record);
    if (const double rating = record.rating(); m_showsRating && rating > 0)
        paintStars(painter, line(doc, frame, number), rating);
}

void KPDocPainter::paintFrame(QPainter &painter, const QRectF &frame, const Look &look) const
{
    if (!look.isSelected && !look.isHovered && !look.isCurrent)
        return;
    static constexpr double radius = 8;
    static constexpr double ring = 1.5;
    const bool hasRing = look.isSelected || look.isCurrent;
    painter.setBrush(look.isSelected  ? m_colours.selection
                     : look.isHovered ? m_colours.hover
                                      : QColor(Qt::transparent));
    painter.setPen(hasRing ? QPen(m_colours.accent, ring) : QPen(Qt::NoPen));
    painter.drawRoundedRect(frame.adjusted(1, 1, -1, -1), radius, radius);
}

// Where a picture of that size stands: on the base line, in the middle, at whole points.
static QRectF standing(const QRectF &square, const QSizeF &size)
{
    return {std::round(square.center().x() - size.width() / 2),
            std::round(square.bottom() - size.height()), size.width(), size.height()};
}

void KPDocPainter::paintShadow(QPainter &painter, const QRectF &picture) const
{
    // A few soft rings instead of a blur: 0 1 3.
    QColor colour = m_colours.shadow;
    colour.setAlphaF(colour.alphaF() / 4);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    for (const double spread : {0.5, 1.25, 2.25})
        painter.drawRoundedRect(picture.adjusted(-spread, 1 - spread, spread, 1 + spread),
                                2 + spread, 2 + spread);
}

QRectF KPDocPainter::pictureRect(const QRectF &square, const KPDoc &record, double ratio) const
{
    const KPQuickLook::Look look = m_pictures.look(record);
    if (look.picture.isNull())
        return {};
    QSizeF size = QSizeF(look.picture.size()) / ratio;
    // A small original stays as it is; a picture for another zoom stands in for the right one.
    const bool isWhole = std::max(look.picture.width(), look.picture.height()) < look.side;
    if (!isWhole || size.width() > square.width() || size.height() > square.height())
        size.scale(square.size(), Qt::KeepAspectRatio);
    return standing(square, size);
}

QRectF KPDocPainter::paintPicture(QPainter &painter, const QRectF &square,
                                  const KPDoc &record) const
{
    const KPQuickLook::Look look = m_pictures.look(record);
    if (look.picture.isNull()) {
        const QString uti =
            look.uti.isEmpty()
                ? KPFileType::preferredUTIForExtension(XPPath::extension(record.fsName()))
                : look.uti;
        const double side = std::round(square.width() * iconPart);
        const QRectF rect = standing(square, {side, side});
        KPDocIcons::forUTI(uti).paint(&painter, rect.toRect());
        return rect;
    }
    const QRectF rect = pictureRect(square, record, painter.device()->devicePixelRatioF());
    if (!look.picture.hasAlphaChannel())
        paintShadow(painter, rect);
    m_pictures.draw(painter, rect, record, m_colours.line);
    return rect;
}

void KPDocPainter::paintFlag(QPainter &painter, const QRectF &picture) const
{
    const double side = std::clamp(m_width / 10, 10.0, 20.0);
    const QPointF at = picture.topRight() + QPointF(-side * 0.6, -side * 0.25);
    QPainterPath cloth(at);
    cloth.lineTo(at + QPointF(side, side * 0.1));
    cloth.lineTo(at + QPointF(side * 0.72, side * 0.38));
    cloth.lineTo(at + QPointF(side, side * 0.66));
    cloth.lineTo(at + QPointF(0, side * 0.66));
    cloth.closeSubpath();
    painter.setPen(
        QPen(m_colours.flag, std::max(1.4, side / 10), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(m_colours.flag);
    painter.drawPath(cloth);
    painter.drawLine(at, at + QPointF(0, side * 1.25));
}

void KPDocPainter::paintTitle(QPainter &painter, const QRectF &line, const KPDoc &record) const
{
    const QString name = XPPath::printable(record.fsDisplayName());
    const QFontMetrics metrics(m_titleFont);
    painter.setFont(m_titleFont);
    painter.setPen(m_colours.text);
    painter.setLayoutDirection(name.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    painter.drawText(line, Qt::AlignCenter | Qt::TextSingleLine,
                     kpElidedName(name, metrics, static_cast<int>(line.width())));
}

int KPDocPainter::paintTags(QPainter &painter, const QRectF &line, const KPDoc &record) const
{
    painter.setFont(m_tagFont);
    const QFontMetrics metrics(m_tagFont);
    if (record.unreadableMetaData()) {
        painter.setPen(m_colours.muted);
        painter.drawText(line, Qt::AlignCenter | Qt::TextSingleLine,
                         metrics.elidedText(qtTrId("KPTagsUnreadable"), Qt::ElideRight,
                                            static_cast<int>(line.width())));
        return tagLine;
    }
    QStringList tags;
    for (const KPTagName *tag : record.tagNamesOfTypeUserEntered())
        tags.append(XPPath::printable(tag->displayName()));
    if (tags.isEmpty())
        return 0;
    KPTagChips::paint(&painter, KPTagChips::layout(tags, line.toRect(), metrics),
                      m_colours.palette);
    return tagLine;
}

void KPDocPainter::paintStars(QPainter &painter, const QRectF &line, double rating) const
{
    const double side = std::min(line.height() - 2, m_titleFont.pixelSize() + 1.0);
    const double width = XPStars::width(side, static_cast<int>(std::ceil(rating)));
    XPStars::paint(
        &painter,
        {line.center().x() - width / 2, line.top() + (line.height() - side) / 2, width, side},
        rating, m_colours.star, false);
}

// KPDocsView: what is drawn.
#include "KPArrangedDocs.h"
#include "KPBadgeCache.h"
#include "KPDocIcons.h"
#include "KPDocsView.h"
#include "KPEmptyPlace.h"
#include "KPNameField.h"
#include "KPQuickLook.h"
#include "KPResultGroups.h"
#include "XPPath.h"

#include <QLocale>
#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScrollBar>
#include <cmath>

void KPDocsView::paintEvent(QPaintEvent *event)
{
    QPainter painter(viewport());
    painter.fillRect(event->rect(), m_painter.colours().background);
    if (m_keepsStill && m_keepsStill())
        return;
    if (m_docs.count() == 0)
        return; // the empty place lies above
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform |
                           QPainter::TextAntialiasing);
    painter.translate(0, -offset());
    const QRectF rect = QRectF(event->rect()).translated(0, offset());
    paintDocs(painter, rect);
    paintHeaders(painter, rect);
    // With nothing selected no document shows that the keyboard is here.
    if (m_cameByKeyboard && m_docs.selection().isEmpty()) {
        painter.setPen(QPen(m_painter.colours().accent, 2));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(QRectF(viewport()->rect()).translated(0, offset()).adjusted(1, 1, -1, -1));
    }
    if (m_isDragSelecting) {
        static constexpr float bandWhite = 0.6F;
        static constexpr float bandAlpha = 0.3F;
        painter.setPen(QPen(m_painter.colours().accent, 1));
        painter.setBrush(QColor::fromRgbF(bandWhite, bandWhite, bandWhite, bandAlpha));
        painter.drawRect(band().adjusted(0.5, 0.5, -0.5, -0.5));
    }
}

void KPDocsView::paintDocs(QPainter &painter, const QRectF &rect) const
{
    // Frames reach into the gaps.
    const double gap = m_geometry.thumbnailGap();
    const QRectF touched = rect.adjusted(-gap, -gap, gap, gap);
    if (!m_geometry.isGrouped()) {
        const KPDocsGeometry::Range range = m_geometry.rangeToDraw(touched);
        for (qsizetype item = range.first; item <= range.last; ++item)
            paintItem(painter, item);
        return;
    }
    for (const KPDocsGeometry::Range &run : m_geometry.itemsIn(touched)) {
        for (qsizetype item = run.first; item <= run.last; ++item)
            paintItem(painter, item);
    }
}

void KPDocsView::paintItem(QPainter &painter, qsizetype item) const
{
    const auto row = static_cast<int>(item);
    const KPDoc &doc = *m_docs.at(row);
    if (doc.isGone())
        return;
    const KPDocPainter::Look look{
        .isSelected = m_docs.selection().isSelected(row),
        .isHovered = row == m_hovered,
        .isCurrent = row == m_docs.selection().current() && hasFocus(),
        .isNameEdited = m_nameField->doc() == &doc,
    };
    m_painter.paint(painter, m_geometry.docRect(item), m_geometry.frameRect(item), doc, look);
}

static void paintTwist(QPainter &painter, const QPointF &centre, bool isOpen, const QColor &colour)
{
    static constexpr double arm = 4;
    QPainterPath path;
    if (isOpen) {
        path.moveTo(centre + QPointF(-arm, -arm / 2));
        path.lineTo(centre + QPointF(0, arm / 2));
        path.lineTo(centre + QPointF(arm, -arm / 2));
    } else {
        path.moveTo(centre + QPointF(-arm / 2, -arm));
        path.lineTo(centre + QPointF(arm / 2, 0));
        path.lineTo(centre + QPointF(-arm / 2, arm));
    }
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colour, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(path);
}

void KPDocsView::paintHeader(QPainter &painter, int number, double top) const
{
    static constexpr double margin = 12;
    static constexpr double twist = 20;
    const KPLibraryColours &colours = m_painter.colours();
    const KPDocsGeometry::Group &group = m_geometry.groups()[static_cast<size_t>(number)];
    const QRectF rect(0, top, viewport()->width(), KPDocsGeometry::headerHeight);
    painter.fillRect(rect, colours.background);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(QPen(colours.line, 1));
    painter.drawLine(rect.bottomLeft() - QPointF(0, 1), rect.bottomRight() - QPointF(0, 1));
    painter.setRenderHint(QPainter::Antialiasing);
    paintTwist(painter, {margin + twist / 2 - 4, rect.center().y()}, group.isOpen, colours.muted);
    QFont bold = font();
    bold.setWeight(QFont::DemiBold);
    const QFontMetrics metrics(bold);
    const QString count = QLocale().toString(group.count);
    QRectF text = rect.adjusted(margin + twist, 0, -margin, 0);
    const QString name =
        XPPath::printable(m_docs.groups()->runs[static_cast<size_t>(number)].group->name);
    const int room = static_cast<int>(text.width()) - fontMetrics().horizontalAdvance(count) - 12;
    const QString shown = metrics.elidedText(name, Qt::ElideMiddle, room);
    painter.setFont(bold);
    painter.setPen(colours.text);
    painter.setLayoutDirection(Qt::LeftToRight);
    painter.drawText(text, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, shown);
    text.setLeft(text.left() + metrics.horizontalAdvance(shown) + 8);
    painter.setFont(font());
    painter.setPen(colours.muted);
    painter.drawText(text, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, count);
}

// The header of what is at the top of the view stays there, until the next one pushes it out.
void KPDocsView::paintHeaders(QPainter &painter, const QRectF &rect) const
{
    if (!m_geometry.isGrouped())
        return;
    const int top = m_geometry.groupAt(offset());
    const auto count = static_cast<int>(m_geometry.groups().size());
    for (int number = std::max(top + 1, m_geometry.groupAt(rect.top())); number < count; ++number) {
        const QRectF header = m_geometry.headerRect(number);
        if (header.top() > rect.bottom())
            break;
        paintHeader(painter, number, header.top());
    }
    const KPDocsGeometry::Group &first = m_geometry.groups()[static_cast<size_t>(top)];
    const double lowest = first.top + first.height - KPDocsGeometry::headerHeight;
    paintHeader(painter, top, std::min<double>(std::max<double>(offset(), first.top), lowest));
}

QPixmap KPDocsView::dragPicture(const KPDoc &doc, qsizetype count) const
{
    static constexpr int side = 96;
    static constexpr int badgeHeight = 22;
    static constexpr int most = 3; // sheets of a stack
    const double ratio = devicePixelRatioF();
    QPixmap pixmap(QSize(side + 16, side + 16) * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    for (int sheet = static_cast<int>(std::min<qsizetype>(count, most)) - 1; sheet > 0; --sheet) {
        painter.setPen(QPen(m_painter.colours().line, 1));
        painter.setBrush(m_painter.colours().background);
        painter.drawRoundedRect(QRectF(16 - sheet * 6, 16 - sheet * 6, side * 0.72, side), 2, 2);
    }
    m_painter.paintPicture(painter, QRectF(8, 12, side, side), doc);
    if (count > 1) {
        const QImage badge = KPBadgeCache::instance().numberBadge(
            count, static_cast<int>(std::lround(badgeHeight * ratio)));
        const QSizeF size = QSizeF(badge.size()) / ratio;
        painter.drawImage(
            QRectF(QPointF(side + 16 - size.width(), side + 16 - size.height()), size), badge);
    }
    return pixmap;
}

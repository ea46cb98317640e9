#include "XPTextCloudView.h"

#include "UserDefaults.h"
#include "XPPath.h"

#include <QFontInfo>
#include <QFontMetricsF>
#include <QPainter>
#include <QResizeEvent>
#include <cmath>

static constexpr int measuredAt = 100; // pixels
static constexpr double ordinaryFont = 13;

void XPTextCloudFonts::setFont(const QFont &font, double dotsPerInch)
{
    m_font = font;
    m_font.setHintingPreference(QFont::PreferNoHinting);
    m_pointsAPixel = 72 / dotsPerInch;
    m_scale = std::max(1.0, QFontInfo(font).pixelSize() / (ordinaryFont + 1));
    QFont measured = m_font;
    measured.setPixelSize(measuredAt);
    const QFontMetricsF metrics(measured);
    m_ascent = m_scale * metrics.ascent() / measuredAt;
    m_descent = m_scale * metrics.descent() / measuredAt;
    m_widths.clear();
}

QFont XPTextCloudFonts::font(double size) const
{
    QFont font = m_font;
    font.setPointSizeF(size * m_scale * m_pointsAPixel);
    return font;
}

double XPTextCloudFonts::width(const QString &text, double size) const
{
    const auto known = m_widths.constFind(text);
    if (known != m_widths.constEnd())
        return *known * size;
    QFont measured = m_font;
    measured.setPixelSize(measuredAt);
    const double width =
        m_scale * QFontMetricsF(measured).horizontalAdvance(XPPath::printable(text)) / measuredAt;
    m_widths.insert(text, width);
    return width * size;
}

XPTextCloudView::XPTextCloudView(XPCloudViewDelegate *delegate, QWidget *parent)
    : XPCloudView(delegate, parent)
{
    takeFont();
}

void XPTextCloudView::takeFont()
{
    m_fonts.setFont(font(), logicalDpiY());
    m_layout.forgetSizes();
    m_layout.layOut();
    update();
}

static bool setting(const char *key)
{
    return UserDefaults::standard().boolValue(QLatin1String(key));
}

void XPTextCloudView::setItems(const QList<XPCloudItem> &items)
{
    const bool single = setting("XPDrawCloudItemsSingleColumn");
    m_black = setting("XPDrawCloudItemsBlack");
    if (items != m_layout.drawnItems() || single != m_layout.oneWordPerLine()) {
        m_layout.setOneWordPerLine(single);
        m_layout.setItems(items);
        m_layout.layOut();
        itemsChanged();
    }
    update();
}

XPCloudLayout XPTextCloudView::layoutForMeasuring() const
{
    XPCloudLayout layout(&m_fonts);
    layout.setOneWordPerLine(setting("XPDrawCloudItemsSingleColumn"));
    layout.setViewWidth(width());
    return layout;
}

std::optional<qsizetype> XPTextCloudView::pointToItem(QPointF point) const
{
    return m_layout.pointToItem(point);
}

QSize XPTextCloudView::minimumSizeHint() const
{
    return {40, static_cast<int>(std::ceil(m_layout.lineHeight()))};
}

void XPTextCloudView::resizeEvent(QResizeEvent *event)
{
    m_layout.setViewWidth(event->size().width());
    m_layout.layOut();
    XPCloudView::resizeEvent(event);
}

void XPTextCloudView::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange)
        takeFont();
    XPCloudView::changeEvent(event);
}

QColor XPTextCloudView::colourOf(qsizetype item) const
{
    const XPCloudItem &word = drawnItems()[item];
    if (word.clickRemoves)
        return palette().color(QPalette::HighlightedText);
    const KPCloudColours::Look look{m_layout.relativeRelevance(word),
                                    m_black || dropTarget() == item, word.count <= 0,
                                    bestMatch().is(word)};
    return KPCloudColours::word(look, m_colours, palette().color(QPalette::Text),
                                palette().color(backgroundRole()));
}

void XPTextCloudView::paintItem(QPainter &painter, qsizetype item) const
{
    const XPCloudItem &word = drawnItems()[item];
    const QRectF rect = m_layout.rects()[item];
    const bool isTarget = dropTarget() == item;
    const QColor accent = palette().color(QPalette::Highlight);
    if (word.clickRemoves || isTarget) {
        const QRectF frame = isTarget && !word.clickRemoves ? rect.adjusted(-5, 0, 5, 0) : rect;
        QColor fill = accent;
        fill.setAlphaF(word.clickRemoves ? 1.0F : 0.3F);
        painter.setPen(Qt::NoPen);
        painter.setBrush(fill);
        painter.drawRoundedRect(frame, 6, 6);
    }
    if (focusedItem() == item) {
        painter.setPen(QPen(accent, 1.5));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(rect.adjusted(-2.5, -0.5, 2.5, 0.5), 6, 6);
    }
    QFont font = m_fonts.font(m_layout.fontSize(word));
    font.setUnderline(hoveredItem() == item);
    // Never by colour alone.
    if (!word.clickRemoves && bestMatch().is(word))
        font.setBold(true);
    painter.setFont(font);
    painter.setPen(colourOf(item));
    const double inset = word.clickRemoves ? XPCloudLayout::selectedInset : 0;
    const double room = width() - XPCloudLayout::leftEdge - rect.left() - 2 * inset;
    painter.drawText(QPointF(rect.left() + inset, m_layout.baseLine(item)),
                     QFontMetricsF(font).elidedText(XPPath::printable(word.itemDisplayName(true)),
                                                    Qt::ElideMiddle, room));
}

void XPTextCloudView::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    for (qsizetype item = 0; item < m_layout.rects().size(); ++item) {
        if (event->region().intersects(
                m_layout.rects()[item].adjusted(-6, -2, 6, 2).toAlignedRect()))
            paintItem(painter, item);
    }
}

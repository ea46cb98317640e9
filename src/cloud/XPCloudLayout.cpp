#include "XPCloudLayout.h"

#include <algorithm>
#include <cmath>

void XPCloudLayout::setItems(const QList<XPCloudItem> &items)
{
    m_items = items;
    m_sizes.clear();
    m_rects.clear();
    m_baseLines.clear();
    m_minRelevance = 1e6;
    m_maxRelevance = -1e6;
    for (const XPCloudItem &item : items) {
        m_minRelevance = std::min(m_minRelevance, item.count);
        m_maxRelevance = std::max(m_maxRelevance, item.count);
    }
}

void XPCloudLayout::setOneWordPerLine(bool on)
{
    if (std::exchange(m_oneWordPerLine, on) != on)
        m_sizes.clear();
}

double XPCloudLayout::relativeRelevance(const XPCloudItem &item) const
{
    const double range = m_maxRelevance - m_minRelevance;
    if (range < 0.01)
        return 0.3;
    return std::sqrt(std::clamp((item.count - m_minRelevance) / range, 0.0, 1.0));
}

double XPCloudLayout::fontSize(const XPCloudItem &item) const
{
    if (item.clickRemoves)
        return selectedFontSize;
    const double relevance = relativeRelevance(item);
    return minFontSize() * (1 - relevance) + 0.01 + maxFontSize * relevance;
}

QSizeF XPCloudLayout::itemSize(const XPCloudItem &item) const
{
    const double size = fontSize(item);
    const QSizeF text(m_fonts->width(item.itemDisplayName(true), size),
                      m_fonts->ascent(size) + m_fonts->descent(size));
    return item.clickRemoves ? text + QSizeF(2 * selectedInset, 2) : text;
}

QSizeF XPCloudLayout::cachedSize(qsizetype index) const
{
    if (m_sizes.size() != m_items.size()) {
        m_sizes.clear();
        m_sizes.reserve(m_items.size());
        for (const XPCloudItem &item : m_items)
            m_sizes.append(itemSize(item));
    }
    return m_sizes[index];
}

double XPCloudLayout::lineHeight() const
{
    return m_fonts->ascent(maxFontSize) + m_fonts->descent(maxFontSize) - 2;
}

qsizetype XPCloudLayout::buildLineStartingAtIndex(qsizetype index, QPointF base,
                                                  QList<QRectF> *rects) const
{
    constexpr qsizetype wellPast = 20;
    if (index >= m_items.size())
        return index + wellPast;
    qsizetype taken = 0;
    double width = 0;
    for (qsizetype next = index; next < m_items.size(); ++next) {
        const double wider = width + cachedSize(next).width();
        const bool fits = static_cast<double>(taken) * minimumGap + wider <= maxLineWidth();
        if (taken > 0 && (m_oneWordPerLine || !fits))
            break;
        width = wider;
        ++taken;
    }
    const bool isLast = index + taken >= m_items.size();
    double gap = taken >= 2 ? (maxLineWidth() - width) / static_cast<double>(taken - 1) : 0;
    if (isLast)
        gap = std::min(gap, 2 * minimumGap);
    double x = base.x();
    for (qsizetype item = index; rects && item < index + taken; ++item) {
        // A word wider than its line ends with it.
        const QSizeF size = cachedSize(item).boundedTo({maxLineWidth(), 1e6});
        const double above = m_fonts->ascent(fontSize(m_items[item]));
        rects->append({QPointF(x, base.y() - above - (m_items[item].clickRemoves ? 1 : 0)), size});
        x += size.width() + gap;
    }
    return index + taken;
}

qsizetype XPCloudLayout::lineCount() const
{
    qsizetype lines = 0;
    for (qsizetype index = 0; index < m_items.size(); ++lines)
        index = buildLineStartingAtIndex(index, {}, nullptr);
    return lines;
}

double XPCloudLayout::requiredHeightToFitAllTags() const
{
    if (m_items.isEmpty())
        return noItemsHeight;
    return std::ceil(lineHeight() * static_cast<double>(lineCount()) +
                     m_fonts->descent(maxFontSize));
}

void XPCloudLayout::layOut()
{
    m_rects.clear();
    m_baseLines.clear();
    QPointF base(leftEdge, lineHeight());
    for (qsizetype index = 0; index < m_items.size();) {
        index = buildLineStartingAtIndex(index, base, &m_rects);
        m_baseLines.resize(m_rects.size(), base.y());
        base.ry() += lineHeight();
    }
}

double XPCloudLayout::baseLine(qsizetype item) const
{
    return m_baseLines[item];
}

std::optional<qsizetype> XPCloudLayout::pointToItem(QPointF point) const
{
    for (qsizetype item = 0; item < m_rects.size(); ++item) {
        if (m_rects[item].contains(point))
            return item;
    }
    return {};
}

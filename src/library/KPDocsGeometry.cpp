#include "KPDocsGeometry.h"

#include <QtGlobal>
#include <algorithm>
#include <cmath>

// Between neighbours' frames.
static constexpr double betweenFrames = 4;
static constexpr double widestFrameMargin = 28;

int KPDocsGeometry::labelFontSize(double width)
{
    return width <= 100 ? 10 : width < 150 ? 11 : 12;
}

double KPDocsGeometry::textRoom(double width, int lines, double scale)
{
    return std::ceil(labelFontSize(width) * scale * 1.4 * lines);
}

double KPDocsGeometry::widthForZoom(double zoom)
{
    return std::clamp(zoom, 0.0, 1.0) * (largestWidth - smallestWidth) + smallestWidth;
}

// What is given.

void KPDocsGeometry::setRoom(const QSizeF &room)
{
    m_room = room.expandedTo({1, 1});
    m_cachedGapSize = -1;
    layOutGroups();
}

void KPDocsGeometry::setTextLines(int lines, double scale)
{
    m_textLines = lines;
    m_textScale = scale;
    layOutGroups();
}

void KPDocsGeometry::setCount(qsizetype count)
{
    m_count = count;
    m_groups.clear();
}

void KPDocsGeometry::setGroups(std::vector<Group> groups)
{
    m_groups = std::move(groups);
    m_count = 0;
    for (Group &group : m_groups) {
        group.first = m_count;
        m_count += group.count;
    }
    layOutGroups();
}

void KPDocsGeometry::layOutGroups()
{
    double top = 0;
    for (Group &group : m_groups) {
        group.top = top;
        group.height = headerHeight;
        if (group.isOpen && group.count > 0)
            group.height += static_cast<double>(rows(group.count)) * cellHeight();
        top += group.height;
    }
}

bool KPDocsGeometry::setThumbnailSize(const QSizeF &size)
{
    const QSizeF whole(std::ceil(size.width()), std::ceil(size.height()));
    if (whole == m_thumbnail)
        return false;
    m_thumbnail = whole;
    m_cachedGapSize = -1;
    layOutGroups();
    return true;
}

bool KPDocsGeometry::setThumbnailWidth(double width, bool toFit)
{
    const double most = std::max(1.0, m_room.width() - edges);
    double limited = std::min(width, most);
    if (toFit && !isGrouped())
        limited = std::min(fittedWidth(limited), most);
    return setThumbnailSize({limited, limited});
}

// The largest width with which everything is in sight; at least the one given, with which it is.
double KPDocsGeometry::fittedWidth(double width) const
{
    KPDocsGeometry tried = *this;
    const auto fits = [&](double candidate) {
        tried.setThumbnailSize({candidate, candidate});
        return tried.gridHeight() <= m_room.height();
    };
    if (!fits(width))
        return width;
    double low = smallestWidth;
    double high = largestWidth;
    double middle = low;
    while (high - low > 0.1) {
        middle = (low + high) / 2;
        (fits(middle) ? low : high) = middle;
    }
    const double fitted = std::trunc(std::max(width, middle - 1.5));
    Q_ASSERT_X(fits(fitted), "KPDocsGeometry",
               "Hmmm, why did we go to all that work if they don't fit?");
    return fitted;
}

// The cell.

QSizeF KPDocsGeometry::docRectSize() const
{
    return {m_thumbnail.width(), m_thumbnail.height() + textRoom()};
}

double KPDocsGeometry::thumbnailGap() const
{
    return std::sqrt(m_thumbnail.width()) + 10;
}

int KPDocsGeometry::numColumns() const
{
    const double gap = thumbnailGap();
    return std::max(1, static_cast<int>((m_room.width() - gap) / (m_thumbnail.width() + gap)));
}

qsizetype KPDocsGeometry::rows(qsizetype count) const
{
    const int columns = numColumns();
    return count == 0 ? 1 : (count + columns - 1) / columns;
}

double KPDocsGeometry::gapSize() const
{
    if (m_cachedGapSize < 0) {
        const int columns = numColumns();
        m_cachedGapSize =
            std::max(0.0, (m_room.width() - columns * m_thumbnail.width()) / (columns + 1));
    }
    return m_cachedGapSize;
}

double KPDocsGeometry::leftEdge() const
{
    return std::floor(gapSize());
}

// Rounded up, unless that pushes the last column out of sight.
double KPDocsGeometry::cellWidth() const
{
    const double wide = m_thumbnail.width() + std::ceil(gapSize());
    const double right = leftEdge() + (numColumns() - 1) * wide + m_thumbnail.width();
    return right > m_room.width() ? m_thumbnail.width() + std::floor(gapSize()) : wide;
}

double KPDocsGeometry::gridHeight() const
{
    if (isGrouped())
        return m_groups.back().top + m_groups.back().height;
    return static_cast<double>(numRows()) * cellHeight();
}

double KPDocsGeometry::height() const
{
    return std::max(m_room.height(), gridHeight());
}

// Documents.

QRectF KPDocsGeometry::rectAt(qsizetype index, double top) const
{
    const int columns = numColumns();
    const qsizetype row = index / columns;
    return {QPointF(leftEdge() + static_cast<double>(index % columns) * cellWidth(),
                    top + thumbnailGap() + static_cast<double>(row) * cellHeight()),
            docRectSize()};
}

QRectF KPDocsGeometry::docRect(qsizetype item) const
{
    const int group = groupOfItem(item);
    if (group < 0)
        return rectAt(item, 0);
    const Group &within = m_groups[static_cast<size_t>(group)];
    return within.isOpen ? rectAt(item - within.first, within.top + headerHeight) : QRectF();
}

QRectF KPDocsGeometry::frameRect(qsizetype item) const
{
    const QRectF rect = docRect(item);
    if (rect.isNull())
        return rect;
    const double beside =
        std::clamp((gapSize() - betweenFrames) / 2, betweenFrames, widestFrameMargin);
    const double above = (thumbnailGap() - betweenFrames) / 2;
    return rect.adjusted(-beside, -above, beside, above);
}

QRectF KPDocsGeometry::headerRect(int group) const
{
    return {0, m_groups[static_cast<size_t>(group)].top, m_room.width(), headerHeight};
}

int KPDocsGeometry::groupOfItem(qsizetype item) const
{
    const auto after =
        std::upper_bound(m_groups.begin(), m_groups.end(), item,
                         [](qsizetype wanted, const Group &each) { return wanted < each.first; });
    return static_cast<int>(after - m_groups.begin()) - 1;
}

int KPDocsGeometry::groupAt(double y) const
{
    if (m_groups.empty())
        return -1;
    const auto after =
        std::upper_bound(m_groups.begin(), m_groups.end(), y,
                         [](double wanted, const Group &each) { return wanted < each.top; });
    return std::max(0, static_cast<int>(after - m_groups.begin()) - 1);
}

KPDocsGeometry::Hit KPDocsGeometry::hit(const QPointF &point) const
{
    if (m_count == 0)
        return {};
    const int group = groupAt(point.y());
    const Group within = group < 0 ? Group{.count = m_count} : m_groups[static_cast<size_t>(group)];
    const double top = group < 0 ? 0 : within.top + headerHeight;
    const auto column = static_cast<qsizetype>(point.x() / cellWidth());
    const auto row = static_cast<qsizetype>((point.y() - top - thumbnailGap()) / cellHeight());
    const qsizetype last = std::max<qsizetype>(0, within.count - 1);
    const qsizetype index = std::clamp<qsizetype>(numColumns() * row + column, 0, last);
    return {std::min(within.first + (within.isOpen ? index : 0), m_count - 1), group,
            group >= 0 && point.y() < top};
}

std::optional<qsizetype> KPDocsGeometry::itemUnder(const QPointF &point, double margin) const
{
    const QList<Range> touched =
        itemsIn(QRectF(point, point).adjusted(-margin, -margin, margin, margin));
    std::optional<qsizetype> nearest;
    double least = 0;
    for (const Range &run : touched) {
        for (qsizetype item = run.first; item <= run.last; ++item) {
            const QPointF away = docRect(item).center() - point;
            const double distance = QPointF::dotProduct(away, away);
            if (!nearest || distance < least) {
                nearest = item;
                least = distance;
            }
        }
    }
    return nearest;
}

void KPDocsGeometry::addItemsIn(const QRectF &rect, qsizetype first, qsizetype count, double top,
                                QList<Range> &runs) const
{
    const auto cell = [](double distance, double size) {
        return static_cast<qsizetype>(std::floor(distance / size));
    };
    const QSizeF doc = docRectSize();
    const double y = top + thumbnailGap();
    // A cell counts when its document is touched, not the gap that follows it.
    const qsizetype firstRow =
        std::max<qsizetype>(0, cell(rect.top() - y - doc.height(), cellHeight()) + 1);
    const qsizetype lastRow = std::min(rows(count) - 1, cell(rect.bottom() - y, cellHeight()));
    const qsizetype firstColumn =
        std::max<qsizetype>(0, cell(rect.left() - leftEdge() - doc.width(), cellWidth()) + 1);
    const qsizetype lastColumn =
        std::min<qsizetype>(numColumns() - 1, cell(rect.right() - leftEdge(), cellWidth()));
    if (firstColumn > lastColumn)
        return;
    for (qsizetype row = firstRow; row <= lastRow; ++row) {
        const qsizetype from = row * numColumns() + firstColumn;
        const qsizetype to = std::min(row * numColumns() + lastColumn, count - 1);
        if (from <= to)
            runs.append({first + from, first + to});
    }
}

QList<KPDocsGeometry::Range> KPDocsGeometry::itemsIn(const QRectF &rect) const
{
    QList<Range> runs;
    if (!isGrouped()) {
        addItemsIn(rect, 0, m_count, 0, runs);
        return runs;
    }
    for (auto number = static_cast<size_t>(groupAt(rect.top())); number < m_groups.size();
         ++number) {
        const Group &group = m_groups[number];
        if (group.top > rect.bottom())
            break;
        if (group.isOpen)
            addItemsIn(rect, group.first, group.count, group.top + headerHeight, runs);
    }
    return runs;
}

KPDocsGeometry::Range KPDocsGeometry::rangeToDraw(const QRectF &rect) const
{
    if (m_count == 0)
        return {};
    Range range{m_count - 1, 0};
    for (const QPointF &corner :
         {rect.topLeft(), rect.topRight(), rect.bottomLeft(), rect.bottomRight()}) {
        const qsizetype item = hit(corner).item;
        range.first = std::min(range.first, item);
        range.last = std::max(range.last, item);
    }
    return range;
}

#include "KPDocCellLayout.h"

#include <QFontMetrics>
#include <algorithm>
#include <cmath>

static constexpr int padding = 8; // between a cell's frame and what is in it
static constexpr int margin = 3;  // between the frames of neighbours, half of it each
static constexpr int edges = 20;  // of the view, both together

static QFont scaled(const QFont &font, double factor)
{
    QFont result = font;
    if (font.pointSizeF() > 0)
        result.setPointSizeF(font.pointSizeF() * factor);
    return result;
}

// Ten, eleven, twelve where the user's own size is eleven.
static double titleFactor(int thumbnail)
{
    return thumbnail <= 100 ? 10.0 / 11 : thumbnail < 150 ? 1.0 : 12.0 / 11;
}

KPDocCellLayout::KPDocCellLayout(double zoom, int viewWidth, const QFont &font)
{
    const double wanted =
        std::clamp(zoom, 0.0, 1.0) * (largestThumbnail - smallestThumbnail) + smallestThumbnail;
    m_thumbnail =
        std::clamp(static_cast<int>(std::ceil(wanted)), 1, std::max(1, viewWidth - edges));
    m_titleFont = scaled(font, titleFactor(m_thumbnail));
    m_tagFont = scaled(m_titleFont, 0.88);
    m_lineHeight = static_cast<int>(std::ceil(QFontMetrics(m_titleFont).height() * 1.25));

    const int gap = static_cast<int>(std::sqrt(m_thumbnail)) + 10;
    m_columns = std::max(1, (viewWidth - gap) / (m_thumbnail + gap));
    // One point is left over: a row that fills the view to its edge wraps one cell early.
    m_cell = {std::max(m_thumbnail, (viewWidth - 1) / m_columns),
              2 * (margin + padding) + m_thumbnail + padding / 2 + lines * m_lineHeight};
}

QRect KPDocCellLayout::frame() const
{
    const int width = std::min(m_cell.width() - 2 * margin, m_thumbnail + 4 * padding);
    return {(m_cell.width() - width) / 2, margin, width, m_cell.height() - 2 * margin};
}

QRect KPDocCellLayout::picture() const
{
    return {(m_cell.width() - m_thumbnail) / 2, margin + padding, m_thumbnail, m_thumbnail};
}

QRect KPDocCellLayout::line(int number) const
{
    const QRect within = frame().adjusted(padding / 2, 0, -padding / 2, 0);
    const int top = picture().bottom() + 1 + padding / 2 + number * m_lineHeight;
    return {within.left(), top, within.width(), m_lineHeight};
}

#pragma once

#include "XPCloudItem.h"

#include <QList>
#include <QRectF>
#include <optional>

// The measures of the words' font, which grow with its size. Threads: that of the layout.
class XPCloudFonts
{
public:
    virtual ~XPCloudFonts() = default;
    virtual double width(const QString &text, double size) const = 0;
    virtual double ascent(double size) const = 0;  // above the base line
    virtual double descent(double size) const = 0; // below it; positive
};

// Where the words of a cloud stand and how large they are: words that grow with use, in lines that
// are justified to both edges. Lengths in points of the view, y downwards.
// Threads: one. The fonts must outlive it.
class XPCloudLayout
{
public:
    static constexpr double maxFontSize = 19;
    static constexpr double noItemsHeight = 20;
    static constexpr double averageCharacterWidth = maxFontSize * 0.5;
    static constexpr double minimumGap = averageCharacterWidth * 0.75;
    static constexpr double selectedFontSize = 14;
    static constexpr double selectedInset = 10; // room for the frame at either end of a word
    static constexpr double leftEdge = 5;       // where lines start

    explicit XPCloudLayout(const XPCloudFonts *fonts) : m_fonts(fonts) {}

    void setItems(const QList<XPCloudItem> &items);
    const QList<XPCloudItem> &drawnItems() const { return m_items; }
    void setOneWordPerLine(bool on);
    bool oneWordPerLine() const { return m_oneWordPerLine; }
    void setViewWidth(double width) { m_viewWidth = width; }
    void forgetSizes() { m_sizes.clear(); } // the fonts measure otherwise now

    double minRelevance() const { return m_minRelevance; } // without items 1e6
    double maxRelevance() const { return m_maxRelevance; } // without items -1e6
    double minFontSize() const { return m_oneWordPerLine ? 14 : 11; }
    // 0 to 1. The square root lifts rare tags, so that not all of the middle is small.
    double relativeRelevance(const XPCloudItem &item) const;
    double fontSize(const XPCloudItem &item) const;
    QSizeF itemSize(const XPCloudItem &item) const;
    double lineHeight() const;
    double maxLineWidth() const { return m_viewWidth - 10; }

    // Takes one line's items from `index` on; the index after them. `base` is where its base line
    // starts; rectangles go to `rects`, if given, by their item's index. Past the end it answers
    // an index that is well past the end, so that loops stop.
    qsizetype buildLineStartingAtIndex(qsizetype index, QPointF base, QList<QRectF> *rects) const;
    qsizetype lineCount() const;
    double requiredHeightToFitAllTags() const;
    // Places all items, for drawing and pointToItem().
    void layOut();
    const QList<QRectF> &rects() const { return m_rects; }
    double baseLine(qsizetype item) const; // of the item's line, as laid out
    // Nothing: no word is there. As of layOut().
    std::optional<qsizetype> pointToItem(QPointF point) const;

private:
    QSizeF cachedSize(qsizetype index) const;

    const XPCloudFonts *m_fonts;
    QList<XPCloudItem> m_items;
    double m_minRelevance = 1e6;
    double m_maxRelevance = -1e6;
    double m_viewWidth = 0;
    bool m_oneWordPerLine = false;
    mutable QList<QSizeF> m_sizes; // one an item, or stale
    QList<QRectF> m_rects;
    QList<double> m_baseLines;
};

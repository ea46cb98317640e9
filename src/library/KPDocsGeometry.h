#pragma once

#include <QList>
#include <QRectF>
#include <QSize>
#include <optional>
#include <vector>

// Where the documents of the grid stand: from the zoom, the room and the number of documents to
// the size of a cell, the place of each document, and back from a point to a document.
//
// Documents stand in rows and columns that share the spare width with both margins, or in groups,
// each below a header, whose documents are laid out when it is open. Nothing is stored for a
// document: every answer takes the same time for ten of them and for a million (times the
// logarithm of the number of groups).
// Units: device-independent pixels; y grows downwards from the top of the contents.
// Threads: a value.
class KPDocsGeometry
{
public:
    static constexpr double smallestWidth = 50;
    static constexpr double largestWidth = 768;
    static constexpr double edges = 20; // of the view, both together, beside the widest thumbnail
    static constexpr double headerHeight = 36;

    struct Group
    {
        qsizetype count = 0;
        bool isOpen = true;
        // Set by setGroups().
        qsizetype first = 0; // its first document's number
        double top = 0;
        double height = 0; // with the header
    };
    struct Hit
    {
        qsizetype item = 0;
        int group = -1; // -1: there are none
        bool isOnHeader = false;
    };
    struct Range
    {
        qsizetype first = 0;
        qsizetype last = -1; // included
    };

    // --- Sizes of text below a thumbnail

    static int labelFontSize(double width); // 10, 11 or 12
    // `scale`: of the user's text to the usual one.
    static double textRoom(double width, int lines, double scale = 1);
    // The width of a thumbnail for a slider's value between 0 and 1.
    static double widthForZoom(double zoom);

    // --- What is given

    // Width and height of what is seen of the grid.
    void setRoom(const QSizeF &room);
    // Of title, tags and rating, those that are shown: 0 to 3.
    void setTextLines(int lines, double scale = 1);
    void setCount(qsizetype count); // ends grouping
    void setGroups(std::vector<Group> groups);
    // Both whole numbers, rounded up; false: they are these already.
    bool setThumbnailSize(const QSizeF &size);
    // Limited to the room, as a square. With `toFit` it grows as long as all documents fit into the
    // visible height; not in groups. False: nothing is different.
    bool setThumbnailWidth(double width, bool toFit);

    // --- The cell

    QSizeF thumbnailSize() const { return m_thumbnail; }
    double textRoom() const { return textRoom(m_thumbnail.width(), m_textLines, m_textScale); }
    QSizeF docRectSize() const;
    double thumbnailGap() const;
    int numColumns() const;
    qsizetype numRows() const { return rows(m_count); }
    double gapSize() const;
    double leftEdge() const;
    double cellWidth() const;
    double cellHeight() const { return docRectSize().height() + thumbnailGap(); }
    double height() const; // of the contents, never less than what is seen

    // --- Documents

    qsizetype count() const { return m_count; }
    bool isGrouped() const { return !m_groups.empty(); }
    const std::vector<Group> &groups() const { return m_groups; }
    QRectF docRect(qsizetype item) const; // null in a closed group
    // What a selection fills: the document with a part of the gaps around it.
    QRectF frameRect(qsizetype item) const;
    QRectF headerRect(int group) const;
    int groupOfItem(qsizetype item) const; // -1: there are none
    int groupAt(double y) const;           // the nearest; -1: there are none

    // The document nearest to a point; its column is not limited to those there are, so that the
    // right margin belongs to the next row. In a group: one of it.
    Hit hit(const QPointF &point) const;
    // The document whose picture and texts, enlarged by `margin`, are under the point.
    std::optional<qsizetype> itemUnder(const QPointF &point, double margin = 4) const;
    // Those that a rectangle touches, as runs of numbers.
    QList<Range> itemsIn(const QRectF &rect) const;
    // From the smallest to the largest number at the corners of what is being drawn.
    Range rangeToDraw(const QRectF &rect) const;

private:
    qsizetype rows(qsizetype count) const;
    QRectF rectAt(qsizetype index, double top) const;
    double gridHeight() const;
    double fittedWidth(double width) const;
    void layOutGroups();
    void addItemsIn(const QRectF &rect, qsizetype first, qsizetype count, double top,
                    QList<Range> &runs) const;

    QSizeF m_room{800, 600};
    QSizeF m_thumbnail{194, 194};
    int m_textLines = 3;
    double m_textScale = 1;
    qsizetype m_count = 0;
    std::vector<Group> m_groups;
    mutable double m_cachedGapSize = -1; // negative: to be computed
};

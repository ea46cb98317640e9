#pragma once

#include <QFont>
#include <QRect>
#include <QSize>

// The arithmetic of the grid: how large a cell is for a zoom, and where in it things go.
//
// The zoom (0 to 1, the setting "KPThumbnailSize") gives thumbnails of 50 to 768 points; spare
// width is shared by the columns. Points are device-independent pixels.
// Threads: a value.
class KPDocCellLayout
{
public:
    static constexpr int smallestThumbnail = 50;
    static constexpr int largestThumbnail = 768;

    // `font`: the application's; labels are a little smaller or larger with the thumbnails.
    KPDocCellLayout(double zoom, int viewWidth, const QFont &font);

    int thumbnail() const { return m_thumbnail; } // the side of the square of a picture
    int columns() const { return m_columns; }
    QSize cell() const { return m_cell; }
    const QFont &titleFont() const { return m_titleFont; }
    const QFont &tagFont() const { return m_tagFont; }

    // Inside a cell whose top left corner is (0, 0).
    QRect frame() const; // what a selection fills
    QRect picture() const;
    QRect line(int number) const; // of the text below, counted from 0

    static constexpr int lines = 3; // name, tags, stars

private:
    int m_thumbnail;
    int m_columns;
    QSize m_cell;
    QFont m_titleFont;
    QFont m_tagFont;
    int m_lineHeight;
};

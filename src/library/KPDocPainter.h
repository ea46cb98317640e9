#pragma once

#include "KPDocsGeometry.h"
#include "KPLibraryColours.h"

#include <QFont>

class KPDoc;
class KPQuickLook;
class QPainter;

// Draws one document of the grid: picture or icon on the base line of its row, and below it name,
// tags and stars, those that the settings want. Asks for nothing: what is not known is not drawn.
// Threads: main. The pictures are not owned.
class KPDocPainter
{
public:
    struct Look
    {
        bool isSelected = false;
        bool isHovered = false;
        bool isCurrent = false; // and the keyboard is here
        bool isNameEdited = false;
    };

    KPDocPainter(const KPQuickLook &pictures, const QPalette &palette, const QFont &font);

    // Takes the settings "KPShowTitle", "KPShowTags" and "KPShowRating", the palette and the font.
    void update(const QPalette &palette, const QFont &font);
    // For thumbnails of that width.
    void setThumbnailWidth(double width);

    const KPLibraryColours &colours() const { return m_colours; }
    int textLines() const { return int(m_showsTitle) + int(m_showsTags) + int(m_showsRating); }
    double textScale() const { return m_scale; }
    const QFont &titleFont() const { return m_titleFont; }

    void paint(QPainter &painter, const QRectF &doc, const QRectF &frame, const KPDoc &record,
               const Look &look) const;
    // Where the name stands; null: it is not shown.
    QRectF titleRect(const QRectF &doc, const QRectF &frame) const;
    // Where the picture stands in a document's square; null: there is none yet.
    QRectF pictureRect(const QRectF &square, const KPDoc &record, double ratio) const;
    QRectF paintPicture(QPainter &painter, const QRectF &square, const KPDoc &record) const;

private:
    QRectF line(const QRectF &doc, const QRectF &frame, int number) const;
    void paintFrame(QPainter &painter, const QRectF &frame, const Look &look) const;
    void paintTitle(QPainter &painter, const QRectF &line, const KPDoc &record) const;
    int paintTags(QPainter &painter, const QRectF &line, const KPDoc &record) const;
    void paintStars(QPainter &painter, const QRectF &line, double rating) const;
    void paintFlag(QPainter &painter, const QRectF &picture) const;
    void paintShadow(QPainter &painter, const QRectF &picture) const;

    const KPQuickLook &m_pictures;
    KPLibraryColours m_colours;
    QFont m_font, m_titleFont, m_tagFont;
    double m_scale = 1;
    double m_width = 0;
    bool m_showsTitle = true;
    bool m_showsTags = true;
    bool m_showsRating = true;
};

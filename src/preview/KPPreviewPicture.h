#pragma once

#include <QImage>
#include <QWidget>
#include <optional>

// A picture or page to be looked at: as large as the room allows, or enlarged, and then moved by
// dragging, by the wheel and by the arrow keys.
//
// A better picture of what is shown takes its place without moving it. Double-clicking goes back
// and forth between the whole and its pixels.
// Units: device-independent pixels; a zoom of 1 shows a pixel of the picture for each of the
// screen's. Threads: main.
class KPPreviewPicture : public QWidget
{
    Q_OBJECT

public:
    static constexpr double zoomStep = 1.25;
    static constexpr double largestZoom = 8;

    explicit KPPreviewPicture(QWidget *parent = nullptr);

    // `isNew`: of something else, to be seen as a whole. A null picture shows nothing.
    void setPicture(const QImage &picture, bool isNew);
    // Of the whole original, in pixels; what is there may be a smaller one.
    void setOriginalSize(const QSizeF &pixels) { m_original = pixels; }

    bool isFitted() const { return !m_zoom; }
    void zoomBy(double factor) { zoomBy(factor, rect().center()); }
    void fit();
    void showPixels(const QPointF &around);
    // Device pixels of the longer side that would serve what is shown.
    int neededSide() const;
    // False: there is nothing further in that direction.
    bool moveBy(const QPointF &distance);

Q_SIGNALS:
    void zoomChanged();
    void turnRequested(int pages); // the wheel, while the whole is seen

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;

private:
    QSizeF originalSize() const; // in points at a zoom of 1
    double fittedZoom() const;
    QRectF place() const;
    void zoomBy(double factor, const QPointF &around);
    void setZoom(std::optional<double> zoom, const QPointF &around);
    void showCursor();

    QImage m_picture;
    QSizeF m_original;
    std::optional<double> m_zoom; // nothing: fitted
    QPointF m_centre{0.5, 0.5};   // the part of the picture in the middle
    std::optional<QPointF> m_dragged;
    int m_wheel = 0;
};

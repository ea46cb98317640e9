#pragma once

#include <QImage>
#include <QRectF>
#include <QWidget>
#include <optional>

// The page that is shown, with the frame to crop by and the line to straighten by; pictures and PDF
// files dropped on it become pages.
//
// Coordinates of the frame are parts of the picture, from 0 to 1. Threads: main.
class XPScanImageView : public QWidget
{
    Q_OBJECT

public:
    enum class Mode { Show, Crop, Straighten };

    explicit XPScanImageView(QWidget *parent = nullptr);

    // A null image: the text is shown in its place.
    void setPage(const QImage &image, const QString &accessibleName);
    void setText(const QString &text);
    void setMode(Mode mode);
    Mode mode() const { return m_mode; }

    const QRectF &cropRect() const { return m_crop; }
    void setCropRect(const QRectF &crop);
    // Width by height that the frame keeps, in pixels of the picture; nothing: free.
    void setProportion(std::optional<double> proportion);

    QSize sizeHint() const override { return {480, 600}; }

Q_SIGNALS:
    void cropRectChanged();
    // A line was drawn that is to be level: its angle in degrees, clockwise.
    void lineDrawn(double degrees);
    void filesDropped(const QStringList &paths);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    enum Side { None = 0, Left = 1, Right = 2, Top = 4, Bottom = 8, All = 15 };

    QRectF imageRect() const; // where the picture is drawn
    QPointF toParts(const QPointF &point) const;
    QRectF frame() const; // the crop in points of the view
    int sidesAt(const QPointF &point) const;
    void dragFrame(const QPointF &parts);
    void keepProportion(int sides);
    void showCursor(const QPointF &point);

    QImage m_image;
    QString m_text;
    Mode m_mode = Mode::Show;
    QRectF m_crop{0, 0, 1, 1};
    std::optional<double> m_proportion;
    int m_dragged = None;
    QPointF m_from; // where the drag began, in parts
    QRectF m_cropBefore;
    std::optional<QLineF> m_line; // being drawn, in points of the view
};

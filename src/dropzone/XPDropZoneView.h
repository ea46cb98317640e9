#pragma once

#include "XPDropZoneChoices.h"

#include <QTimer>
#include <QWidget>

class QMimeData;

// The drop zone as it is seen: its rows, the one under the drag lit up. Says what is dragged over
// it and dropped, and what the pointer does with the zone itself; decides nothing. Threads: main.
class XPDropZoneView : public QWidget
{
    Q_OBJECT

public:
    explicit XPDropZoneView(QWidget *parent = nullptr);

    void setChoices(const XPDropZoneChoices &choices);
    const XPDropZoneChoices &choices() const { return m_choices; }
    void setEdge(Qt::Edge edge);           // of the screen, that it touches; a window touches none
    void setStatus(const QString &status); // instead of the title; empty: the title
    QSize sizeHint() const override;

    static constexpr int springDelay = 600; // milliseconds

Q_SIGNALS:
    void dragEntered();
    void dragLeft();
    // Emitted in the drop: the data is valid in the call only.
    void dropped(const QMimeData *data, const XPDropZoneDestination &destination);
    void clicked();
    void moved(int dy); // the user moves the zone along its edge

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    QRectF outline() const;
    void followOutline();
    void hover(const QPoint &point);
    void setHovered(int row);
    void paintRow(QPainter &painter, const XPDropZoneChoices::Row &row, bool isHovered) const;

    XPDropZoneChoices m_choices;
    std::optional<Qt::Edge> m_edge;
    QString m_status;
    QTimer m_spring;
    QPoint m_last; // where the drag is
    int m_hovered = -1;
    std::optional<int> m_pressed; // the pointer's y on the screen
    bool m_wasMoved = false;
};

#pragma once

#include <QImage>
#include <QWidget>

// The loupe as it is seen: a round piece of a picture enlarged, or a picture as a whole in a frame.
// Lies over the window and lets the pointer through.
// Units: device-independent pixels. Threads: main.
class KPLoupe : public QWidget
{
    Q_OBJECT

public:
    explicit KPLoupe(QWidget *window);

    struct Sight
    {
        QImage picture;
        QSizeF size;   // that the whole picture would have
        QPointF point; // the part of it in the middle, each from 0 to 1
        bool isWhole = false;
    };
    // `centre`: in the window.
    void show(const Sight &sight, const QPoint &centre, int width);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    Sight m_sight;
};

#pragma once

#include <QSlider>

// Five stars to click on: as a slider from 0 to 5, so that assistive programs know what to do
// with it. A click on the star that is the rating already removes it; the digits and the arrow
// keys work too. Ratings that differ are shown as none. Threads: main.
class XPStarsEditor : public QSlider
{
    Q_OBJECT

public:
    explicit XPStarsEditor(QWidget *parent = nullptr);

    void setRating(double rating); // says nothing; half stars are shown as such

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

Q_SIGNALS:
    void rated(int stars); // by the user

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    double side() const;
    int starAt(const QPointF &point) const; // 1 to 5
    void rate(int stars);

    double m_rating = 0;
    int m_hovered = 0;
};

#pragma once

#include <QCheckBox>

// A check box whose text wraps, so that a long one, another language or a large font does not widen
// the window. Threads: main.
class XPWrappedCheckBox : public QCheckBox
{
    Q_OBJECT

public:
    explicit XPWrappedCheckBox(const QString &text, QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    bool hitButton(const QPoint &at) const override { return rect().contains(at); }

private:
    int boxWidth() const; // with the gap behind it
    int heightOfText(int width) const;
};

#pragma once

#include <QAbstractButton>

// One tag in an editor: a rounded chip with a cross that removes it.
//
// With the keyboard: Delete or Backspace remove; Space and a click ask for the other state
// (clicked()), which only filters have. Threads: main.
class XPTagChip : public QAbstractButton
{
    Q_OBJECT

public:
    explicit XPTagChip(const QString &tag, QWidget *parent = nullptr);

    const QString &tag() const { return m_tag; }
    bool isExcluded() const { return m_excluded; }
    void setExcluded(bool excluded); // drawn struck through
    void setTogglable(bool togglable);
    // Of a selection, `count` of `total` have it: in outline only. A click asks for all
    // (clicked()).
    void setPartial(qsizetype count, qsizetype total);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void removeRequested();
    void leaveRequested(int direction); // the arrow keys: -1 to the left, 1 to the right

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    QRect cross() const;
    void describe();

    QString m_tag;
    bool m_excluded = false;
    bool m_togglable = false;
    bool m_partial = false;
    bool m_crossPressed = false;
};

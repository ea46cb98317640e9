#pragma once

#include <QToolButton>

// A button of the window's chrome: an icon, a text beside it where asked, nothing else until the
// pointer is over it. Drawn from the palette at every painting, so that it follows the desktop.
// Threads: main.
class KPIconButton : public QToolButton
{
    Q_OBJECT

public:
    explicit KPIconButton(QWidget *parent = nullptr);
    // With the action's icon, name and tooltip, which shows its shortcut.
    explicit KPIconButton(QAction *action, QWidget *parent = nullptr);

    // One of several beside each other on a common ground.
    void setSegment(bool isSegment) { m_isSegment = isSegment; }

    // The one filled button of a window: its main act, with a text.
    void setProminent(bool isProminent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QColor ground() const;

    bool m_isSegment = false;
    bool m_isProminent = false;
};

// A row of such buttons on a common ground, of which one is chosen, or none.
class KPSegments : public QWidget
{
    Q_OBJECT

public:
    explicit KPSegments(const QList<QAction *> &actions, QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;
};

#pragma once

#include <QWidget>

class QToolButton;

// A row of small buttons, each for a tag or several, that wraps like words, under a caption; hidden
// while there are none. Threads: main.
class KPButtonRow : public QWidget
{
    Q_OBJECT

public:
    explicit KPButtonRow(const QString &caption, QWidget *parent = nullptr);

    void clear();
    QToolButton *add(const QString &text);

private:
    QWidget *m_buttons;
};

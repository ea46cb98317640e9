#pragma once

#include <QWidget>

class KPCommands;

// The row of the panels' own small toolbars: what is done with tags, folders, documents and what is
// known of them, in the order of the panels below. Commands that are not shown leave no gap, and
// what has no room stands in a menu at the end.
//
// The window shows it by "KPActionBarShown". Threads: main. Ownership: the commands outlive it.
class KPActionBar : public QWidget
{
    Q_OBJECT

public:
    explicit KPActionBar(const KPCommands &commands, QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;
};

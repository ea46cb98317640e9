#pragma once

#include <QDialog>

class KPCommands;
class QListWidget;

// Chooses what stands in the toolbar: items are dragged between the toolbar's list and that of
// what there is, and within the toolbar's to order them; with the keyboard Return adds and Delete
// removes. Each change shows at once. Threads: main.
class KPToolBarDialog : public QDialog
{
    Q_OBJECT

public:
    KPToolBarDialog(const KPCommands *commands, QWidget *parent);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void fill();
    void save();
    void addSelected();
    void removeSelected();

    const KPCommands *m_commands;
    QListWidget *m_toolBar;
    QListWidget *m_others;
    bool m_isFilling = false;
};

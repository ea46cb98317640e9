#pragma once

#include <QDialog>

class QMenuBar;
class QTreeWidget;

// All commands that have a key, by menu, as the menu bar has them at the moment: so the page is
// always true. A field searches them.
// Threads: main. It deletes itself when closed.
class KPShortcutsWindow : public QDialog
{
    Q_OBJECT

public:
    KPShortcutsWindow(const QMenuBar *bar, QWidget *parent);

private:
    void search(const QString &words);

    QTreeWidget *m_list;
};

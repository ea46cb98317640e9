#pragma once

#include <QDialog>

class QListWidget;
class QPushButton;

// The first start's one screen: what Murn does, that nothing is moved, and which folders it looks
// in, which can be changed here. Can be had again from the Help menu.
// Threads: main. Shown over the window; deletes itself when it is closed.
class KPWelcome : public QDialog
{
    Q_OBJECT

public:
    explicit KPWelcome(QWidget *window);

private:
    void addFolder();
    void removeFolder();
    void showFolders();

    QListWidget *m_folders;
    QPushButton *m_remove;
};

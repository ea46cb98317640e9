#pragma once

#include "KPWaitingTagChanges.h"

#include <QDialog>

class QLabel;
class QPushButton;
class QTreeWidget;

// The changes of tags that wait for volumes which are away, each with its files, to be looked at
// and forgotten. Threads: main; the list is read and written by the file worker.
class KPWaitingTagsDialog : public QDialog
{
    Q_OBJECT

public:
    explicit KPWaitingTagsDialog(QWidget *window);

private:
    void read();
    void showChanges(const XPResult<QList<KPWaitingTagChanges::Change>> &changes);
    void forget();

    QTreeWidget *m_list;
    QLabel *m_note;
    QPushButton *m_forget;
    QList<KPWaitingTagChanges::Change> m_changes; // in the order of the rows
};

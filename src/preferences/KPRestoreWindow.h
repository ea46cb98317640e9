#pragma once

#include "KPRestoreRun.h"

#include <QDialog>

class KPRestoreModel;
class QCheckBox;
class QLabel;
class QProgressBar;
class QPushButton;
class QTreeView;

// Restores tags and ratings from a backup: first shows every file that would change, before and
// after, then changes those that are chosen. Nothing is changed before the user says so.
// Threads: main. Ownership: the index's source outlives it; it deletes itself when closed.
class KPRestoreWindow : public QDialog
{
    Q_OBJECT

public:
    KPRestoreWindow(IndexSource &source, QWidget *parent);

private:
    void build();
    void look(const QString &backup);
    void chooseBackup();
    void restore();
    void finished(const KarvexRestore::Result &result, bool wasPreview);
    void showPreview(const KarvexRestore::Result &result);
    void showRestored(const KarvexRestore::Result &result);
    void showWork(bool isWorking);
    void updateButton();

    KPRestoreRun m_run;
    QString m_backup;
    KPRestoreModel *m_model;
    QLabel *m_text;
    QLabel *m_notes;
    QTreeView *m_list;
    QProgressBar *m_progress;
    QCheckBox *m_all;
    QPushButton *m_other;
    QPushButton *m_restore;
    QPushButton *m_close;
};

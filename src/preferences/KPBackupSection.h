#pragma once

#include "KPHealing.h"
#include "XPNotificationCenter.h"

#include <QWidget>

class QLabel;
class QPushButton;
class QTreeWidget;

// The backup of tags and ratings: when it last ran and how much it holds; backing up now and
// restoring are the window's. The file is read on a thread of its own, as it may be long.
// Threads: main.
class KPBackupSection : public QWidget
{
    Q_OBJECT

public:
    explicit KPBackupSection(QWidget *parent = nullptr);
    // That a backup runs, and what was wrong with the last one; both may be empty.
    void showState(const QString &activity, const QString &problem);

Q_SIGNALS:
    void backupAsked();
    void restoreAsked();

private:
    void look();
    void refresh();

    QLabel *m_text;
    QPushButton *m_backUp;
    QString m_activity;
    QString m_problem;
    qint64 m_records = -1; // not known
    QString m_unreadable;  // why
    XPObservation m_done;
    XPObservation m_time;
};

// The files that lost their tags to a program: what was given back, and what was put aside for the
// user to say. The log is read and the files are changed on the thread of file calls.
// Threads: main.
class KPHealedSection : public QWidget
{
    Q_OBJECT

public:
    explicit KPHealedSection(QWidget *parent = nullptr);

protected:
    void showEvent(QShowEvent *event) override;

private:
    void look();
    void show(const QList<KPHealing> &cases);
    void decide(bool accepts);
    QList<qint64> chosen(bool accepts) const;
    void updateButtons();

    QLabel *m_text;
    QLabel *m_problem;
    QTreeWidget *m_list;
    QPushButton *m_accept;
    QPushButton *m_undo;
    QList<KPHealing> m_cases;
};

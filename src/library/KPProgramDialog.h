#pragma once

#include "XPApplications.h"

#include <QDialog>

class QLineEdit;
class QListWidget;
class QPushButton;

// Asks for a program of those that are installed, found by typing. Threads: main.
class KPProgramDialog : public QDialog
{
    Q_OBJECT

public:
    explicit KPProgramDialog(const QList<XPApplications::Application> &programs,
                             QWidget *parent = nullptr);

    QString desktopEntry() const; // of the one chosen; empty: none

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void showMatching(const QString &text);

    QLineEdit *m_filter;
    QListWidget *m_list;
    QPushButton *m_open;
};

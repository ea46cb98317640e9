#pragma once

#include "KPSearchDates.h"

#include <QDialog>

class QDateEdit;
class QDialogButtonBox;

// Asks for two days, both included. Threads: main.
class KPDateRangeDialog : public QDialog
{
    Q_OBJECT

public:
    explicit KPDateRangeDialog(QWidget *parent);

    // In days before now; without an end where it is today. Always with a start.
    KPSearchDates::Range range() const;
    void setDays(const QDate &from, const QDate &to);

private:
    void check();

    QDateEdit *m_from;
    QDateEdit *m_to;
    QDialogButtonBox *m_buttons;
};

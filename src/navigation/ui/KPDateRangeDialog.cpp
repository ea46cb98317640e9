#include "KPDateRangeDialog.h"

#include <QDateEdit>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QPushButton>
#include <cmath>

KPDateRangeDialog::KPDateRangeDialog(QWidget *parent)
    : QDialog(parent), m_from(new QDateEdit(this)), m_to(new QDateEdit(this)),
      m_buttons(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this))
{
    setWindowTitle(qtTrId("KPDateRangeTitle"));
    auto *form = new QFormLayout(this);
    form->addRow(qtTrId("KPDateRangeFrom"), m_from);
    form->addRow(qtTrId("KPDateRangeTo"), m_to);
    form->addRow(m_buttons);
    const QDate today = KPSearchDates::now().date();
    for (QDateEdit *edit : {m_from, m_to}) {
        edit->setCalendarPopup(true);
        edit->setMaximumDate(today);
        connect(edit, &QDateEdit::dateChanged, this, &KPDateRangeDialog::check);
    }
    setDays(today.addMonths(-1), today);
    m_buttons->button(QDialogButtonBox::Ok)->setText(qtTrId("KPDateRangeShow"));
    connect(m_buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

void KPDateRangeDialog::setDays(const QDate &from, const QDate &to)
{
    m_from->setDate(from);
    m_to->setDate(to);
    check();
}

void KPDateRangeDialog::check()
{
    m_buttons->button(QDialogButtonBox::Ok)->setEnabled(m_from->date() <= m_to->date());
}

KPSearchDates::Range KPDateRangeDialog::range() const
{
    const QDateTime now = KPSearchDates::now();
    const auto daysSince = [&now](const QDate &day) {
        constexpr double msADay = 86'400'000;
        // To a quarter of an hour: what is stored is read by people.
        return std::round(static_cast<double>(day.startOfDay().msecsTo(now)) / msADay * 100) / 100;
    };
    KPSearchDates::Range range{daysSince(m_from->date()), {}};
    if (m_to->date() < now.date())
        range.end = daysSince(m_to->date().addDays(1));
    return range;
}

#include "KPButtonRow.h"

#include "KPTabOrder.h"
#include "XPFlowLayout.h"
#include "XPPath.h"

#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>

KPButtonRow::KPButtonRow(const QString &caption, QWidget *parent)
    : QWidget(parent), m_buttons(new QWidget)
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(4);
    auto *label = new QLabel(caption);
    label->setForegroundRole(QPalette::PlaceholderText);
    column->addWidget(label);
    m_buttons->setLayout(new XPFlowLayout(m_buttons));
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    m_buttons->setSizePolicy(policy);
    column->addWidget(m_buttons);
    hide();
}

void KPButtonRow::clear()
{
    for (QToolButton *button : m_buttons->findChildren<QToolButton *>()) {
        m_buttons->layout()->removeWidget(button);
        button->hide();
        button->deleteLater(); // its own click may have brought us here
    }
    hide();
}

QToolButton *KPButtonRow::add(const QString &text)
{
    auto *button = new QToolButton(m_buttons);
    button->setText(XPPath::printable(text).replace(u'&', QStringLiteral("&&")));
    button->setFocusPolicy(Qt::StrongFocus);
    KPTabOrder::insertBefore(*m_buttons, *button);
    button->setAccessibleName(XPPath::printable(text));
    static_cast<XPFlowLayout *>(m_buttons->layout())
        ->insertWidget(m_buttons->layout()->count(), button);
    button->show();
    show();
    return button;
}

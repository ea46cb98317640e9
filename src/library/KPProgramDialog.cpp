#include "KPProgramDialog.h"

#include "XPText.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QIcon>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

static constexpr int entryRole = Qt::UserRole;

KPProgramDialog::KPProgramDialog(const QList<XPApplications::Application> &programs,
                                 QWidget *parent)
    : QDialog(parent), m_filter(new QLineEdit), m_list(new QListWidget)
{
    setWindowTitle(qtTrId("KPProgramTitle"));
    resize(380, 460);
    m_filter->setPlaceholderText(qtTrId("KPProgramFilter"));
    m_filter->setAccessibleName(qtTrId("KPProgramFilter"));
    m_filter->setClearButtonEnabled(true);
    m_filter->installEventFilter(this);
    m_list->setAccessibleName(qtTrId("KPProgramTitle"));
    for (const XPApplications::Application &each : programs) {
        auto *row = new QListWidgetItem(QIcon::fromTheme(each.iconName), each.name, m_list);
        row->setData(entryRole, each.desktopEntry);
    }
    auto *buttons = new QDialogButtonBox;
    m_open = buttons->addButton(qtTrId("KPProgramOpen"), QDialogButtonBox::AcceptRole);
    buttons->addButton(QDialogButtonBox::Cancel); // last: Tab would pass over it otherwise
    auto *column = new QVBoxLayout(this);
    column->addWidget(m_filter);
    column->addWidget(m_list, 1);
    column->addWidget(buttons);
    m_open->setDefault(true); // in its dialog by now: before, the other button would be it
    connect(m_filter, &QLineEdit::textChanged, this, &KPProgramDialog::showMatching);
    connect(m_list, &QListWidget::itemActivated, this, &QDialog::accept);
    connect(m_list, &QListWidget::currentItemChanged, this,
            [this] { m_open->setEnabled(!desktopEntry().isEmpty()); });
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    showMatching({});
}

void KPProgramDialog::showMatching(const QString &text)
{
    const QString wanted = foldText(text);
    m_list->setCurrentItem(nullptr);
    for (int row = 0; row < m_list->count(); ++row) {
        QListWidgetItem *item = m_list->item(row);
        item->setHidden(!foldText(item->text()).contains(wanted));
        if (!item->isHidden() && !m_list->currentItem())
            m_list->setCurrentItem(item);
    }
    m_open->setEnabled(!desktopEntry().isEmpty());
}

// The arrows choose while the field has the focus.
bool KPProgramDialog::eventFilter(QObject *watched, QEvent *event)
{
    const auto *key = event->type() == QEvent::KeyPress ? static_cast<QKeyEvent *>(event) : nullptr;
    if (watched != m_filter || !key || (key->key() != Qt::Key_Up && key->key() != Qt::Key_Down))
        return QDialog::eventFilter(watched, event);
    QCoreApplication::sendEvent(m_list, event);
    return true;
}

QString KPProgramDialog::desktopEntry() const
{
    const QListWidgetItem *item = m_list->currentItem();
    return item ? item->data(entryRole).toString() : QString();
}

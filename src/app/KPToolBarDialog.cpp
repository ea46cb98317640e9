#include "KPToolBarDialog.h"

#include "KPCommandTable.h"
#include "KPLook.h"
#include "KPToolBarItems.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>

namespace {

QListWidget *makeList(const QString &name)
{
    auto *list = new QListWidget;
    list->setIconSize({16, 16});
    list->setAccessibleName(name);
    list->setDragEnabled(true);
    list->setAcceptDrops(true);
    list->setDropIndicatorShown(true);
    list->setDragDropMode(QAbstractItemView::DragDrop);
    list->setDefaultDropAction(Qt::MoveAction);
    list->setSelectionMode(QAbstractItemView::SingleSelection);
    list->setMinimumSize(240, 360);
    return list;
}

QLabel *heading(const QString &text, QWidget *buddy)
{
    auto *label = new QLabel(text);
    label->setFont(KPLook::font(KPLook::Type::Caption));
    label->setForegroundRole(QPalette::PlaceholderText);
    label->setBuddy(buddy);
    return label;
}

} // namespace

KPToolBarDialog::KPToolBarDialog(const KPCommands *commands, QWidget *parent)
    : QDialog(parent), m_commands(commands), m_toolBar(makeList(qtTrId("KPToolBar"))),
      m_others(makeList(qtTrId("KPToolbarAvailable")))
{
    setWindowTitle(qtTrId("KPCustomiseToolbarTitle"));
    auto *hint = new QLabel(qtTrId("KPCustomiseToolbarHint"));
    hint->setWordWrap(true);
    auto *buttons = new QDialogButtonBox;
    QPushButton *usual =
        buttons->addButton(qtTrId("KPToolbarUseDefault"), QDialogButtonBox::ResetRole);
    QPushButton *done = buttons->addButton(qtTrId("KPDone"), QDialogButtonBox::AcceptRole);
    done->setDefault(true);
    usual->setAutoDefault(false);
    connect(usual, &QPushButton::clicked, this, [this] {
        KPToolBarItems::reset();
        fill();
    });
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);

    auto *grid = new QGridLayout(this);
    grid->setContentsMargins(16, 16, 16, 16);
    grid->setHorizontalSpacing(16);
    grid->setVerticalSpacing(8);
    grid->addWidget(hint, 0, 0, 1, 2);
    grid->addWidget(heading(qtTrId("KPToolbarAvailable"), m_others), 1, 0);
    grid->addWidget(heading(qtTrId("KPToolBar"), m_toolBar), 1, 1);
    grid->addWidget(m_others, 2, 0);
    grid->addWidget(m_toolBar, 2, 1);
    grid->addWidget(buttons, 3, 0, 1, 2);

    for (QListWidget *list : {m_toolBar, m_others})
        list->installEventFilter(this);
    connect(m_others, &QListWidget::itemDoubleClicked, this, &KPToolBarDialog::addSelected);
    connect(m_toolBar, &QListWidget::itemDoubleClicked, this, &KPToolBarDialog::removeSelected);
    fill();
    // A drag inserts first and removes then: what counts is what is left when both are done.
    for (const auto signal : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved})
        connect(m_toolBar->model(), signal, this, &KPToolBarDialog::save, Qt::QueuedConnection);
}

void KPToolBarDialog::fill()
{
    m_isFilling = true;
    const QStringList chosen = KPToolBarItems::identifiers();
    const auto add = [this](QListWidget *list, const QString &identifier) {
        auto *item = new QListWidgetItem(KPToolBarItems::label(identifier), list);
        item->setData(Qt::UserRole, identifier);
        const auto *known = KPToolBarItems::item(identifier);
        const QAction *action = known ? m_commands->action(known->commands.front()) : nullptr;
        if (action)
            item->setIcon(action->icon());
        item->setFlags(item->flags() & ~Qt::ItemIsDropEnabled);
        // What the program has no use for at the moment keeps its place all the same.
        item->setHidden(known && (!action || !action->isVisible()));
    };
    m_toolBar->clear();
    m_others->clear();
    for (const QString &identifier : chosen)
        add(m_toolBar, identifier);
    for (const QString &identifier : KPToolBarItems::allowedIdentifiers()) {
        if (!KPToolBarItems::item(identifier) || !chosen.contains(identifier))
            add(m_others, identifier);
    }
    m_isFilling = false;
}

void KPToolBarDialog::save()
{
    if (m_isFilling)
        return;
    QStringList identifiers;
    for (int row = 0; row < m_toolBar->count(); ++row)
        identifiers.append(m_toolBar->item(row)->data(Qt::UserRole).toString());
    if (identifiers == KPToolBarItems::identifiers())
        return;
    KPToolBarItems::setIdentifiers(identifiers);
    const int row = m_toolBar->currentRow();
    fill(); // spaces never run out, and nothing is there twice
    m_toolBar->setCurrentRow(std::min(row, m_toolBar->count() - 1));
}

void KPToolBarDialog::addSelected()
{
    if (const int row = m_others->currentRow(); row >= 0)
        m_toolBar->insertItem(m_toolBar->currentRow() + 1, m_others->takeItem(row));
}

void KPToolBarDialog::removeSelected()
{
    delete m_toolBar->takeItem(m_toolBar->currentRow());
}

bool KPToolBarDialog::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return QDialog::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent *>(event)->key();
    if (watched == m_others && (key == Qt::Key_Return || key == Qt::Key_Enter)) {
        addSelected();
        return true;
    }
    if (watched == m_toolBar && (key == Qt::Key_Delete || key == Qt::Key_Backspace)) {
        removeSelected();
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

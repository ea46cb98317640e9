#include "KPListEditor.h"

#include "KPDocIcons.h"
#include "KPLook.h"
#include "XPFolders.h"
#include "XPPath.h"

#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

static constexpr int fewestRows = 3;
static constexpr int mostRows = 8;

static QLabel *factsLabel(const QString &text, QPalette::ColorRole role)
{
    auto *label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setFont(KPLook::font(KPLook::Type::Facts));
    label->setForegroundRole(role);
    return label;
}

static QPushButton *button(const QString &text)
{
    auto *made = new QPushButton(text);
    made->setAutoDefault(false);
    return made;
}

KPListEditor::KPListEditor(const QString &name, const QString &hint, Hooks hooks, QWidget *parent)
    : QWidget(parent), m_hooks(std::move(hooks)), m_list(new QListWidget),
      m_remove(button(qtTrId("KPPrefRemove"))), m_reset(button(qtTrId("KPPrefReset"))),
      m_problem(factsLabel({}, QPalette::WindowText))
{
    m_list->setAccessibleName(name);
    m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_list->setUniformItemSizes(true);
    m_list->setIconSize({16, 16});
    m_list->setTextElideMode(Qt::ElideMiddle);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(8);
    if (!hint.isEmpty())
        column->addWidget(factsLabel(hint, QPalette::PlaceholderText));
    column->addWidget(m_list);
    auto *line = new QHBoxLayout;
    QPushButton *addButton =
        button(m_hooks.isTyped ? qtTrId("KPPrefAddRule") : qtTrId("KPPrefAdd"));
    if (m_hooks.isTyped) {
        m_field = new QLineEdit;
        m_field->setPlaceholderText(qtTrId("KPPrefRuleHint"));
        m_field->setAccessibleName(qtTrId("KPPrefRuleHint"));
        line->addWidget(m_field, 1);
        connect(m_field, &QLineEdit::returnPressed, this, [this] { add(m_field->text()); });
        connect(addButton, &QPushButton::clicked, this, [this] { add(m_field->text()); });
    } else {
        connect(addButton, &QPushButton::clicked, this, &KPListEditor::choose);
    }
    line->addWidget(addButton);
    line->addWidget(m_remove);
    if (!m_hooks.isTyped)
        line->addStretch(1);
    line->addWidget(m_reset);
    column->addLayout(line);
    m_problem->hide();
    column->addWidget(m_problem);

    connect(m_remove, &QPushButton::clicked, this, &KPListEditor::removeSelected);
    connect(m_reset, &QPushButton::clicked, this, [this] {
        m_hooks.reset();
        refresh();
    });
    connect(m_list, &QListWidget::itemSelectionChanged, this, &KPListEditor::updateButtons);
    auto *key = new QShortcut(QKeySequence::Delete, m_list);
    key->setContext(Qt::WidgetShortcut);
    connect(key, &QShortcut::activated, this, &KPListEditor::removeSelected);
    refresh();
}

void KPListEditor::refresh()
{
    const QStringList entries = m_hooks.entries();
    m_list->clear();
    for (const QString &entry : entries) {
        const QString shown = XPPath::printable(XPFolders::abbreviateWithTilde(entry));
        auto *item = new QListWidgetItem(shown, m_list);
        if (!m_hooks.isTyped)
            item->setIcon(KPDocIcons::symbol(QStringLiteral("folder")));
        item->setData(Qt::UserRole, entry);
        item->setToolTip(shown);
    }
    const auto rows = std::clamp(static_cast<int>(entries.size()), fewestRows, mostRows);
    const int row = entries.isEmpty() ? fontMetrics().height() + 4 : m_list->sizeHintForRow(0);
    m_list->setFixedHeight(rows * row + 2 * m_list->frameWidth() + 4);
    updateButtons();
}

void KPListEditor::updateButtons()
{
    const auto chosen = m_list->selectedItems().size();
    m_remove->setEnabled(chosen > 0 && (!m_hooks.keepsOne || chosen < m_list->count()));
    m_reset->setVisible(m_hooks.isFactory && !m_hooks.isFactory());
}

void KPListEditor::choose()
{
    auto *dialog = new QFileDialog(this, qtTrId("KPPrefAddFolder"), XPFolders::home());
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QFileDialog::fileSelected, this, &KPListEditor::add);
    dialog->open();
}

void KPListEditor::add(const QString &entry)
{
    const QString problem = entry.isEmpty() ? QString() : m_hooks.add(entry);
    m_problem->setText(problem);
    m_problem->setVisible(!problem.isEmpty());
    if (m_field && problem.isEmpty())
        m_field->clear();
    refresh();
}

void KPListEditor::removeSelected()
{
    if (!m_remove->isEnabled())
        return;
    QStringList entries;
    for (const QListWidgetItem *item : m_list->selectedItems())
        entries.append(item->data(Qt::UserRole).toString());
    m_hooks.remove(entries);
    refresh();
}

#include "KPShortcutsWindow.h"

#include "KPDocIcons.h"
#include "XPText.h"

#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

static constexpr QSize usualSize{480, 600};

static QString plain(QString text)
{
    text = text.section(u'\t', 0, 0);
    return text.remove(u'&');
}

// A key that a view takes by itself stands in the text, after a tab character.
static QString keyOf(const QAction *action)
{
    if (!action->shortcut().isEmpty())
        return action->shortcut().toString(QKeySequence::NativeText);
    return action->text().section(u'\t', 1, 1);
}

static void addMenu(const QMenu *menu, QTreeWidget *list)
{
    auto *heading = new QTreeWidgetItem(list, {plain(menu->title())});
    QFont bold = list->font();
    bold.setWeight(QFont::DemiBold);
    heading->setFont(0, bold);
    heading->setFlags(Qt::ItemIsEnabled);
    for (const QAction *action : menu->actions()) {
        if (const QString key = keyOf(action); !key.isEmpty())
            new QTreeWidgetItem(heading, {plain(action->text()), key});
    }
    if (heading->childCount() == 0)
        delete heading;
}

KPShortcutsWindow::KPShortcutsWindow(const QMenuBar *bar, QWidget *parent)
    : QDialog(parent), m_list(new QTreeWidget)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(qtTrId("KPShortcutsTitle"));
    resize(usualSize);
    auto *field = new QLineEdit;
    field->setPlaceholderText(qtTrId("KPShortcutsSearch"));
    field->setAccessibleName(qtTrId("KPShortcutsSearch"));
    field->setClearButtonEnabled(true);
    field->addAction(KPDocIcons::symbol(QStringLiteral("search")), QLineEdit::LeadingPosition);
    m_list->setAccessibleName(qtTrId("KPShortcutsTitle"));
    m_list->setUniformRowHeights(true);
    m_list->setHeaderLabels({qtTrId("KPShortcutsCommand"), qtTrId("KPShortcutsKey")});
    m_list->header()->setStretchLastSection(false);
    m_list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_list->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    m_list->setRootIsDecorated(false);
    for (const QAction *action : bar->actions()) {
        if (action->menu())
            addMenu(action->menu(), m_list);
    }
    m_list->expandAll();
    auto *close = new QPushButton(qtTrId("KPDone"));
    close->setAutoDefault(false);
    connect(close, &QPushButton::clicked, this, &QDialog::accept);
    connect(field, &QLineEdit::textChanged, this, &KPShortcutsWindow::search);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(16, 16, 16, 16);
    column->setSpacing(12);
    column->addWidget(field);
    column->addWidget(m_list, 1);
    column->addWidget(close, 0, Qt::AlignRight);
}

void KPShortcutsWindow::search(const QString &words)
{
    const QString wanted = foldText(words.trimmed());
    for (int menu = 0; menu < m_list->topLevelItemCount(); ++menu) {
        QTreeWidgetItem *heading = m_list->topLevelItem(menu);
        bool hasAny = false;
        for (int row = 0; row < heading->childCount(); ++row) {
            QTreeWidgetItem *item = heading->child(row);
            const bool isFound = foldText(item->text(0) + u' ' + item->text(1)).contains(wanted);
            item->setHidden(!isFound);
            hasAny = hasAny || isFound;
        }
        heading->setHidden(!hasAny);
    }
}

#include "KPBookmarkPanel.h"

#include "KPBookmarkCommands.h"
#include "KPBookmarkModel.h"

#include <QBoxLayout>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QStyledItemDelegate>
#include <QTreeView>

namespace {

// Rows of 18 points, more where the text needs it.
class RowDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        const QSize size = QStyledItemDelegate::sizeHint(option, index);
        return {size.width(), std::max(18, option.fontMetrics.height() + 2)};
    }
};

} // namespace

KPBookmarkPanel::KPBookmarkPanel(KPBookmarkCommands &commands, QWidget *parent)
    : QWidget(parent), m_commands(commands), m_model(new KPBookmarkModel(commands, this)),
      m_outline(new QTreeView(this)), m_empty(new QLabel(qtTrId("KPBookmarksEmpty"), this))
{
    m_outline->setModel(m_model);
    m_outline->setItemDelegate(new RowDelegate(m_outline));
    m_outline->setAccessibleName(qtTrId("KPBookmarkBar"));
    m_outline->setIndentation(12);
    m_outline->setUniformRowHeights(true);
    m_outline->setFrameShape(QFrame::NoFrame);
    m_outline->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_outline->setEditTriggers(QAbstractItemView::EditKeyPressed);
    m_outline->setExpandsOnDoubleClick(false);
    m_outline->setDragDropMode(QAbstractItemView::DragDrop);
    m_outline->setDefaultDropAction(Qt::MoveAction);
    m_outline->setContextMenuPolicy(Qt::CustomContextMenu);
    m_outline->installEventFilter(this);
    m_empty->setAlignment(Qt::AlignCenter);
    m_empty->setWordWrap(true);

    auto *buttons = new QHBoxLayout;
    buttons->setSpacing(8);
    const auto addButton = [this, buttons](const QString &text, auto run) {
        auto *button = new QPushButton(text, this);
        connect(button, &QPushButton::clicked, this, run);
        buttons->addWidget(button);
        return button;
    };
    addButton(qtTrId("KPBookmarkAdd"), [this] { rename(m_commands.saveCurrent()); });
    addButton(qtTrId("KPBookmarkNewFolder"), [this] { rename(m_commands.addFolder()); });
    buttons->addStretch();
    addButton(qtTrId("KPBookmarkImport"), [this] { m_commands.importFile(); });
    addButton(qtTrId("KPBookmarkExport"), [this] { m_commands.exportFile(selected()); });
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(12, 12, 12, 12);
    column->setSpacing(8);
    column->addWidget(m_empty);
    column->addWidget(m_outline, 1);
    column->addLayout(buttons);

    connect(m_outline, &QTreeView::doubleClicked, this, &KPBookmarkPanel::run);
    connect(m_outline, &QWidget::customContextMenuRequested, this, &KPBookmarkPanel::showMenu);
    // Later: a change may come out of the outline's own editor or drag.
    connect(&commands.bookmarks(), &KPBookmarks::changed, this, &KPBookmarkPanel::rebuild,
            Qt::QueuedConnection);
    connect(&commands, &KPBookmarkCommands::renameRequested, this, &KPBookmarkPanel::rename);
    rebuild();
}

KPBookmarkPanel::~KPBookmarkPanel() = default;

void KPBookmarkPanel::rebuild()
{
    // Folders that stood open stay so, and what was selected stays selected.
    QStringList open;
    for (QModelIndex index = m_model->index(0, 0); index.isValid();
         index = m_outline->indexBelow(index)) {
        if (m_outline->isExpanded(index))
            open.append(index.data(KPBookmarkModel::Identifier).toString());
    }
    const QStringList chosen = selected();
    m_model->rebuild();
    m_outline->header()->resizeSection(0, 260);
    for (const QString &identifier : open)
        m_outline->expand(m_model->indexOf(identifier));
    for (const QString &identifier : chosen) {
        const QModelIndex index = m_model->indexOf(identifier);
        m_outline->selectionModel()->select(index, QItemSelectionModel::Select |
                                                       QItemSelectionModel::Rows);
    }
    m_empty->setVisible(m_model->rowCount() == 0);
}

QStringList KPBookmarkPanel::selected() const
{
    QStringList identifiers;
    for (const QModelIndex &index : m_outline->selectionModel()->selectedRows())
        identifiers.append(index.data(KPBookmarkModel::Identifier).toString());
    return identifiers;
}

void KPBookmarkPanel::clearSelection()
{
    m_outline->clearSelection();
}

void KPBookmarkPanel::renameSelected()
{
    rename(selected().value(0));
}

void KPBookmarkPanel::rename(const QString &identifier)
{
    if (identifier.isEmpty() || !isVisible())
        return;
    rebuild(); // it may have been made just now
    const QModelIndex index = m_model->indexOf(identifier);
    m_outline->setCurrentIndex(index);
    m_outline->edit(index);
}

void KPBookmarkPanel::run(const QModelIndex &index)
{
    const QString identifier =
        index.siblingAtColumn(0).data(KPBookmarkModel::Identifier).toString();
    const KPBookmark *bookmark = m_commands.bookmarks().find(identifier);
    if (bookmark && bookmark->isFolder)
        m_outline->setExpanded(index.siblingAtColumn(0),
                               !m_outline->isExpanded(index.siblingAtColumn(0)));
    else
        m_commands.run(identifier, QGuiApplication::keyboardModifiers().testFlag(Qt::AltModifier));
}

void KPBookmarkPanel::showMenu(const QPoint &position)
{
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    m_commands.fillMenu(menu, selected());
    if (!menu->isEmpty())
        menu->popup(m_outline->viewport()->mapToGlobal(position));
    else
        menu->deleteLater();
}

bool KPBookmarkPanel::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    const int key = static_cast<const QKeyEvent *>(event)->key();
    if (key == Qt::Key_Delete && !selected().isEmpty()) {
        m_commands.remove(selected());
        return true;
    }
    if ((key == Qt::Key_Return || key == Qt::Key_Enter) && m_outline->currentIndex().isValid()) {
        run(m_outline->currentIndex());
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

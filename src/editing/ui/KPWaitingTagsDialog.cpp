#include "KPWaitingTagsDialog.h"

#include "KPDocServices.h"
#include "KPLook.h"
#include "XPFolders.h"
#include "XPMutex.h"
#include "XPPath.h"
#include "XPPrompts.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

using KPWaitingTagChanges::Change;

static constexpr qsizetype shownAtOnce = 10;

static QString textOf(const Change &change)
{
    const QString from = XPPath::printable(change.rename.allFrom().join(QStringLiteral(", ")));
    return change.rename.isDeletion()
               ? qtTrId("KPUndoDeleteTag").arg(from)
               : qtTrId("KPUndoRenameTag").arg(from, XPPath::printable(change.rename.to));
}

KPWaitingTagsDialog::KPWaitingTagsDialog(QWidget *window)
    : QDialog(window), m_list(new QTreeWidget), m_note(new QLabel), m_forget(new QPushButton)
{
    setObjectName(QStringLiteral("KPWaitingTagsDialog"));
    setWindowTitle(qtTrId("KPWaitingTagsTitle"));
    m_list->setAccessibleName(qtTrId("KPWaitingTagsTitle"));
    m_list->setHeaderHidden(true);
    m_list->setTextElideMode(Qt::ElideMiddle);
    m_list->setUniformRowHeights(true);
    m_note->setTextFormat(Qt::PlainText);
    m_note->setWordWrap(true);
    m_note->setForegroundRole(QPalette::PlaceholderText);
    m_note->setFont(KPLook::font(KPLook::Type::Facts));
    m_forget->setObjectName(QStringLiteral("forget"));
    m_forget->setText(qtTrId("KPWaitingTagsForget"));
    m_forget->setAutoDefault(false);
    auto *buttons = new QDialogButtonBox;
    buttons->addButton(m_forget, QDialogButtonBox::ActionRole);
    // Last: Tab would pass over it otherwise.
    buttons->addButton(QDialogButtonBox::Close)->setText(qtTrId("KPClose"));
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(16, 16, 16, 12);
    column->setSpacing(8);
    column->addWidget(m_list, 1);
    column->addWidget(m_note);
    column->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_forget, &QPushButton::clicked, this, &KPWaitingTagsDialog::forget);
    connect(m_list, &QTreeWidget::currentItemChanged, this,
            [this](const QTreeWidgetItem *current) { m_forget->setEnabled(current != nullptr); });
    resize(520, 360);
    showChanges(QList<Change>());
    read();
}

void KPWaitingTagsDialog::read()
{
    xpGuiThread.assertHere();
    auto changes = std::make_shared<XPResult<QList<Change>>>(QList<Change>());
    KPDocServices::current().runFileWork([changes] { *changes = KPWaitingTagChanges::read(); },
                                         [self = QPointer(this), changes] {
                                             if (self)
                                                 self->showChanges(*changes);
                                         });
}

void KPWaitingTagsDialog::showChanges(const XPResult<QList<Change>> &changes)
{
    m_list->clear();
    m_changes = changes.valueOr({});
    for (const Change &change : m_changes) {
        auto *row = new QTreeWidgetItem(m_list, {textOf(change)});
        for (const QString &path : change.paths)
            row->addChild(
                new QTreeWidgetItem({XPPath::printable(XPFolders::abbreviateWithTilde(path))}));
    }
    m_note->setText(!changes            ? changes.error().reason()
                    : m_changes.empty() ? qtTrId("KPWaitingTagsNone")
                                        : qtTrId("KPWaitingTagsHint"));
    m_list->setCurrentItem(m_list->topLevelItem(0));
    m_forget->setEnabled(m_list->currentItem() != nullptr);
}

void KPWaitingTagsDialog::forget()
{
    xpGuiThread.assertHere();
    const QTreeWidgetItem *current = m_list->currentItem();
    if (!current)
        return;
    const QTreeWidgetItem *row = current->parent() ? current->parent() : current;
    const KPTagRename rename =
        m_changes.at(m_list->indexOfTopLevelItem(const_cast<QTreeWidgetItem *>(row))).rename;
    auto error = std::make_shared<std::optional<XPError>>();
    KPDocServices::current().runFileWork(
        [rename, error] {
            if (const auto taken = KPWaitingTagChanges::takeBack(rename); !taken)
                *error = taken.error();
        },
        [self = QPointer(this), error] {
            xpGuiThread.assertHere();
            if (*error)
                XPPrompts::current().alert(qtTrId("KPTagsCannotWait"), (*error)->reason());
            if (self)
                self->read();
        });
}

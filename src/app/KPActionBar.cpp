#include "KPActionBar.h"

#include "KPCommandTable.h"
#include "KPLook.h"

#include <QPainter>
#include <QToolBar>
#include <QVBoxLayout>
#include <array>

// By panel; an empty id ends a group.
static constexpr std::array commandIds{
    "KPTagPanelShown",
    "KPUntaggedDocuments",
    "", // tags
    "KPLocationsPanelShown",
    "KPGoUp",
    "KPTodaysFiledDocuments",
    "", // places
    "KPOpen",
    "KPReveal",
    "KPFlag",
    "KPHide",
    "KPFileDocuments",
    "KPMoveTo",
    "KPCopyTo",
    "KPMail",
    "KPPrint",
    "KPExportList",
    "KPMoveToTrash",
    "", // documents
    "KPEditTags",
    "KPRenameFile",
    "KPInspectorShown" // information
};

KPActionBar::KPActionBar(const KPCommands &commands, QWidget *parent) : QWidget(parent)
{
    setAccessibleName(qtTrId("KPActionBar"));
    // A toolbar of Qt's has the menu of what does not fit.
    auto *bar = new QToolBar(this);
    bar->setMovable(false);
    bar->setIconSize(QSize(16, 16));
    for (const char *id : commandIds) {
        if (!*id)
            bar->addSeparator();
        else if (QAction *action = commands.action(id))
            bar->addAction(action);
    }
    auto *row = new QVBoxLayout(this);
    row->setContentsMargins(8, 0, 8, 0);
    row->addWidget(bar);
    setFixedHeight(KPLook::crumbBarHeight);
}

void KPActionBar::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Window));
    painter.fillRect(QRect(0, height() - 1, width(), 1), KPLook::line(palette()));
}

// KPCrumbTrail: the menus of its steps.
#include "KPCrumbButton.h"
#include "KPCrumbController.h"
#include "KPCrumbTrail.h"
#include "KPDateRangeDialog.h"
#include "KPFolderMenu.h"
#include "KPLocationItem.h"

#include <QGuiApplication>
#include <QMenu>
#include <QToolButton>

// Menus show a text as it is, not its ampersands as marks of keys.
static QString menuText(const QString &text)
{
    return QString(text).replace(u'&', QStringLiteral("&&"));
}

void KPCrumbTrail::choose(const KPCrumbChoice &choice)
{
    const bool excludes = QGuiApplication::keyboardModifiers().testFlag(Qt::AltModifier);
    if (choice.asksForDates)
        askForDates();
    else if (excludes && choice.excluding)
        m_controller.applyState(choice.excluding);
    else if (choice.source)
        m_controller.showSource(choice.source);
    else if (choice.location)
        m_controller.showLocation(choice.location);
    else if (choice.state)
        m_controller.applyState(choice.state);
}

// NOLINTNEXTLINE(misc-no-recursion): two levels
void KPCrumbTrail::fill(QMenu *menu, const QList<KPCrumbChoice> &choices)
{
    for (const KPCrumbChoice &choice : choices) {
        if (choice.beginsGroup)
            menu->addSeparator();
        if (!choice.below.isEmpty()) {
            fill(menu->addMenu(menuText(choice.title)), choice.below);
            continue;
        }
        QAction *action = menu->addAction(menuText(choice.text));
        action->setCheckable(choice.isChecked);
        action->setChecked(choice.isChecked);
        connect(action, &QAction::triggered, this, [this, choice] { choose(choice); });
    }
}

void KPCrumbTrail::fill(QMenu *menu, const KPCrumb &crumb)
{
    if (crumb.negated) {
        QAction *negate = menu->addAction(crumb.isExcluding() ? qtTrId("KPCrumbInclude")
                                                              : qtTrId("KPCrumbExclude"));
        connect(negate, &QAction::triggered, this,
                [this, state = crumb.negated] { m_controller.applyState(state); });
    }
    if (crumb.without) {
        QAction *remove = menu->addAction(qtTrId("KPCrumbRemove"));
        connect(remove, &QAction::triggered, this,
                [this, state = crumb.without] { m_controller.applyState(state); });
    }
    menu->addSeparator();
    if (crumb.kind == KPCrumb::Kind::Location)
        addFolders(menu);
    fill(menu, m_crumbs.choices(crumb, m_controller));
    if (crumb.kind == KPCrumb::Kind::Location && !m_controller.recentLocations().isEmpty())
        connect(menu->addAction(qtTrId("KPCrumbClearRecent")), &QAction::triggered, &m_controller,
                &KPCrumbController::clearRecentLocations);
}

void KPCrumbTrail::addFolders(QMenu *menu)
{
    const auto place = m_controller.currentLocation();
    if (!place || !place->isSingleFolder)
        return;
    auto *folders = new KPFolderMenu(place->path, menu);
    connect(folders, &KPFolderMenu::chosen, this, [this](const QString &folder) {
        m_controller.showLocation(KPLocationItem::withFolder(folder));
    });
    menu->addMenu(folders);
}

QMenu *KPCrumbTrail::menuOf(const KPCrumb &crumb)
{
    auto *menu = new QMenu(this);
    fill(menu, crumb);
    return menu;
}

QMenu *KPCrumbTrail::menuOfAdditions()
{
    auto *menu = new QMenu(this);
    fill(menu, m_crumbs.additions(m_controller));
    return menu;
}

void KPCrumbTrail::open(KPCrumbButton *button)
{
    QMenu *menu = menuOf(button->crumb());
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(button->mapToGlobal(QPoint(0, button->height() + 2)));
}

void KPCrumbTrail::fillOverflow()
{
    QMenu *menu = m_overflow->menu();
    menu->clear();
    for (const KPCrumbButton *button : m_buttons) {
        if (!button->isHidden())
            continue;
        QMenu *below = menu->addMenu(menuText(button->crumb().spoken));
        fill(below, button->crumb());
    }
}

void KPCrumbTrail::askForDates()
{
    auto *dialog = new KPDateRangeDialog(window());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, [this, dialog] {
        const KPSearchDates::Range range = dialog->range();
        m_controller.applyState(m_crumbs.withDates(*range.start, range.end));
    });
    dialog->open();
}

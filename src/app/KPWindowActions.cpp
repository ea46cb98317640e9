#include "KPWindowActions.h"

#include "KPController.h"
#include "KPDocIcons.h"

#include <QMenuBar>
#include <QUndoStack>
#include <array>
#include <cmath>

namespace {

enum MenuNumber { File, Edit, Documents, View, Help, MenuCount };

struct Command
{
    MenuNumber menu;
    const char *text;
    QKeySequence shortcut;
    void (KPController::*run)();
    bool onSelection = false; // needs one, and is in the context menu too
    bool endsGroup = false;
    const char *key = ""; // shown only: the grid itself takes it, as fields need it for text
};

} // namespace

static constexpr std::array<const char *, MenuCount> menuTexts{
    QT_TRID_NOOP("KPMenuFile"), QT_TRID_NOOP("KPMenuEdit"), QT_TRID_NOOP("KPMenuDocuments"),
    QT_TRID_NOOP("KPMenuView"), QT_TRID_NOOP("KPMenuHelp")};

static QList<Command> commands()
{
    using C = KPController;
    constexpr auto ctrlShift = Qt::CTRL | Qt::SHIFT;
    return {
        {File, QT_TRID_NOOP("KPOpenFolder"), QKeySequence::Open, &C::openFolder},
        {File, QT_TRID_NOOP("KPIndexFolder"), {}, &C::indexFolders, false, true},
        {File, QT_TRID_NOOP("KPQuit"), QKeySequence(Qt::CTRL | Qt::Key_Q), &C::quit},
        {Edit, QT_TRID_NOOP("KPUndo"), QKeySequence::Undo, &C::undo},
        {Edit, QT_TRID_NOOP("KPRedo"), QKeySequence(ctrlShift | Qt::Key_Z), &C::redo, false, true},
        {Edit, QT_TRID_NOOP("KPCopyFiles"), QKeySequence::Copy, &C::copySelected, true},
        {Edit, QT_TRID_NOOP("KPSelectAll"), QKeySequence::SelectAll, &C::selectAll, false, true},
        {Edit, QT_TRID_NOOP("KPFind"), QKeySequence::Find, &C::search},
        {Edit, QT_TRID_NOOP("KPFindTags"), QKeySequence(ctrlShift | Qt::Key_F), &C::filterTags},
        {Documents, QT_TRID_NOOP("KPOpen"), {}, &C::openSelected, true, false, "Return"},
        {Documents, QT_TRID_NOOP("KPReveal"), QKeySequence(Qt::CTRL | Qt::Key_R),
         &C::revealSelected, true, true},
        {Documents, QT_TRID_NOOP("KPEditTags"), QKeySequence(Qt::CTRL | Qt::Key_T), &C::editTags,
         true, true},
        {Documents, QT_TRID_NOOP("KPFileDocuments"), QKeySequence(Qt::CTRL | Qt::Key_E),
         &C::fileSelected, true},
        {Documents, QT_TRID_NOOP("KPMoveTo"), QKeySequence(ctrlShift | Qt::Key_M), &C::moveSelected,
         true},
        {Documents, QT_TRID_NOOP("KPCopyTo"), {}, &C::copySelectedTo, true, true},
        {Documents, QT_TRID_NOOP("KPRenameFile"), QKeySequence(Qt::Key_F2), &C::renameSelected,
         true},
        {Documents, QT_TRID_NOOP("KPMoveToTrash"), QKeySequence::Delete, &C::trashSelected, true,
         true},
        {View, QT_TRID_NOOP("KPZoomIn"), QKeySequence::ZoomIn, &C::zoomIn},
        {View, QT_TRID_NOOP("KPZoomOut"), QKeySequence::ZoomOut, &C::zoomOut, false, true},
        {View, QT_TRID_NOOP("KPInspectorShown"), QKeySequence(Qt::CTRL | Qt::Key_I),
         &C::toggleInspector},
        {Help, QT_TRID_NOOP("KPAbout"), {}, &C::showAbout},
    };
}

KPWindowActions::KPWindowActions(KPController *controller, QUndoStack *history)
    : m_controller(controller)
{
    buildMenus();
    buildRateMenu();
    buildSortMenu();
    connectHistory(history);
    setHasSelection(false);
}

void KPWindowActions::buildMenus()
{
    for (const char *text : menuTexts)
        m_menus.append(m_controller->menuBar()->addMenu(qtTrId(text)));
    for (const Command &command : commands()) {
        QMenu *menu = m_menus[command.menu];
        QString text = qtTrId(command.text);
        if (*command.key)
            text +=
                u'\t' + QKeySequence(QLatin1String(command.key)).toString(QKeySequence::NativeText);
        QAction *action = menu->addAction(text);
        action->setShortcut(command.shortcut);
        QObject::connect(action, &QAction::triggered, m_controller, command.run);
        m_byText.insert(QLatin1String(command.text), action);
        if (command.onSelection)
            m_onSelection.append(action);
        if (command.endsGroup)
            menu->addSeparator();
    }
    inspectorAction()->setCheckable(true);
    inspectorAction()->setIcon(KPDocIcons::symbol(QStringLiteral("inspector")));
    inspectorAction()->setIconVisibleInMenu(false);
}

void KPWindowActions::buildRateMenu()
{
    m_rateMenu = m_menus[Documents]->addMenu(qtTrId("KPRate"));
    auto *group = new QActionGroup(m_rateMenu);
    group->setExclusionPolicy(QActionGroup::ExclusionPolicy::ExclusiveOptional);
    for (int stars = 0; stars <= 5; ++stars) {
        const QString text = stars ? qtTrId("KPStars", stars) : qtTrId("KPNoStars");
        QAction *action =
            m_rateMenu->addAction(text + QStringLiteral("\t") + QString::number(stars));
        action->setCheckable(true);
        group->addAction(action);
        QObject::connect(action, &QAction::triggered, m_controller,
                         [this, stars] { m_controller->rateSelected(stars); });
        m_ratings.append(action);
    }
}

void KPWindowActions::buildSortMenu()
{
    struct Entry
    {
        const char *text;
        KPSortKey::Field key;
    };
    static constexpr Entry entries[] = {
        {QT_TRID_NOOP("KPSortName"), KPSortKey::Field::Name},
        {QT_TRID_NOOP("KPSortModified"), KPSortKey::Field::Modified},
        {QT_TRID_NOOP("KPSortRating"), KPSortKey::Field::Rating},
        {QT_TRID_NOOP("KPSortSize"), KPSortKey::Field::Size},
    };
    m_menus[View]->addSeparator();
    m_sortMenu = m_menus[View]->addMenu(qtTrId("KPSortBy"));
    m_keys = new QActionGroup(m_sortMenu);
    for (const Entry &entry : entries) {
        QAction *action = m_keys->addAction(qtTrId(entry.text));
        action->setData(static_cast<int>(entry.key));
    }
    m_directions = new QActionGroup(m_sortMenu);
    m_directions->addAction(qtTrId("KPSortAscending"))->setData(true);
    m_directions->addAction(qtTrId("KPSortDescending"))->setData(false);
    m_sortMenu->addActions(m_keys->actions());
    m_sortMenu->addSeparator();
    m_sortMenu->addActions(m_directions->actions());
    for (QActionGroup *group : {m_keys, m_directions}) {
        for (QAction *action : group->actions())
            action->setCheckable(true);
    }
    QObject::connect(m_keys, &QActionGroup::triggered, m_controller, [this](QAction *chosen) {
        // What one looks for comes first: names from A, but the newest, best and largest.
        const auto key = static_cast<KPSortKey::Field>(chosen->data().toInt());
        m_controller->setOrder({key, key == KPSortKey::Field::Name});
    });
    QObject::connect(m_directions, &QActionGroup::triggered, m_controller, [this](QAction *chosen) {
        const auto key = static_cast<KPSortKey::Field>(m_keys->checkedAction()->data().toInt());
        m_controller->setOrder({key, chosen->data().toBool()});
    });
}

void KPWindowActions::connectHistory(QUndoStack *history)
{
    const auto describe = [](QAction *action, const char *plain, const char *named) {
        return [action, plain, named](const QString &what) {
            action->setText(what.isEmpty() ? qtTrId(plain) : qtTrId(named).arg(what));
        };
    };
    QAction *undo = m_byText.value(QStringLiteral("KPUndo"));
    QAction *redo = m_byText.value(QStringLiteral("KPRedo"));
    undo->setEnabled(false);
    redo->setEnabled(false);
    QObject::connect(history, &QUndoStack::canUndoChanged, undo, &QAction::setEnabled);
    QObject::connect(history, &QUndoStack::canRedoChanged, redo, &QAction::setEnabled);
    QObject::connect(history, &QUndoStack::undoTextChanged, undo,
                     describe(undo, QT_TRID_NOOP("KPUndo"), QT_TRID_NOOP("KPUndoNamed")));
    QObject::connect(history, &QUndoStack::redoTextChanged, redo,
                     describe(redo, QT_TRID_NOOP("KPRedo"), QT_TRID_NOOP("KPRedoNamed")));
}

// The application's state.

void KPWindowActions::popUp(const QPoint &globalPosition)
{
    auto *menu = new QMenu(m_controller);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(m_byText.value(QStringLiteral("KPOpen")));
    menu->addAction(m_byText.value(QStringLiteral("KPReveal")));
    menu->addSeparator();
    menu->addAction(m_byText.value(QStringLiteral("KPEditTags")));
    menu->addMenu(m_rateMenu);
    menu->addSeparator();
    menu->addAction(m_byText.value(QStringLiteral("KPCopyFiles")));
    menu->popup(globalPosition);
}

void KPWindowActions::setHasSelection(bool has)
{
    for (QAction *action : m_onSelection)
        action->setEnabled(has);
    m_rateMenu->setEnabled(has);
}

void KPWindowActions::setRating(std::optional<double> rating)
{
    for (int stars = 0; stars < m_ratings.size(); ++stars)
        m_ratings[stars]->setChecked(rating && std::lround(*rating) == stars);
}

void KPWindowActions::showOrder(const KPSortKey &order)
{
    for (QAction *action : m_keys->actions())
        action->setChecked(action->data().toInt() == static_cast<int>(order.field));
    for (QAction *action : m_directions->actions())
        action->setChecked(action->data().toBool() == order.ascending);
}

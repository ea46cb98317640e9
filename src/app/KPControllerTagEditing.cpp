// What the window does to have tags changed: the editor, the library's tags, what waited.
#include "KPController.h"
#include "KPEditHistory.h"
#include "KPIndexMonitor.h"
#include "KPLibraryController.h"
#include "KPSearcher.h"
#include "KPTagEditing.h"
#include "KPTagsWindow.h"

void KPController::connectTagEditing()
{
    m_edits->restore();
    m_tagEditing = std::make_unique<KPTagEditing>(m_edits.get(), m_worker.get(), this);
    connect(m_tagEditing.get(), &KPTagEditing::nextWanted, this,
            [this] { m_library->currentSearchController().modifySelectedBy(1, false, false); });
    connect(m_tagEditing.get(), &KPTagEditing::searchWanted, this, [this](const QStringList &tags) {
        const auto state = m_searcher->searchState();
        setSearchStateAndUpdateUI(
            (state ? state : KPSearchState::blankSearchState())->searchStateWithNewTags(tags),
            true);
    });
    if (!m_index)
        return;
    m_tagEditing->setMissingRoots([this] {
        QStringList missing;
        for (const IndexStatus::Root &root : m_index->status().roots) {
            if (root.state == IndexStatus::Root::State::Missing ||
                root.state == IndexStatus::Root::State::Silent)
                missing.append(root.path);
        }
        return missing;
    });
    connect(m_index, &KPIndexMonitor::changed, m_tagEditing.get(),
            &KPTagEditing::rootsMayHaveChanged);
}

void KPController::editTags()
{
    m_tagEditing->editTags(pathsOfSelection());
}

QList<KPCommand> KPController::tagCommands()
{
    return {
        {.id = QT_TRID_NOOP("KPTagPanel"),
         .menu = KPCommandMenu::Tags,
         .shortcut = QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_J),
         .run = [this] { m_tagEditing->togglePanel(pathsOfSelection()); },
         .state =
             [this] {
                 return KPCommandState{.isChecked = m_tagEditing && m_tagEditing->isPanelShown()};
             }},
        {.id = QT_TRID_NOOP("KPTagSearchCommand"),
         .menu = KPCommandMenu::Tags,
         .shortcut = QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_F),
         .run = [this] { m_tagEditing->searchForTags(); }},
        {.id = QT_TRID_NOOP("KPAllTags"),
         .menu = KPCommandMenu::Tags,
         .run =
             [this] {
                 if (!m_tagsWindow)
                     m_tagsWindow = std::make_unique<KPTagsWindow>(*this, this);
                 m_tagsWindow->open();
             }},
        {.id = QT_TRID_NOOP("KPWaitingTags"),
         .menu = KPCommandMenu::Tags,
         .run = [this] { m_tagEditing->showWaiting(); }},
    };
}

// What the window does to have tags changed: the editor, the library's tags, what waited.
#include "KPController.h"
#include "KPEditHistory.h"
#include "KPIndexMonitor.h"
#include "KPTagEditing.h"

void KPController::connectTagEditing()
{
    m_edits->restore();
    m_tagEditing = std::make_unique<KPTagEditing>(m_edits.get(), m_worker.get(), this);
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

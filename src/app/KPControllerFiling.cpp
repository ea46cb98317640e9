// How the commands that file, move and throw away documents see the window.
#include "KPController.h"
#include "KPDocCache.h"
#include "KPDocsView.h"
#include "KPDocumentTargets.h"
#include "KPEditHistory.h"
#include "KPFilingCommands.h"

namespace {

// The selection.
class SelectedDocuments : public KPDocumentTargets
{
public:
    SelectedDocuments(KPController &window, const KPDocsView &view) : m_window(window), m_view(view)
    {
    }

    QList<KPDoc *> documents() const override
    {
        KPDoc::Docs docs;
        for (const QString &path : m_view.selectedPaths()) {
            if (KPDoc *doc = KPDocCache::docAtPathIfExists(path))
                docs.append(doc);
        }
        return docs;
    }
    qsizetype documentCount() const override { return m_view.selectedCount(); }
    QWidget *window() const override { return &m_window; }
    void filesMovedOrDeleted() override { m_window.commands().update(); }

private:
    KPController &m_window;
    const KPDocsView &m_view;
};

} // namespace

void KPController::makeFilingCommands()
{
    m_targets = std::make_unique<SelectedDocuments>(*this, *m_view);
    m_filing = std::make_unique<KPFilingCommands>(*m_targets, *m_edits);
}

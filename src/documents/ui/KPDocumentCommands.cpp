#include "KPDocumentCommands.h"

#include "KPArrangedDocs.h"
#include "KPCombining.h"
#include "KPDocumentTargets.h"
#include "KPMailing.h"
#include "KPPrinting.h"
#include "KPResultsExport.h"
#include "KPTextRecognising.h"

#include <QPointer>

using Menu = KPCommandMenu;

static constexpr qsizetype mostLookedAt = 50; // for the state of a command

KPDocumentCommands::KPDocumentCommands(KPDocumentTargets &targets, KPArrangedDocs &results,
                                       QUndoStack &history, QObject *parent)
    : QObject(parent), m_targets(targets), m_results(results), m_history(history)
{
}

QStringList KPDocumentCommands::paths() const
{
    QStringList paths;
    for (const KPDoc *doc : m_targets.documents())
        paths.append(doc->filePath());
    return paths;
}

// Of many documents nobody looks which they are only for the state of a menu.
bool KPDocumentCommands::hasPDFs(qsizetype wanted) const
{
    const qsizetype count = m_targets.documentCount();
    if (count < wanted || count > mostLookedAt)
        return count >= wanted;
    const QList<KPDoc *> docs = m_targets.documents();
    return std::count_if(docs.begin(), docs.end(), [](const KPDoc *doc) { return doc->isPDF(); }) >=
           wanted;
}

void KPDocumentCommands::mailSelectedAction()
{
    KPMailing::start(paths(), m_work);
}

void KPDocumentCommands::printSelectedAction()
{
    KPPrinting::start(paths(), m_work, m_targets.window());
}

void KPDocumentCommands::combineSelectedAction()
{
    KPCombining::start(m_targets.documents(), m_work, m_history, m_targets.window(),
                       [self = QPointer(this)] {
                           if (self)
                               self->m_targets.filesMovedOrDeleted();
                       });
}

void KPDocumentCommands::recogniseSelectedAction()
{
    KPTextRecognising::start(m_targets.documents(), m_work, m_history,
                             [self = QPointer(this)](const QString &message) {
                                 if (self)
                                     Q_EMIT self->said(message);
                             });
}

void KPDocumentCommands::exportSearchResultsAction()
{
    KPDoc::Docs docs;
    docs.reserve(m_results.count());
    for (int row = 0; row < m_results.count(); ++row)
        docs.append(m_results.at(row));
    KPResultsExport::start(docs, m_work, m_targets.window());
}

QList<KPCommand> KPDocumentCommands::commands()
{
    const auto call = [this](void (KPDocumentCommands::*member)()) {
        return [this, member] {
            xpGuiThread.assertHere();
            (this->*member)();
        };
    };
    const auto some = [this] { return KPCommandState{m_targets.documentCount() > 0}; };
    const auto pdfs = [this](qsizetype wanted) {
        return [this, wanted] { return KPCommandState{hasPDFs(wanted)}; };
    };
    return {
        {.id = QT_TRID_NOOP("KPMail"),
         .menu = Menu::Documents,
         .shortcut = QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_E),
         .run = call(&KPDocumentCommands::mailSelectedAction),
         .state = some,
         .symbol = "mail",
         .isOnDocuments = true},
        {.id = QT_TRID_NOOP("KPCombine"),
         .menu = Menu::Documents,
         .run = call(&KPDocumentCommands::combineSelectedAction),
         .state = pdfs(2),
         .isOnDocuments = true},
        {.id = QT_TRID_NOOP("KPRecogniseText"),
         .menu = Menu::Documents,
         .run = call(&KPDocumentCommands::recogniseSelectedAction),
         .state = pdfs(1),
         .isOnDocuments = true,
         .endsGroup = true},
        {.id = QT_TRID_NOOP("KPExportList"),
         .menu = Menu::File,
         .shortcut = QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S),
         .run = call(&KPDocumentCommands::exportSearchResultsAction),
         .state = [this] { return KPCommandState{m_results.count() > 0}; },
         .symbol = "export"},
        {.id = QT_TRID_NOOP("KPPrint"),
         .menu = Menu::File,
         .shortcut = QKeySequence::Print,
         .run = call(&KPDocumentCommands::printSelectedAction),
         .state = some,
         .symbol = "print",
         .isOnDocuments = true,
         .endsGroup = true},
    };
}

#include "KPTrashing.h"

#include "KPDoc.h"
#include "XPAuthenticatedTrash.h"
#include "XPLog.h"
#include "XPMainThread.h"
#include "XPPath.h"
#include "XPProgress.h"
#include "XPPrompts.h"

#include <QLocale>

using Kind = XPError::Kind;

KPTrashing::KPTrashing(const QList<KPDoc *> &docs, Done done)
    : m_docs(docs), m_done(std::move(done)), m_task(std::make_shared<XPProgressTask>())
{
}

void KPTrashing::start(const QList<KPDoc *> &docs, Done done)
{
    const std::shared_ptr<KPTrashing> self(new KPTrashing(docs, std::move(done)));
    self->m_task->title = qtTrId("KPTrashingItems").arg(QLocale().toString(docs.size()));
    self->m_task->note = qtTrId("XPStopIsSafe");
    self->m_task->total = docs.size();
    XPProgress::current().begin(self->m_task);
    self->next();
}

void KPTrashing::failed(const KPDoc *doc, const XPError &error)
{
    qCWarning(xpLog).noquote() << XPPath::printable(doc->filePath()) << error.message;
    m_failed.append(XPPath::printable(doc->fsDisplayName()));
    if (m_reason.isEmpty())
        m_reason = error.reason();
}

void KPTrashing::next()
{
    if (m_docs.isEmpty() || m_task->isStopAsked) {
        XPProgress::current().end(m_task);
        askForRights();
        return;
    }
    KPDoc *doc = m_docs.takeFirst();
    const QString path = doc->filePath();
    KPDoc::deleteDoc(doc, true,
                     [self = shared_from_this(), doc, path](const XPResult<QString> &inTrash) {
                         xpGuiThread.assertHere();
                         if (inTrash && !inTrash->isEmpty())
                             self->m_deeds.append({{XPFileDeed::Kind::Trashed, path, *inTrash}});
                         else if (!inTrash && inTrash.error().kind == Kind::NotPermitted)
                             self->m_denied.append(doc);
                         else if (!inTrash)
                             self->failed(doc, inTrash.error());
                         ++self->m_task->done;
                         // From the event loop: where file work is done at once, this would be deep
                         // in itself.
                         xpOnMainThread([self] {
                             xpGuiThread.assertHere();
                             self->next();
                         });
                     });
}

void KPTrashing::askForRights()
{
    if (m_denied.isEmpty()) {
        finish();
        return;
    }
    KPDoc *doc = m_denied.takeFirst();
    AuthenticatedMoveToTrash(
        doc->filePath(), [self = shared_from_this(), doc](const std::optional<XPError> &error) {
            xpGuiThread.assertHere();
            if (!error) {
                KPDoc::deleteDoc(doc, false, [](const XPResult<QString> &) {});
            } else {
                self->failed(doc, *error);
                if (error->kind == Kind::Cancelled) {
                    for (const KPDoc *other : std::exchange(self->m_denied, {}))
                        self->failed(other, *error);
                }
            }
            self->askForRights();
        });
}

void KPTrashing::finish()
{
    if (const auto count = static_cast<int>(m_failed.size())) {
        const QString title =
            count == 1 ? qtTrId("KPCannotTrash").arg(m_failed.first())
                       : qtTrId("KPCannotTrashSome", count).arg(QLocale().toString(count));
        XPPrompts::current().alert(title, m_reason);
    }
    m_done(m_deeds);
}

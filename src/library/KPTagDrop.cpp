#include "KPTagDrop.h"

#include "KPArrangedDocs.h"
#include "KPDocServices.h"
#include "KPTagMime.h"

#include <QDropEvent>
#include <QWidget>

KPDoc::Docs KPTagDrop::docsAt(const KPArrangedDocs &docs, int row)
{
    if (row < 0 || row >= docs.count() || docs.at(row)->isGone())
        return {};
    KPDoc *doc = docs.at(row);
    return docs.isSelected(doc) ? docs.selectedDocs() : KPDoc::Docs{doc};
}

bool KPTagDrop::drag(QDropEvent *event, const KPArrangedDocs &docs, int row)
{
    if (!KPTagMime::hasTags(event->mimeData()))
        return false;
    event->setDropAction(Qt::CopyAction);
    event->setAccepted(!docsAt(docs, row).isEmpty());
    return true;
}

bool KPTagDrop::drop(QDropEvent *event, const KPArrangedDocs &docs, int row, QWidget *view)
{
    if (!drag(event, docs, row))
        return false;
    KPDocServices::TagChange change;
    change.newTags = KPTagMime::tags(event->mimeData());
    for (const KPDoc *doc : docsAt(docs, row))
        change.filePaths.append(doc->filePath());
    change.confirmWhenChangingManyFiles = true;
    change.reportChangesOverView = view;
    if (!change.newTags.isEmpty() && !change.filePaths.isEmpty())
        KPDocServices::current().replaceOriginalTags(change);
    return true;
}

#pragma once

#include "KPDoc.h"

class KPArrangedDocs;
class QDropEvent;
class QWidget;

// Tags that are dragged onto documents, which get them: onto one that is selected, all that are.
// Threads: main.
namespace KPTagDrop {

// Who gets what is dropped on this row; nobody where there is none (-1).
KPDoc::Docs docsAt(const KPArrangedDocs &docs, int row);

// False: no tags are dragged. Else the event is accepted where there is a document.
bool drag(QDropEvent *event, const KPArrangedDocs &docs, int row);
// The same, and gives the tags; `view` is where to tell of it.
bool drop(QDropEvent *event, const KPArrangedDocs &docs, int row, QWidget *view);

} // namespace KPTagDrop

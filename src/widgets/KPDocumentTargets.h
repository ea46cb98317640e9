#pragma once

#include <QList>

class KPDoc;
class QWidget;

// The documents that a command works on, as the tables of commands see the view that shows them:
// the selection, or what a contextual menu was opened on.
// Threads: main.
class KPDocumentTargets
{
public:
    virtual ~KPDocumentTargets();

    // In the order in which they are shown; none that is gone.
    virtual QList<KPDoc *> documents() const = 0;
    // How many these are. Asked for the state of every command, so without making the list.
    virtual qsizetype documentCount() const = 0;
    // What dialogs stand over.
    virtual QWidget *window() const = 0;
    // Documents among the results were moved or thrown away by a command just now.
    virtual void filesMovedOrDeleted() = 0;
};

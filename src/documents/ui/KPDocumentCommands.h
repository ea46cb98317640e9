#pragma once

#include "KPCommandTable.h"
#include "KPLongWork.h"

#include <QObject>

class KPArrangedDocs;
class KPDoc;
class KPDocumentTargets;
class QUndoStack;

// The commands that make something of the documents selected, for other programs and on paper:
// mail, print, combine, recognise text, and the list of results as a table. What takes long is
// shown and can be stopped; what makes or changes a file is undone in the window's history.
// Ownership: none of what it is given, which outlives it. Threads: main.
class KPDocumentCommands : public QObject
{
    Q_OBJECT

public:
    KPDocumentCommands(KPDocumentTargets &targets, KPArrangedDocs &results, QUndoStack &history,
                       QObject *parent = nullptr);

    QList<KPCommand> commands();

    void mailSelectedAction() XP_REQUIRES(xpGuiThread);
    void printSelectedAction() XP_REQUIRES(xpGuiThread);
    void combineSelectedAction() XP_REQUIRES(xpGuiThread);
    void recogniseSelectedAction() XP_REQUIRES(xpGuiThread);
    void exportSearchResultsAction() XP_REQUIRES(xpGuiThread);

Q_SIGNALS:
    void said(const QString &message); // what was done, for a moment

private:
    QStringList paths() const;
    bool hasPDFs(qsizetype wanted) const;

    KPDocumentTargets &m_targets;
    KPArrangedDocs &m_results;
    QUndoStack &m_history;
    KPLongWork m_work;
};

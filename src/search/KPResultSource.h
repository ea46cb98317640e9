#pragma once

#include "KPSearchState.h"
#include "XPFileInfo.h"

#include <QList>
#include <QObject>
#include <QStringList>

// One document of the results, as it was when it was looked at.
struct KPFoundDocument
{
    QString path;
    XPFileInfo info;
    QStringList tags;
    double rating = 0;
    QString error; // why tags or rating could not be read; empty: they could
};

// Where a view or the shell gets its results: a running search that stays live.
//
// Threads: lives on the main thread; all signals come there, from the event loop, in batches.
// Nothing here blocks: the work is done elsewhere. After setSearchState() no result of an
// older state is reported any more.
class KPResultSource : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    // Starts afresh: resultsReset() comes first.
    virtual void setSearchState(const KPSearchState::Ptr &state) = 0;
    // Stops; what was found stays. Safe to call at any time.
    virtual void stop() = 0;

Q_SIGNALS:
    void resultsReset();
    void documentsAdded(const QList<KPFoundDocument> &documents);
    void documentsChanged(const QList<KPFoundDocument> &documents); // same paths, new facts
    void documentsRemoved(const QStringList &paths);
    // Everything was looked at once. `problems`: folders that could not be searched, documents that
    // may be missing.
    void finished(const QStringList &problems);
};

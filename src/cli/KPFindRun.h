#pragma once

#include "KPCommandOutput.h"
#include "KPResultSource.h"

#include <QObject>

// One run of `murnctl find`: prints what a result source reports until it is done, or, live,
// until the process is interrupted. Main thread.
class KPFindRun : public QObject
{
public:
    struct Options
    {
        bool live = false;
        bool count = false;
        std::optional<qint64> limit;
    };

    KPFindRun(const Options &options, KPCommandOutput &output);

    // Runs the event loop; answers the exit status.
    int run(const KPSearchRequest &request);

private:
    void connectTo(KPResultSource &source);
    void endOnInterrupt();
    void end();
    void added(const QList<KPFoundDocument> &documents);
    void printDocument(const KPFoundDocument &document);
    void printChange(char sign, const QString &path);
    void reportError(const KPFoundDocument &document);
    void finished(const QStringList &problems);

    const Options m_options;
    KPCommandOutput &m_output;
    qint64 m_count = 0;
    bool m_isEnded = false;
    QStringList m_problems;
};

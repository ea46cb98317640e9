#pragma once

#include "KPCommandOutput.h"

// How documents are read on this machine, for `index status`: how the importer is shut in, and
// which documents are not read because they broke it.
// Threads: main; starts the importer for a moment.
class KPImporterStatus
{
public:
    // `storePath`: of the index.
    explicit KPImporterStatus(const QString &storePath);

    // What the cage lacks, or that documents cannot be read at all; empty: nothing.
    QString problem() const;

    // Lines "LABEL TEXT"; members of an object, each with a comma before it.
    void printText(KPCommandOutput &output) const;
    void printJson(KPCommandOutput &output) const;

private:
    struct NotRead
    {
        QString path;
        QString reason;
    };
    QString m_cage;
    QString m_problem;
    bool m_isWhole = false; // nothing of the cage is missing
    QList<NotRead> m_notRead;
};

#pragma once

#include "KPCommandOutput.h"
#include "KPInterrupt.h"
#include "MetadataIndex.h"

// The metadata index for the time of one command: kept by this process when no other does.
//
// Threads: main, before any other is started. Queries must be gone before it.
class KPIndexSession
{
public:
    explicit KPIndexSession(KPCommandOutput &output);

    MetadataIndex &index() { return *m_index; }
    KPInterrupt &interrupt() { return m_interrupt; }

    // Brings the index up to date with the disk, with `contents` what is found in files too, and
    // shows progress. False: interrupted. That a process which keeps the index does not answer is
    // the command's failure.
    bool catchUp(bool contents);
    // Where the process that keeps the index does not answer, as much as can be told from here.
    IndexKeeper::Status status();
    // For people: what the index does at the moment.
    static QString describe(const IndexKeeper::Status &status);

private:
    KPCommandOutput &m_output;
    KPInterrupt m_interrupt;
    std::unique_ptr<MetadataIndex> m_index;
};

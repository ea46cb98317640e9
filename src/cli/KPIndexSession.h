#pragma once

#include "KPCommandOutput.h"
#include "KPIndexedTypes.h"
#include "KPInterrupt.h"
#include "KPTagHealer.h"
#include "KPTagMirror.h"
#include "MetadataIndex.h"

// The metadata index for the time of one command: kept by this process when no other does.
//
// Threads: main, made before any other is started. Queries must be gone before it.
class KPIndexSession
{
public:
    // `waitedFor`: the command is about the contents: they are read at normal priority.
    explicit KPIndexSession(KPCommandOutput &output, bool waitedFor = false);

    MetadataIndex &index() { return *m_index; }
    KPInterrupt &interrupt() { return m_interrupt; }

    // Brings the index up to date with the disk, with `contents` what is found in files too, or
    // waits until the process that keeps it has; shows progress. False: interrupted. That the
    // other process does not answer is the command's failure, not its end.
    bool catchUp(bool contents);
    // That the other process does not answer is the command's failure; nothing then.
    std::optional<IndexStatus> status();
    // For people: what the index does at the moment.
    static QString describe(const IndexStatus &status);

private:
    KPCommandOutput &m_output;
    KPInterrupt m_interrupt;
    std::unique_ptr<MetadataIndex> m_index;
    KPIndexedTypes m_types;
    KPTagHealer m_healer;
    KPTagMirror m_mirror;
};

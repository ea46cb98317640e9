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
    // Tells why it cannot be opened, as the command's failure; then isOpen() is false.
    explicit KPIndexSession(KPCommandOutput &output);

    bool isOpen() const { return m_index != nullptr; }
    MetadataIndex &index() { return *m_index; }
    KPInterrupt &interrupt() { return m_interrupt; }

    // Brings the index up to date with the disk, with `contents` what is found in files too, and
    // shows progress. False: interrupted. Where another process keeps it, it is up to date.
    bool catchUp(bool contents);
    // Where another process keeps the index, as much as can be told from here.
    IndexKeeper::Status status();
    // For people: what the index does at the moment.
    static QString describe(const IndexKeeper::Status &status);

private:
    KPInterrupt m_interrupt;
    std::unique_ptr<MetadataIndex> m_index;
};

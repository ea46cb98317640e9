#pragma once

#include "IndexJobs.h"
#include "IndexSetup.h"
#include "IndexWriter.h"

// What the parts of an IndexKeeper share: the writer's thread, by its jobs, and what it works on.
// Threads: as each part says.
struct IndexKeeping
{
    IndexKeeping(IndexLive &index, const IndexSetup &what)
        : live(index), setup(what), writer(index, problems)
    {
    }

    IndexLive &live;
    const IndexSetup setup;
    IndexProblems problems;
    IndexJobs jobs;
    IndexWriter writer;
};

#pragma once

#include "IndexSource.h"

// While it lives the content type of a file that neither name nor content tell is what the index
// holds (KPFileType::setIndexLookup). One in each program that has an index.
// Threads: construct and destroy on one thread. Ownership: the source must outlive it.
class KPIndexedTypes
{
public:
    explicit KPIndexedTypes(const IndexSource &source);
    ~KPIndexedTypes();
    KPIndexedTypes(const KPIndexedTypes &) = delete;
    KPIndexedTypes &operator=(const KPIndexedTypes &) = delete;
};

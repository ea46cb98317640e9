#pragma once

#include "DocumentReader.h"

#include <span>

// Which reader has which content type.
// Threads: the worker's main thread.
struct DocumentReaderRow
{
    QStringView type; // it and what conforms to it, unless a row stands nearer to that
    const DocumentReader &(*reader)() = nullptr;
};

std::span<const DocumentReaderRow> documentReaders();

// The reader of the nearest type of a tree (the type, then its ancestry, nearest first); null:
// none.
const DocumentReader *documentReaderFor(const QStringList &tree);

#pragma once

#include "DocumentAnswer.h"
#include "XPError.h"

#include <QImage>
#include <stop_token>

class ImportWorker;
struct ImportDocument;

// A page of a document as the importer drew it, or why there is none.
struct ImportedPage
{
    QImage image;
    std::optional<DocumentFailure> failure;
    QString reason; // how the importer ended, for people; mostly empty
};

// Has `page` (from 1) drawn, `pixels` device pixels on its longer side. An error: nothing can be
// drawn at all, or `stop` said so (Cancelled).
// Threads: the worker's; blocks until the page is there.
XPResult<ImportedPage> importPage(ImportWorker &worker, const ImportDocument &document, int page,
                                  int pixels, const std::stop_token &stop = {});

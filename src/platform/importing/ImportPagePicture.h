#pragma once

#include "DocumentAnswer.h"
#include "ImportWorker.h"
#include "XPError.h"

#include <QImage>

// A document read and drawn by the importer in its cage, page by page, with one process for all.
// Failures are in words. Threads: one at a time; waits.
class ImportedDocument
{
public:
    explicit ImportedDocument(const QString &path);

    const QString &path() const { return m_path; }
    const QString &type() const { return m_type; } // its content type
    // Its words and facts.
    XPResult<DocumentAnswer> read();
    // A page, from 1, so that the longer side has this many pixels.
    XPResult<QImage> picture(int page, int pixels);

private:
    const QString m_path;
    QString m_type;
    ImportWorker m_worker;
};

// One page alone.
XPResult<QImage> importPagePicture(const QString &path, int page, int pixels);

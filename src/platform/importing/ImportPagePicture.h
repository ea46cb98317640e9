#pragma once

#include "XPError.h"

#include <QImage>

// A page of a document, from 1, drawn by the importer in its cage so that the longer side has this
// many pixels. Fails with the reason in words. Threads: one at a time; waits.
XPResult<QImage> importPagePicture(const QString &path, int page, int pixels);

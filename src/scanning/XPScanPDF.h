#pragma once

#include "XPError.h"

#include <QImage>
#include <QStringList>
#include <functional>

// Pictures of pages as one PDF (ISO 32000), and what goes with that.
// Any thread; blocking file calls. Memory: three pages at a time, whatever their number.

// The pages' picture files in their order, as a PDF at `toPath`, which is replaced as a whole.
//
// A page has 144 pixels an inch, and is made smaller where it is larger than 95 % of US Letter.
// Below a quality of 0.9 every picture is encoded as JPEG of that quality; from there on a JPEG
// file goes in byte for byte, and any other without loss. Pages that cannot be read are left out.
// Answers how many went in; without any, nothing is written. `progress` is told of each page and
// says whether to go on (Kind::Cancelled).
XPResult<int> ImageArrayToPDFDocument(const QStringList &pages, bool blackAndWhite, float quality,
                                      const QString &toPath,
                                      const std::function<bool(int page)> &progress = {});

// The size of a page in points, from its pixels.
QSizeF xpPageSizeInPoints(QSize pixels);

// One pixel a point, whatever resolution the file claims.
void NormalizeSizeAnyImage(QImage &image);

// JPEG data; empty when it cannot be encoded. `quality` from 0 to 1.
QByteArray JPGDataFromNSImage(const QImage &image, float quality);

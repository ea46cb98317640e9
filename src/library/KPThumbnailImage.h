#pragma once

#include <QImage>
#include <QString>

// A picture made from an image file for a square of `side` device pixels; never enlarged.
//
// The file is untrusted: it is opened by its bytes without following a link, must be a regular
// file, and is read only by decoders of plain raster formats with limits on pixels and memory.
// A null image means that there is no picture to be had, whatever the reason.
// Threads: any; blocks for file calls and decoding.
QImage kpThumbnailImage(const QString &path, int side);

// Whether a file with this extension is worth the attempt.
bool kpMayHaveThumbnail(const QString &extension);

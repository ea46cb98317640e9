#pragma once

#include "DocumentAnswer.h"

class QImage;
class QIODevice;
class QSize;

// Turns the bytes of a picture into one that fits a square, upright.
// Threads: any.
namespace PictureDecoding {

// More pixels than this are not decoded: 256 MiB of them would not leave the reader room.
inline constexpr qint64 mostPixels = qint64{64} << 20;

// Through Qt's own formats and plugins. `pixels`: of the longer side; smaller pictures stay as they
// are. Large JPEG pictures are decoded in a reduced size at once.
std::optional<DocumentFailure> decode(QIODevice &device, int pixels, QImage &image);
std::optional<DocumentFailure> decode(const QByteArray &bytes, int pixels, QImage &image);

// Made smaller where it is larger. Bits become greys first, else lines of text turn to noise.
QImage fitted(const QImage &image, int pixels);
// By the orientation of EXIF and TIFF, 1 to 8.
QImage upright(const QImage &image, int orientation);

} // namespace PictureDecoding

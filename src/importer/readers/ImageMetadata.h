#pragma once

#include "DocumentSource.h"

#include <exiv2/exiv2.hpp>
#include <memory>

class DocumentFacts;

// What EXIF, IPTC and XMP say of a picture, read from the document's descriptor without its
// pixels being looked at.
// Threads: any; one object, one thread.
namespace ImageMetadata {

// Null: no format that exiv2 knows, or broken. The source must outlive the image.
std::unique_ptr<Exiv2::Image> open(const DocumentSource &source);

// Whether it begins as a format that exiv2 knows.
bool isKnown(const DocumentSource &source);

void fill(const Exiv2::ExifData &exif, DocumentFacts &facts);
void fill(const Exiv2::IptcData &iptc, DocumentFacts &facts);

// By EXIF's orientation, from 1 to 8: how a picture must be turned to stand upright.
int orientation(const Exiv2::ExifData &exif);
// Whether that changes width for height.
bool isTurned(int orientation);

} // namespace ImageMetadata

#pragma once

#include "DocumentSource.h"

class DocumentFacts;

// What the headers of a film say: ISO base media files (ISO/IEC 14496-12, also QuickTime),
// Matroska (RFC 9559) and AVI. Takes any bytes; the media itself is passed over.
// Threads: any.
namespace MovieHeader {

// False when it is none of the formats.
bool read(const DocumentSource &source, DocumentFacts &facts);

} // namespace MovieHeader

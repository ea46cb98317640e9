#pragma once

#include <QByteArrayView>

class DocumentFacts;

// What an XMP packet (ISO 16684-1) says of its document: title, description, creators, rights,
// dates, the program. Its keywords are kept apart from those of other sources.
// Takes any bytes. Threads: any.
namespace XmpPacket {

void read(QByteArrayView packet, DocumentFacts &facts);

} // namespace XmpPacket

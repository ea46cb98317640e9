#pragma once

#include <QByteArrayView>

class DocumentFacts;
class FlowText;

// The text of a document in the Rich Text Format (version 1.9.1) and its information group.
//
// Takes any bytes. Destinations that hold no text (fonts, pictures, styles, what begins with
// "\*") are left out. Groups may be nested as deeply as they like: only so many are remembered,
// those beyond share the innermost state. Threads: any.
namespace RtfText {

// False when the bytes are no such document. `facts` may be null.
bool read(QByteArrayView rtf, FlowText &flow, DocumentFacts *facts);

} // namespace RtfText

#pragma once

#include <QByteArray>
#include <QString>

// Bytes of text as text, in whatever encoding they came.
//
// Decodes with ICU, whose tables are part of its library: the C library's loads a file for each
// encoding, and there are none where documents are read. Threads: any.
namespace TextDecoding {

// In the named encoding; unknown names and bytes that do not fit it give what detect() gives.
QString decode(QByteArrayView bytes, const QByteArray &encoding);

// In the encoding that the bytes look like: by a byte order mark, as UTF-8 where they are
// well-formed, else by their frequencies. `isCut`: a limit may have cut the last character in two,
// which is left out then.
QString detect(QByteArrayView bytes, bool isCut = false);

// Whether the bytes are a text at all: few control characters and, unless they are marked as or
// look like UTF-16 or UTF-32, no zero byte.
bool isText(QByteArrayView bytes);

// Encoded words of a mail header (RFC 2047) among plain text. Blanks between two of them are no
// part of the text, and a character may be split over two words of one encoding.
QString decodeWords(QByteArrayView value);
// The same header with every encoded word written anew in UTF-8, so that it can be taken apart
// by its commas and brackets before it is decoded.
QByteArray wordsAsUtf8(QByteArrayView value);

// One line of it: control characters and line breaks as blanks, no blanks at either end or twice,
// at most 1,000 characters.
QString asLine(QStringView text);

} // namespace TextDecoding

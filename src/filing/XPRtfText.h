#pragma once

#include <QByteArrayView>
#include <QString>

// The characters of a Rich Text document, for a name: no styles, no pictures. Any thread.
namespace XPRtfText {

// At most `most` characters. Whatever the bytes are, the answer is some text, perhaps none.
QString characters(QByteArrayView rtf, qsizetype most);

} // namespace XPRtfText

#pragma once

#include <QByteArray>
#include <QString>

// The one pair of conversions between a path's bytes on disk and its text.
//
// A file name on Linux is bytes. Its text is the UTF-8 decoding, where a byte 0x80+n that is
// part of no valid sequence stands as the lone surrogate U+DC80+n, so that every name has a
// text and every such text encodes back to exactly the same bytes. Such texts must not pass
// through QFile or QString::toUtf8(). Any thread.
namespace XPPath {

// Total: every byte string has a text.
QString decode(QByteArrayView bytes);

// The file-system representation. Empty when the text has none: an empty text, an embedded NUL,
// or a surrogate that stands for no byte.
QByteArray encode(const QString &path);

// The path made absolute against the working directory and cleaned of "." and double slashes.
// ".." and links are left to the file system, which alone knows what they mean.
QString absolute(const QString &path);

// The last component; the part of it after the last dot (empty for ".profile" and "name.").
QString fileName(const QString &path);
QString extension(const QString &path);

// The folder part; "/" for a path directly below the root.
QString folder(const QString &path);

// For people and terminals: control characters, undecodable bytes and bidirectional controls
// as visible escapes (\n, \xNN, \u202e); ordinary text unchanged.
QString printable(const QString &text);

} // namespace XPPath

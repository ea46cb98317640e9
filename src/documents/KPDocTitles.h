#pragma once

#include <QString>

// What small documents of other programs call themselves, from their bytes.
//
// Empty when there is nothing of the kind: no such file, not of the format, no such entry. Line
// breaks and control characters come out as spaces. Reads at most the first 256 KiB of a message
// and no card or bookmark over 1 MiB. Threads: any; blocking file calls.
namespace KPDocTitles {

// The subject of a stored message: RFC 5322, with or without a first line that tells its length.
QString subjectOfMessage(const QString &path);
// First and last name of a card (a property list), joined by a space.
QString nameOnCard(const QString &path);
// The name in a web bookmark (a property list).
QString nameOfBookmark(const QString &path);

// The same of the bytes of a message.
QString subjectIn(QByteArrayView message);

} // namespace KPDocTitles

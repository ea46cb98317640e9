#pragma once

#include <QByteArrayView>
#include <QString>

// What a message that another program handed over calls itself, from its bytes: for the name of the
// file that it becomes. Titles of files come from the importer.
//
// Line breaks and control characters come out as spaces. Looks at the first 256 KiB at most.
// Threads: any.
namespace KPDocTitles {

// The subject: RFC 5322, with or without a first line that tells its length. Empty: there is none.
QString subjectIn(QByteArrayView message);

} // namespace KPDocTitles

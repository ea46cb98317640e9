#pragma once

#include <QByteArrayView>

struct DocumentAnswer;

// The property sets of older office documents ([MS-OLEPS]): title, authors, dates, pages.
// Takes any bytes. Threads: any.
namespace OleProperties {

// The stream "\005SummaryInformation".
void readSummary(QByteArrayView stream, DocumentAnswer &answer);

} // namespace OleProperties

#pragma once

#include <QByteArrayView>

class FlowText;

// The text in the streams of older office documents ([MS-DOC], [MS-XLS], [MS-PPT]).
//
// Take any bytes; nothing recurses. Threads: any.
namespace OleText {

enum class Outcome { Read, Encrypted, Damaged };

// "WordDocument" with its table stream: the body, then notes, headers and comments.
Outcome readWord(QByteArrayView document, QByteArrayView table, FlowText &flow);
// Which table stream the document uses: '0' or '1'.
char wordTable(QByteArrayView document);
// "Workbook" or "Book": names and cells of the sheets, a line a row. `sheets` is counted.
Outcome readWorkbook(QByteArrayView workbook, FlowText &flow, int &sheets);
// "PowerPoint Document": the texts of slides and notes. `slides` is counted.
Outcome readPresentation(QByteArrayView presentation, FlowText &flow, int &slides);

} // namespace OleText

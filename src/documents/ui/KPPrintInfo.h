#pragma once

class QPrinter;

// What the user chose for the paper the last time, in the setting "KPPrintInfo": the printer by
// name, size, orientation and margins of the page, colour, both sides. Threads: main.
namespace KPPrintInfo {

void restore(QPrinter *printer); // what does not exist any more is passed over
void save(const QPrinter &printer);

} // namespace KPPrintInfo

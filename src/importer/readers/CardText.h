#pragma once

#include <QByteArrayView>

struct DocumentAnswer;

// Address cards (vCard 2.1 to 4.0), one or many in a file, and calendars (iCalendar). Every card
// and every entry is a paragraph; the first one gives the title.
// Take any bytes; false when nothing of the kind is in them. Threads: any.
namespace CardText {

bool readCards(QByteArrayView bytes, DocumentAnswer &answer);
bool readCalendar(QByteArrayView bytes, DocumentAnswer &answer);

} // namespace CardText

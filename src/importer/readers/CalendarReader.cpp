#include "CalendarReader.h"

#include "CardText.h"

std::optional<DocumentFailure> CalendarReader::read(const DocumentSource &source,
                                                    DocumentAnswer &answer) const
{
    constexpr qsizetype longest = 32 << 20;
    const auto bytes = source.read(0, longest);
    if (!bytes)
        return documentFailureOf(bytes.error());
    return CardText::readCalendar(*bytes, answer) ? std::nullopt
                                                  : std::optional(DocumentFailure::Damaged);
}

#pragma once

#include "DocumentReader.h"

// Calendars and their entries (".ics"), older ones (".vcs") too.
class CalendarReader : public DocumentReader
{
public:
    std::optional<DocumentFailure> read(const DocumentSource &source,
                                        DocumentAnswer &answer) const override;
};

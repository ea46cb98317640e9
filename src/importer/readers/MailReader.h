#pragma once

#include "DocumentReader.h"

// A stored message (RFC 5322 and MIME): alone, with a first line that tells its length (".emlx"),
// or with the line of a mailbox in front. Subject, people, date, the text that is meant to be
// read, and the names of what is attached; the text of messages that are attached too.
class MailReader : public DocumentReader
{
public:
    void prepare() const override;
    std::optional<DocumentFailure> read(const DocumentSource &source,
                                        DocumentAnswer &answer) const override;
};

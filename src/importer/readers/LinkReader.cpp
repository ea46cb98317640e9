#include "LinkReader.h"

#include "LinkText.h"

std::optional<DocumentFailure> LinkReader::read(const DocumentSource &source,
                                                DocumentAnswer &answer) const
{
    constexpr qsizetype longest = 1 << 20;
    const auto bytes = source.readAll(longest);
    if (!bytes)
        return documentFailureOf(bytes.error());
    if (LinkText::readKeys(*bytes, answer) || LinkText::readList(*bytes, answer))
        return {};
    return DocumentFailure::Damaged;
}

#include "RtfReader.h"

#include "DocumentFacts.h"
#include "FlowText.h"
#include "ReaderChoice.h"
#include "RtfText.h"

std::optional<DocumentFailure> RtfReader::read(const DocumentSource &source,
                                               DocumentAnswer &answer) const
{
    constexpr qsizetype longest = 64 << 20; // pictures stand in it as hexadecimal digits
    const auto bytes = source.read(0, longest);
    if (!bytes)
        return documentFailureOf(bytes.error());
    FlowText flow(answer.text);
    DocumentFacts facts(answer);
    if (RtfText::read(*bytes, flow, &facts))
        return {};
    const DocumentReader *other = readerByContent(source, *this);
    return other ? other->read(source, answer) : DocumentFailure::Damaged;
}

#include "HtmlReader.h"

#include "DocumentFacts.h"
#include "FlowText.h"
#include "HtmlText.h"

std::optional<DocumentFailure> HtmlReader::read(const DocumentSource &source,
                                                DocumentAnswer &answer) const
{
    const auto bytes = source.read(0, HtmlText::longest);
    if (!bytes)
        return documentFailureOf(bytes.error());
    FlowText flow(answer.text);
    DocumentFacts facts(answer);
    HtmlText::read(HtmlText::asUtf8(*bytes), flow, &facts);
    return {};
}

#include "CardReader.h"

#include "CardText.h"
#include "DocumentFacts.h"
#include "FlowText.h"
#include "XPPropertyList.h"

// The strings of a list, one a line: an address book keeps its values in lists of their own.
static void takeStrings(const PropertyValue &root, FlowText &flow)
{
    QList<PropertyValue> open = {root};
    while (!open.isEmpty() && !flow.isFull()) {
        const PropertyValue value = open.takeLast();
        if (value.isString() && !value.string().startsWith(u"_$!<")) { // names of labels
            flow.append(value.string());
            flow.endLine();
        }
        open += value.array();
        for (const PropertyValue &member : value.dictionary())
            open.append(member);
    }
}

static std::optional<DocumentFailure> readList(const QByteArray &bytes, DocumentAnswer &answer)
{
    const auto list = XPPropertyList::read(bytes);
    if (!list || list->kind() != PropertyValue::Kind::Dictionary)
        return DocumentFailure::Damaged;
    const auto &card = list->dictionary();
    DocumentFacts facts(answer);
    facts.setTitle(card.value(QStringLiteral("First")).string() + u' ' +
                   card.value(QStringLiteral("Last")).string());
    facts.setTitle(card.value(QStringLiteral("Organization")).string());
    facts.addText(QStringLiteral("kMDItemOrganizations"),
                  card.value(QStringLiteral("Organization")).string());
    const auto values = [&card](const QString &key) {
        return card.value(key).dictionary().value(QStringLiteral("values")).strings();
    };
    for (const QString &address : values(QStringLiteral("Email")))
        facts.addText(QStringLiteral("kMDItemEmailAddresses"), address);
    for (const QString &number : values(QStringLiteral("Phone")))
        facts.addText(QStringLiteral("kMDItemPhoneNumbers"), number);
    FlowText flow(answer.text);
    takeStrings(*list, flow);
    return {};
}

std::optional<DocumentFailure> CardReader::read(const DocumentSource &source,
                                                DocumentAnswer &answer) const
{
    constexpr qsizetype longest = 32 << 20;
    const auto bytes = source.read(0, longest);
    if (!bytes)
        return documentFailureOf(bytes.error());
    if (CardText::readCards(*bytes, answer))
        return {};
    return readList(*bytes, answer);
}

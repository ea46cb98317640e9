#include "OleReader.h"

#include "ByteFields.h"
#include "CompoundFile.h"
#include "DocumentFacts.h"
#include "FlowText.h"
#include "OleProperties.h"
#include "OleText.h"
#include "ReaderChoice.h"
#include "TextDecoding.h"

static constexpr qint64 longestStream = 64 << 20;

static OleText::Outcome readWord(const CompoundFile &file, FlowText &flow)
{
    const QByteArray document = file.stream(QStringLiteral("WordDocument"), longestStream);
    const bool isFirst = OleText::wordTable(document) == '1';
    const QString table = isFirst ? QStringLiteral("1Table") : QStringLiteral("0Table");
    return OleText::readWord(document, file.stream(table, longestStream), flow);
}

static OleText::Outcome readPresentation(const CompoundFile &file, FlowText &flow, int &slides)
{
    const QByteArray user = file.stream(QStringLiteral("Current User"), 64);
    if (ByteFields::little<quint32>(user, 12) == 0xF3D1C4DF) // [MS-PPT] 2.3.2
        return OleText::Outcome::Encrypted;
    return OleText::readPresentation(
        file.stream(QStringLiteral("PowerPoint Document"), longestStream), flow, slides);
}

// A property of a stored message as text: as Unicode or in the writer's eight-bit encoding.
static QString messageText(const CompoundFile &file, const char *property)
{
    constexpr qint64 longest = 4 << 20;
    const QString stem = QStringLiteral("__substg1.0_") + QLatin1String(property);
    const QByteArray wide = file.stream(stem + QStringLiteral("001F"), longest);
    if (!wide.isEmpty())
        return TextDecoding::decode(wide, "utf-16le");
    return TextDecoding::detect(file.stream(stem + QStringLiteral("001E"), longest));
}

static OleText::Outcome readMessage(const CompoundFile &file, FlowText &flow,
                                    DocumentAnswer &answer)
{
    DocumentFacts facts(answer); // [MS-OXPROPS] has the numbers
    facts.setTitle(messageText(file, "0037"));
    facts.setText(DocumentFacts::subject, messageText(file, "0037"));
    facts.addText(DocumentFacts::authors, messageText(file, "0C1A"));
    facts.addText(QStringLiteral("kMDItemAuthorEmailAddresses"), messageText(file, "5D01"));
    for (const QStringView recipient : QStringView(messageText(file, "0E04")).split(u';'))
        facts.addText(QStringLiteral("kMDItemRecipients"), recipient);
    flow.append(messageText(file, "0037"));
    flow.endParagraph();
    flow.append(messageText(file, "1000"));
    return OleText::Outcome::Read;
}

static OleText::Outcome readBody(const CompoundFile &file, DocumentAnswer &answer)
{
    FlowText flow(answer.text);
    if (file.hasStream(QStringLiteral("EncryptedPackage")))
        return OleText::Outcome::Encrypted;
    if (file.hasStream(QStringLiteral("WordDocument")))
        return readWord(file, flow);
    for (const QString &name : {QStringLiteral("Workbook"), QStringLiteral("Book")}) {
        if (!file.hasStream(name))
            continue;
        int sheets = 0;
        const auto outcome = OleText::readWorkbook(file.stream(name, longestStream), flow, sheets);
        answer.pages = sheets;
        return outcome;
    }
    if (file.hasStream(QStringLiteral("PowerPoint Document"))) {
        int slides = 0;
        const auto outcome = readPresentation(file, flow, slides);
        answer.pages = slides;
        return outcome;
    }
    if (file.hasStream(QStringLiteral("__properties_version1.0")))
        return readMessage(file, flow, answer);
    // Some other program's document: its properties are all that is known of it.
    return file.hasStream(QStringLiteral("\u0005SummaryInformation")) ? OleText::Outcome::Read
                                                                      : OleText::Outcome::Damaged;
}

std::optional<DocumentFailure> OleReader::read(const DocumentSource &source,
                                               DocumentAnswer &answer) const
{
    const auto file = CompoundFile::open(source);
    if (!file) {
        const DocumentReader *other = readerByContent(source, *this);
        return other ? other->read(source, answer) : documentFailureOf(file.error());
    }
    constexpr qint64 longestProperties = 1 << 20;
    OleProperties::readSummary(
        file->stream(QStringLiteral("\u0005SummaryInformation"), longestProperties), answer);
    switch (readBody(*file, answer)) {
    case OleText::Outcome::Encrypted:
        return DocumentFailure::Encrypted;
    case OleText::Outcome::Damaged:
        return DocumentFailure::Damaged;
    case OleText::Outcome::Read:
        break;
    }
    return {};
}

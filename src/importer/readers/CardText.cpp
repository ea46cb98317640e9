#include "CardText.h"

#include "ContentLines.h"
#include "DocumentFacts.h"
#include "FlowText.h"
#include "TextDecoding.h"

#include <QDateTime>
#include <QTimeZone>
#include <algorithm>

static bool isOneOf(const QByteArray &name, std::initializer_list<const char *> names)
{
    return std::any_of(names.begin(), names.end(),
                       [&name](const char *other) { return name == other; });
}

static QString joined(const QStringList &parts)
{
    QStringList filled;
    for (const QString &part : parts) {
        if (!part.trimmed().isEmpty())
            filled.append(part.trimmed());
    }
    return filled.join(u' ');
}

// --- Cards

// Family and given name stand apart; people write the given one first.
static QString nameOf(const ContentLines::Line &line)
{
    const QStringList parts = line.components();
    return joined({parts.value(3), parts.value(1), parts.value(2), parts.value(0), parts.value(4)});
}

static void takeCardLine(const ContentLines::Line &line, FlowText &flow, DocumentFacts &facts)
{
    const auto put = [&flow](const QString &text) {
        flow.append(text);
        flow.endLine();
    };
    const QString text = line.text();
    if (line.name == "EMAIL")
        facts.addText(QStringLiteral("kMDItemEmailAddresses"), text);
    else if (line.name == "TEL")
        facts.addText(QStringLiteral("kMDItemPhoneNumbers"), text);
    else if (line.name == "ORG")
        facts.addText(QStringLiteral("kMDItemOrganizations"), joined(line.components()));
    else if (line.name == "CATEGORIES")
        facts.addList(DocumentFacts::keywords, text);
    else if (line.name == "URL")
        facts.setText(DocumentFacts::url, text);
    if (isOneOf(line.name, {"ADR", "ORG", "LABEL"}))
        put(joined(line.components()));
    else if (isOneOf(line.name, {"EMAIL", "TEL", "NICKNAME", "TITLE", "ROLE", "NOTE", "URL",
                                 "CATEGORIES", "BDAY", "IMPP", "ANNIVERSARY"}))
        put(text);
}

bool CardText::readCards(QByteArrayView bytes, DocumentAnswer &answer)
{
    FlowText flow(answer.text);
    DocumentFacts facts(answer);
    ContentLines lines(bytes);
    ContentLines::Line line;
    bool isCard = false;
    bool isNamed = false;
    QString name; // the parts of one, for a card that does not write it out
    const auto put = [&](const QString &written) {
        facts.setTitle(written);
        flow.append(written);
        flow.endLine();
        name.clear();
    };
    while (lines.next(line) && !flow.isFull()) {
        if (line.name == "BEGIN") {
            isCard = isCard || line.value.trimmed().toUpper() == "VCARD";
            isNamed = false;
            flow.endParagraph();
        } else if (line.name == "FN") {
            isNamed = true;
            put(line.text());
        } else if (line.name == "N" && !isNamed) {
            name = nameOf(line);
        } else if (line.name == "END") {
            put(name);
        } else if (isCard) {
            takeCardLine(line, flow, facts);
        }
    }
    return isCard;
}

// --- Calendars

// "20240302", "20240302T182207" or the same with "Z". Zones by name are local time: what they
// are called here is stated nowhere.
static QDateTime dateOf(const QByteArray &value)
{
    const QString text = QString::fromLatin1(value.trimmed().left(16));
    const QDate date = QDate::fromString(text.left(8), QStringLiteral("yyyyMMdd"));
    const QTime time = QTime::fromString(text.mid(9, 6), QStringLiteral("HHmmss"));
    if (!time.isValid())
        return QDateTime(date, QTime(0, 0));
    return QDateTime(date, time, text.endsWith(u'Z') ? Qt::UTC : Qt::LocalTime);
}

static QString personOf(const ContentLines::Line &line)
{
    QString name = TextDecoding::detect(line.parameters.value("CN"));
    name.remove(u'"');
    QString address = line.text();
    if (address.startsWith(u"mailto:", Qt::CaseInsensitive))
        address = address.mid(7);
    return name.isEmpty() ? address : name;
}

static void takeEntryLine(const ContentLines::Line &line, FlowText &flow, DocumentFacts &facts)
{
    const auto put = [&flow](const QString &text) {
        flow.append(text);
        flow.endLine();
    };
    if (isOneOf(line.name, {"SUMMARY", "DESCRIPTION", "LOCATION", "COMMENT", "CONTACT", "URL"}))
        put(line.text());
    if (line.name == "SUMMARY") {
        facts.setTitle(line.text());
    } else if (line.name == "CATEGORIES") {
        facts.addList(DocumentFacts::keywords, line.text());
    } else if (line.name == "ORGANIZER") {
        facts.addText(DocumentFacts::authors, personOf(line));
        put(personOf(line));
    } else if (line.name == "ATTENDEE") {
        facts.addText(QStringLiteral("kMDItemRecipients"), personOf(line));
        put(personOf(line));
    } else if (line.name == "DTSTART") {
        facts.setDate(QStringLiteral("kMDItemStartDate"), dateOf(line.value));
    } else if (line.name == "DTEND") {
        facts.setDate(QStringLiteral("kMDItemEndDate"), dateOf(line.value));
    } else if (line.name == "DUE") {
        facts.setDate(QStringLiteral("kMDItemDueDate"), dateOf(line.value));
    } else if (line.name == "CREATED") {
        facts.setDate(DocumentFacts::created, dateOf(line.value));
    }
}

bool CardText::readCalendar(QByteArrayView bytes, DocumentAnswer &answer)
{
    FlowText flow(answer.text);
    DocumentFacts facts(answer);
    ContentLines lines(bytes);
    ContentLines::Line line;
    bool isCalendar = false;
    bool isEntry = false; // not the rules of a time zone
    while (lines.next(line) && !flow.isFull()) {
        if (line.name == "BEGIN") {
            const QByteArray what = line.value.trimmed().toUpper();
            isCalendar = isCalendar || what == "VCALENDAR";
            isEntry = isOneOf(what, {"VEVENT", "VTODO", "VJOURNAL"});
            flow.endParagraph();
        } else if (line.name == "END") {
            isEntry = false;
        } else if (line.name == "PRODID") {
            facts.setText(DocumentFacts::creator, line.text());
        } else if (isEntry) {
            takeEntryLine(line, flow, facts);
        } else if (line.name == "X-WR-CALNAME") {
            facts.setTitle(line.text());
        }
    }
    return isCalendar;
}

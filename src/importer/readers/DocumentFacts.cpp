#include "DocumentFacts.h"

#include "TextDecoding.h"

#include <QDateTime>
#include <cmath>

const QString DocumentFacts::authors = QStringLiteral("kMDItemAuthors");
const QString DocumentFacts::keywords = QStringLiteral("kMDItemKeywords");
const QString DocumentFacts::xmpKeywords = QStringLiteral("kMDItemKXXMPKeywords");
const QString DocumentFacts::subject = QStringLiteral("kMDItemSubject");
const QString DocumentFacts::description = QStringLiteral("kMDItemDescription");
const QString DocumentFacts::creator = QStringLiteral("kMDItemCreator");
const QString DocumentFacts::created = QStringLiteral("kMDItemContentCreationDate");
const QString DocumentFacts::copyright = QStringLiteral("kMDItemCopyright");
const QString DocumentFacts::languages = QStringLiteral("kMDItemLanguages");
const QString DocumentFacts::url = QStringLiteral("kMDItemURL");
const QString DocumentFacts::pixelWidth = QStringLiteral("kMDItemPixelWidth");
const QString DocumentFacts::pixelHeight = QStringLiteral("kMDItemPixelHeight");
const QString DocumentFacts::duration = QStringLiteral("kMDItemDurationSeconds");

void DocumentFacts::setTitle(QStringView title)
{
    if (m_answer.title.isEmpty())
        m_answer.title = TextDecoding::asLine(title);
}

void DocumentFacts::setText(const QString &name, QStringView value)
{
    const QString line = TextDecoding::asLine(value);
    if (!line.isEmpty() && !m_answer.attributes.contains(name))
        m_answer.attributes.insert(name, line);
}

void DocumentFacts::addText(const QString &name, QStringView value)
{
    const QString line = TextDecoding::asLine(value);
    if (line.isEmpty())
        return;
    PropertyValue::Array list = m_answer.attributes.value(name).array();
    if (list.size() < longestList && !list.contains(PropertyValue(line))) {
        list.append(line);
        m_answer.attributes.insert(name, list);
    }
}

void DocumentFacts::addList(const QString &name, QStringView values)
{
    const QChar separator = values.contains(u';') ? u';' : u',';
    qsizetype parts = 0;
    for (const QStringView part : values.split(separator)) {
        if (++parts > longestList)
            break;
        addText(name, part);
    }
}

void DocumentFacts::setInteger(const QString &name, qint64 value)
{
    if (!m_answer.attributes.contains(name))
        m_answer.attributes.insert(name, PropertyValue::integer(value));
}

void DocumentFacts::setReal(const QString &name, double value)
{
    if (std::isfinite(value) && !m_answer.attributes.contains(name))
        m_answer.attributes.insert(name, PropertyValue::real(value));
}

void DocumentFacts::setDate(const QString &name, const QDateTime &date)
{
    if (!date.isValid() || date.date().year() < 1 || date.date().year() > 9999 ||
        m_answer.attributes.contains(name))
        return;
    const double seconds = static_cast<double>(date.toMSecsSinceEpoch()) / 1000;
    m_answer.attributes.insert(name, PropertyValue::Date::fromSecondsSince1970(seconds));
}

void DocumentFacts::setIsoDate(const QString &name, QStringView text)
{
    const QString date = text.first(std::min<qsizetype>(text.size(), 40)).toString().trimmed();
    QDateTime parsed = QDateTime::fromString(date, Qt::ISODateWithMs);
    if (!parsed.isValid() && date.size() >= 10) // more digits of a second, and odder things
        parsed = QDateTime::fromString(date.first(10), Qt::ISODate);
    setDate(name, parsed);
}

void DocumentFacts::setPixelSize(qint64 width, qint64 height, bool isTurned)
{
    if (width <= 0 || height <= 0 || m_answer.attributes.contains(pixelWidth))
        return;
    setInteger(pixelWidth, width);
    setInteger(pixelHeight, height);
    const bool isUpright = (isTurned ? width : height) > (isTurned ? height : width);
    setInteger(QStringLiteral("kMDItemOrientation"), isUpright ? 1 : 0); // 1: higher than wide
}

#include "OleProperties.h"

#include "ByteFields.h"
#include "DocumentFacts.h"
#include "TextDecoding.h"

#include <QDateTime>
#include <QTimeZone>

using namespace ByteFields;

static constexpr quint32 mostProperties = 200;

static QString textOf(QByteArrayView value, int codePage)
{
    const quint32 type = little<quint32>(value, 0);
    const quint32 length = little<quint32>(value, 4);
    if (type == 31 || (type == 30 && codePage == 1200)) { // UTF-16; 31 counts characters
        QString text;
        const QByteArrayView units = part(value, 8, qint64{length} * (type == 31 ? 2 : 1));
        for (qint64 at = 0; at + 1 < units.size() && little<quint16>(units, at) != 0; at += 2)
            text += QChar(little<quint16>(units, at));
        return text;
    }
    if (type != 30)
        return {};
    QByteArrayView bytes = part(value, 8, length);
    if (const qsizetype end = bytes.indexOf('\0'); end >= 0)
        bytes = bytes.first(end);
    return TextDecoding::decode(
        bytes, codePage == 65001 ? QByteArray("utf-8") : "windows-" + QByteArray::number(codePage));
}

static QDateTime dateOf(QByteArrayView value)
{
    // 100 nanoseconds since 1601.
    const quint64 ticks = little<quint64>(value, 4);
    if (little<quint32>(value, 0) != 64 || ticks == 0 || ticks > 2'650'467'744'000'000'000)
        return {};
    return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(ticks / 10'000) - 11'644'473'600'000,
                                          Qt::UTC);
}

static void take(quint32 id, QByteArrayView value, int codePage, DocumentAnswer &answer)
{
    DocumentFacts facts(answer);
    const auto text = [&] { return textOf(value, codePage); };
    switch (id) {
    case 2:
        return facts.setTitle(text());
    case 3:
        return facts.setText(DocumentFacts::subject, text());
    case 4:
    case 8:
        return facts.addText(DocumentFacts::authors, text());
    case 5:
        return facts.addList(DocumentFacts::keywords, text());
    case 6:
        return facts.setText(DocumentFacts::description, text());
    case 12:
        return facts.setDate(DocumentFacts::created, dateOf(value));
    case 14:
        answer.pages = std::clamp(little<qint32>(value, 4), 0, 1'000'000);
        return;
    case 18:
        return facts.setText(DocumentFacts::creator, text());
    default:
        return;
    }
}

void OleProperties::readSummary(QByteArrayView stream, DocumentAnswer &answer)
{
    if (little<quint16>(stream, 0) != 0xFFFE)
        return;
    const qint64 start = little<quint32>(stream, 44);
    const QByteArrayView set = part(stream, start, stream.size());
    const quint32 count = std::min(little<quint32>(set, 4), mostProperties);
    const auto valueAt = [&](quint32 i) {
        return part(set, little<quint32>(set, 12 + 8 * qint64{i}), set.size());
    };
    int codePage = 1252;
    for (quint32 i = 0; i < count; ++i) {
        if (little<quint32>(set, 8 + 8 * qint64{i}) == 1)
            codePage = little<quint16>(valueAt(i), 4);
    }
    for (quint32 i = 0; i < count; ++i)
        take(little<quint32>(set, 8 + 8 * qint64{i}), valueAt(i), codePage, answer);
}

#include "ByteFields.h"
#include "FlowText.h"
#include "OleText.h"
#include "TextDecoding.h"

#include <QList>
#include <bit>

using namespace ByteFields;

namespace {

enum Record : quint16 {
    Formula = 0x0006,
    FilePass = 0x002F,
    Continue = 0x003C,
    BoundSheet = 0x0085,
    MultipleRk = 0x00BD,
    SharedStrings = 0x00FC,
    SharedLabel = 0x00FD,
    Number = 0x0203,
    Label = 0x0204,
    FormulaString = 0x0207,
    Rk = 0x027E,
    BeginOfFile = 0x0809,
};

// The table of shared strings runs over its record and those that continue it; a string's
// characters may be cut there, and go on behind a byte that says anew how wide they are.
class StringTable
{
public:
    void add(QByteArrayView record) { m_records.append(record); }

    QList<QByteArray> read()
    {
        QList<QByteArray> strings;
        skip(8);
        while (m_record < m_records.size() && m_total < limit)
            strings.append(readString());
        return strings;
    }

private:
    static constexpr qsizetype limit = 64 << 20;

    QByteArrayView record() const { return m_records.value(m_record); }

    // Goes on to the next record at the end of one.
    bool settle()
    {
        while (m_record < m_records.size() && m_at >= record().size()) {
            ++m_record;
            m_at = 0;
        }
        return m_record < m_records.size();
    }

    void skip(qint64 bytes)
    {
        while (bytes > 0 && settle()) {
            const qint64 step = std::min<qint64>(bytes, record().size() - m_at);
            m_at += step;
            bytes -= step;
        }
    }

    quint32 number(int bytes)
    {
        quint32 value = 0;
        for (int i = 0; i < bytes && settle(); ++i)
            value |= quint32{static_cast<uchar>(record()[m_at++])} << (8 * i);
        return value;
    }

    QByteArray readString()
    {
        qint64 left = number(2);
        quint32 flags = number(1);
        const qint64 runs = (flags & 8) != 0 ? number(2) : 0;
        const qint64 extra = (flags & 4) != 0 ? number(4) : 0;
        QString text;
        while (left > 0 && m_record < m_records.size()) {
            if (m_at >= record().size()) {
                if (!settle())
                    break;
                flags = number(1);
            }
            const int width = (flags & 1) != 0 ? 2 : 1;
            const qint64 here = std::min<qint64>(left, (record().size() - m_at) / width);
            if (here == 0) { // half a character
                m_at = record().size();
                continue;
            }
            for (qint64 i = 0; i < here; ++i, m_at += width)
                text += width == 2 ? QChar(little<quint16>(record(), m_at))
                                   : QChar(char16_t{static_cast<uchar>(record()[m_at])});
            left -= here;
        }
        skip(4 * runs + extra);
        m_total += text.size() + 8;
        return text.toUtf8();
    }

    QList<QByteArrayView> m_records;
    qsizetype m_record = 0;
    qint64 m_at = 0;
    qsizetype m_total = 0;
};

// A number in four bytes. [MS-XLS] 2.5.217.
double rkValue(quint32 rk)
{
    double value = 0;
    if ((rk & 2) != 0)
        value = static_cast<qint32>(rk) >> 2;
    else
        value = std::bit_cast<double>(quint64{rk & 0xFFFFFFFC} << 32);
    return (rk & 1) != 0 ? value / 100 : value;
}

class Cells
{
public:
    explicit Cells(FlowText &flow) : m_flow(flow) {}

    void setStrings(QList<QByteArray> strings) { m_strings = std::move(strings); }

    void take(quint16 type, QByteArrayView record)
    {
        switch (type) {
        case SharedLabel:
            return put(record, m_strings.value(little<quint32>(record, 6)));
        case Number:
            return put(record, numberText(little<double>(record, 6)));
        case Rk:
            return put(record, numberText(rkValue(little<quint32>(record, 6))));
        case MultipleRk:
            for (qint64 at = 6; at + 6 <= record.size(); at += 6)
                put(record, numberText(rkValue(little<quint32>(record, at))));
            return;
        case Formula: // a text result stands in a record of its own
            if (little<quint16>(record, 12) != 0xFFFF)
                put(record, numberText(little<double>(record, 6)));
            return;
        case FormulaString:
            m_flow.append(stringText(record, 0));
            return m_flow.endCell();
        case Label:
            return put(record, stringText(record, 6));
        default:
            return;
        }
    }

    // A length in two bytes, then the characters; before 1997 without a byte for their width.
    QByteArray stringText(QByteArrayView record, qint64 at) const
    {
        const qint64 length = little<quint16>(record, at);
        if (!m_isWide)
            return TextDecoding::decode(part(record, at + 2, length), "windows-1252").toUtf8();
        return characters(record, at + 2, length);
    }

    // A byte for the width, then the characters.
    static QByteArray characters(QByteArrayView record, qint64 at, qint64 length)
    {
        QString text;
        if ((little<quint8>(record, at) & 1) == 0)
            return QString::fromLatin1(part(record, at + 1, length)).toUtf8();
        for (qint64 i = 0; i < length && has<quint16>(record, at + 1 + 2 * i); ++i)
            text += QChar(little<quint16>(record, at + 1 + 2 * i));
        return text.toUtf8();
    }

    void setWide(bool isWide) { m_isWide = isWide; }

private:
    static QByteArray numberText(double value) { return QByteArray::number(value, 'g', 15); }

    void put(QByteArrayView record, const QByteArray &text)
    {
        if (const int row = little<quint16>(record, 0); row != m_row) {
            m_flow.endLine();
            m_row = row;
        }
        m_flow.append(QByteArrayView(text));
        m_flow.endCell();
    }

    FlowText &m_flow;
    QList<QByteArray> m_strings;
    int m_row = -1;
    bool m_isWide = true;
};

} // namespace

OleText::Outcome OleText::readWorkbook(QByteArrayView workbook, FlowText &flow, int &sheets)
{
    if ((little<quint16>(workbook, 0) & 0xFF) != 0x09)
        return Outcome::Damaged;
    Cells cells(flow);
    StringTable table;
    bool isInTable = false;
    for (qint64 at = 0; at + 4 <= workbook.size() && !flow.isFull();) {
        const auto type = little<quint16>(workbook, at);
        const qint64 size = little<quint16>(workbook, at + 2);
        const QByteArrayView record = part(workbook, at + 4, size);
        at += 4 + size;
        if (type == FilePass)
            return Outcome::Encrypted;
        if (type == SharedStrings || (isInTable && type == Continue)) {
            table.add(record);
            isInTable = true;
            continue;
        }
        if (std::exchange(isInTable, false))
            cells.setStrings(table.read());
        if (type == BeginOfFile) {
            cells.setWide(little<quint16>(record, 0) >= 0x0600);
            flow.endParagraph();
        } else if (type == BoundSheet) {
            ++sheets;
            const qint64 length = little<quint8>(record, 6);
            flow.append(QByteArrayView(Cells::characters(record, 7, length)));
            flow.endLine();
        } else {
            cells.take(type, record);
        }
    }
    return Outcome::Read;
}

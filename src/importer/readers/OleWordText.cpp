#include "ByteFields.h"
#include "FlowText.h"
#include "OleText.h"
#include "TextDecoding.h"

#include <vector>

using namespace ByteFields;

namespace {

// Takes the characters of a document one after another: its marks become line ends, field codes
// are left out.
class WordCharacters
{
public:
    explicit WordCharacters(FlowText &flow) : m_flow(flow) {}
    ~WordCharacters() { flush(); }
    WordCharacters(const WordCharacters &) = delete;
    WordCharacters &operator=(const WordCharacters &) = delete;

    void take(QStringView text)
    {
        for (const QChar c : text)
            take(c);
    }

private:
    void take(QChar c)
    {
        switch (c.unicode()) {
        case 0x13: // a field begins with its code …
            m_openCodes.push_back(true);
            return;
        case 0x14: // … then comes what it shows
            if (!m_openCodes.empty())
                m_openCodes.back() = false;
            return;
        case 0x15:
            if (!m_openCodes.empty())
                m_openCodes.pop_back();
            return;
        case 0x0D:
        case 0x0B:
        case 0x0C:
            flush();
            return m_flow.endLine();
        case 0x07: // the end of a cell; of a row when it comes twice
            flush();
            return m_flow.endCell();
        case 0x1E:
            m_text += u'-';
            return;
        default:
            break;
        }
        if (m_openCodes.size() > mostFields)
            m_openCodes.clear(); // marks that pair with nothing
        if (c >= u' ' && (m_openCodes.empty() || !m_openCodes.back()))
            m_text += c;
        else if (c == u'\t')
            m_text += u' ';
    }

    void flush()
    {
        m_flow.append(m_text);
        m_text.clear();
    }

    static constexpr size_t mostFields = 100;

    FlowText &m_flow;
    QString m_text;
    std::vector<bool> m_openCodes; // of the fields around: whether their code is read
};

QString wideText(QByteArrayView bytes)
{
    QString text;
    text.reserve(bytes.size() / 2);
    for (qint64 at = 0; at + 1 < bytes.size(); at += 2)
        text += QChar(little<quint16>(bytes, at));
    return text;
}

// The pieces of the text, by the table in the "Clx". [MS-DOC] 2.8.35.
QByteArrayView pieceTable(QByteArrayView clx)
{
    qint64 at = 0;
    while (at < clx.size() && clx[at] == 1)
        at += 3 + qint64{little<quint16>(clx, at + 1)};
    if (at >= clx.size() || clx[at] != 2)
        return {};
    return part(clx, at + 5, little<quint32>(clx, at + 1));
}

} // namespace

char OleText::wordTable(QByteArrayView document)
{
    return (little<quint16>(document, 10) & 0x0200) != 0 ? '1' : '0';
}

OleText::Outcome OleText::readWord(QByteArrayView document, QByteArrayView table, FlowText &flow)
{
    const quint16 mark = little<quint16>(document, 0);
    if (mark != 0xA5EC && mark != 0xA5DC)
        return Outcome::Damaged;
    if ((little<quint16>(document, 10) & 0x0100) != 0)
        return Outcome::Encrypted;
    WordCharacters characters(flow);
    if (mark == 0xA5DC) { // before 1997: one run of eight-bit text
        const qint64 start = little<quint32>(document, 24);
        const QByteArrayView text = part(document, start, little<quint32>(document, 28) - start);
        characters.take(TextDecoding::decode(text, "windows-1252"));
        return Outcome::Read;
    }
    const QByteArrayView pieces =
        pieceTable(part(table, little<quint32>(document, 418), little<quint32>(document, 422)));
    const qint64 count = (pieces.size() - 4) / 12;
    if (count <= 0)
        return Outcome::Damaged;
    for (qint64 i = 0; i < count && !flow.isFull(); ++i) {
        const qint64 length =
            qint64{little<quint32>(pieces, 4 * i + 4)} - little<quint32>(pieces, 4 * i);
        const quint32 place = little<quint32>(pieces, 4 * (count + 1) + 8 * i + 2);
        const qint64 offset = place & 0x3FFFFFFF;
        if ((place & 0x40000000) != 0)
            characters.take(
                TextDecoding::decode(part(document, offset / 2, length), "windows-1252"));
        else
            characters.take(wideText(part(document, offset, 2 * length)));
    }
    return Outcome::Read;
}

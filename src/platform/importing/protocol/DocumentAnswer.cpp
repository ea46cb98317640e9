#include "DocumentAnswer.h"

#include <QStringDecoder>
#include <array>

// In the order of DocumentFailure, from 1.
static constexpr std::array failureNames = {u"encrypted", u"damaged", u"too large",
                                            u"timed out", u"crashed", u"unsupported",
                                            u"unreadable"};

QString documentFailureName(DocumentFailure failure)
{
    return QString::fromUtf16(failureNames.at(static_cast<size_t>(failure) - 1));
}

std::optional<DocumentFailure> documentFailureNamed(QStringView name)
{
    for (size_t i = 0; i < failureNames.size(); ++i) {
        if (name == QStringView(failureNames[i]))
            return static_cast<DocumentFailure>(i + 1);
    }
    return {};
}

// --- Text

// The longest start of `text` within `limit` that does not end inside a character.
static QByteArrayView startOf(QByteArrayView text, qsizetype limit)
{
    qsizetype end = limit;
    while (end > 0 && (static_cast<uchar>(text[end]) & 0xC0) == 0x80)
        --end;
    return text.first(end);
}

bool DocumentText::append(QByteArrayView utf8)
{
    if (m_isFull)
        return utf8.isEmpty();
    // No more of it is looked at than can fit.
    const qsizetype room = m_limit - m_bytes.size();
    const QByteArrayView piece = utf8.size() > room + 4 ? utf8.first(room + 4) : utf8;
    if (!piece.isValidUtf8() || piece.contains('\0')) {
        QString text = QString::fromUtf8(piece);
        const bool fitted = append(QStringView(text.replace(QChar(u'\0'), u' ')));
        m_isFull = m_isFull || piece.size() < utf8.size();
        return fitted && !m_isFull;
    }
    m_isFull = piece.size() > room;
    m_bytes.append(m_isFull ? startOf(piece, room) : piece);
    return !m_isFull;
}

bool DocumentText::append(QStringView text)
{
    const qsizetype room = m_limit - m_bytes.size();
    const bool isLong = text.size() > room + 2;
    // Lone surrogates become question marks here.
    QByteArray bytes = (isLong ? text.first(room + 2) : text).toUtf8();
    bytes.replace('\0', ' ');
    const bool fitted = append(QByteArrayView(bytes));
    m_isFull = m_isFull || isLong;
    return fitted && !isLong;
}

bool DocumentText::newLine()
{
    return m_bytes.isEmpty() || m_bytes.endsWith('\n') || append(QByteArrayView("\n", 1));
}

// --- Attributes

DocumentAnswer::Attributes DocumentAnswer::allAttributes() const
{
    Attributes all = attributes;
    if (!title.isEmpty())
        all.insert(QStringLiteral("kMDItemTitle"), title);
    if (pages > 0)
        all.insert(QStringLiteral("kMDItemNumberOfPages"), PropertyValue::integer(pages));
    return all;
}

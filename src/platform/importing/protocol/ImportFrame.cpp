#include "ImportFrame.h"

#include <algorithm>
#include <array>
#include <cstring>

QByteArray ImportFrame::bytesBeforeBody() const
{
    const std::array prefix = {static_cast<quint32>(kind), static_cast<quint32>(head.size()),
                               static_cast<quint32>(body.size())};
    return QByteArray(reinterpret_cast<const char *>(prefix.data()), sizeof prefix) + head;
}

ImportFrameReader::Space ImportFrameReader::space()
{
    if (m_have < prefixSize)
        return {m_prefix + m_have, prefixSize - m_have};
    const qsizetype inHead = m_have - prefixSize;
    if (inHead < m_frame.head.size())
        return {m_frame.head.data() + inHead, m_frame.head.size() - inHead};
    const qsizetype inBody = inHead - m_frame.head.size();
    Q_ASSERT(inBody < m_frame.body.size()); // a whole frame is taken first
    return {m_frame.body.data() + inBody, m_frame.body.size() - inBody};
}

std::optional<XPError> ImportFrameReader::filled(qsizetype count)
{
    m_have += count;
    return m_have == prefixSize ? readPrefix() : std::nullopt;
}

static qsizetype maximumBody(ImportFrame::Kind kind)
{
    switch (kind) {
    case ImportFrame::Kind::Answer:
        return ImportFrame::maximumText;
    case ImportFrame::Kind::Picture:
        return ImportFrame::maximumPicture;
    default:
        return 0;
    }
}

std::optional<XPError> ImportFrameReader::readPrefix()
{
    std::array<quint32, 3> prefix = {};
    static_assert(sizeof prefix == prefixSize);
    std::memcpy(prefix.data(), m_prefix, sizeof prefix);
    using Kind = ImportFrame::Kind;
    static constexpr std::array kinds = {Kind::Hello, Kind::Job, Kind::Answer, Kind::Picture};
    m_frame.kind = static_cast<Kind>(prefix[0]);
    if (std::find(kinds.begin(), kinds.end(), m_frame.kind) == kinds.end())
        return XPError::malformed(QStringLiteral("the importer said something unknown"));
    if (prefix[1] > ImportFrame::maximumHead || prefix[2] > maximumBody(m_frame.kind))
        return XPError::malformed(QStringLiteral("the importer said too much"));
    // Memory that is never written to is none: a lie about the length costs nothing.
    m_frame.head = QByteArray(prefix[1], Qt::Uninitialized);
    m_frame.body = QByteArray(prefix[2], Qt::Uninitialized);
    return {};
}

std::optional<ImportFrame> ImportFrameReader::take()
{
    if (m_have < prefixSize || m_have < prefixSize + m_frame.head.size() + m_frame.body.size())
        return {};
    m_have = 0;
    return std::exchange(m_frame, {});
}

#include "DocumentSource.h"

#include <QIODevice>
#include <algorithm>
#include <cerrno>
#include <unistd.h>

DocumentSource::DocumentSource(int descriptor, Facts facts, std::function<bool()> stop)
    : m_descriptor(descriptor), m_facts(std::move(facts)), m_stop(std::move(stop))
{
}

bool DocumentSource::conformsTo(QStringView type) const
{
    return std::any_of(m_facts.tree.begin(), m_facts.tree.end(),
                       [&](const QString &ancestor) { return ancestor == type; });
}

// How many bytes came; -1 with errno.
static qint64 readAt(int descriptor, char *to, qint64 length, qint64 offset)
{
    qint64 have = 0;
    while (have < length) {
        const ssize_t got =
            ::pread(descriptor, to + have, static_cast<size_t>(length - have), offset + have);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return -1;
        if (got == 0)
            break;
        have += got;
    }
    return have;
}

XPResult<QByteArray> DocumentSource::read(qint64 offset, qsizetype length) const
{
    // A length that a hostile file states must not allocate more than the file holds.
    const qint64 left = std::clamp<qint64>(size() - offset, 0, length);
    QByteArray bytes(left, Qt::Uninitialized);
    const qint64 got = readAt(m_descriptor, bytes.data(), left, offset);
    if (got < 0)
        return XPError::fromErrno(errno);
    bytes.truncate(got);
    return bytes;
}

XPResult<QByteArray> DocumentSource::readAll(qsizetype limit) const
{
    if (size() > limit)
        return XPError::make(XPError::Kind::TooLarge, QStringLiteral("longer than can be read"));
    return read(0, limit);
}

namespace {

class SourceDevice : public QIODevice
{
public:
    SourceDevice(int descriptor, qint64 size) : m_descriptor(descriptor), m_size(size)
    {
        open(ReadOnly | Unbuffered);
    }
    qint64 size() const override { return m_size; }

protected:
    qint64 readData(char *data, qint64 length) override
    {
        return readAt(m_descriptor, data, std::min(length, m_size - pos()), pos());
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    const int m_descriptor;
    const qint64 m_size;
};

} // namespace

std::unique_ptr<QIODevice> DocumentSource::device() const
{
    return std::make_unique<SourceDevice>(m_descriptor, size());
}

DocumentFailure documentFailureOf(const XPError &error)
{
    switch (error.kind) {
    case XPError::Kind::TooLarge:
        return DocumentFailure::TooLarge;
    case XPError::Kind::Malformed:
        return DocumentFailure::Damaged;
    case XPError::Kind::Unsupported:
        return DocumentFailure::Unsupported;
    default:
        return DocumentFailure::Unreadable;
    }
}

#include "IndexSegment.h"

#include "XPPath.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace IndexSegment {

static constexpr quint64 factor = 0x9E3779B97F4A7C15ULL;

static quint64 mixed(quint64 sum, quint64 word)
{
    sum = (sum ^ word) * factor;
    return sum ^ (sum >> 29);
}

quint64 checksum(QByteArrayView bytes)
{
    // Four lanes, as one alone waits for its own multiplications.
    std::array<quint64, 4> lanes{1, 2, 3, 4};
    const char *at = bytes.data();
    qsizetype left = bytes.size();
    for (; left >= 32; left -= 32, at += 32) {
        std::array<quint64, 4> words{};
        std::memcpy(words.data(), at, 32);
        for (size_t i = 0; i < 4; ++i)
            lanes[i] = mixed(lanes[i], words[i]);
    }
    std::array<quint64, 4> tail{};
    if (left > 0)
        std::memcpy(tail.data(), at, static_cast<size_t>(left));
    quint64 sum = static_cast<quint64>(bytes.size());
    for (size_t i = 0; i < 4; ++i)
        sum = mixed(sum, mixed(lanes[i], tail[i]));
    return sum;
}

void Writer::add(const void *data, size_t size)
{
    const QByteArrayView part(static_cast<const char *>(data), static_cast<qsizetype>(size));
    m_sum = mixed(m_sum, checksum(part));
    m_size += part.size();
    if (size > 0)
        m_parts.push_back(part);
}

QByteArray Writer::joined() const
{
    QByteArray bytes;
    for (const QByteArrayView part : m_parts)
        bytes.append(part);
    return bytes;
}

static bool writeAll(int file, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const ssize_t done = ::write(file, bytes.data(), static_cast<size_t>(bytes.size()));
        if (done < 0 && errno == EINTR)
            continue;
        if (done <= 0)
            return false;
        bytes = bytes.sliced(done);
    }
    return true;
}

std::optional<XPError> Writer::write(const QByteArray &path) const
{
    const int file = ::open(path.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    bool good = file >= 0;
    for (const QByteArrayView part : m_parts)
        good = good && writeAll(file, part);
    const int error = errno;
    if (file >= 0)
        ::close(file);
    if (good)
        return {};
    ::unlink(path.constData());
    return XPError::fromErrno(error, XPPath::decode(path));
}

Reader::Reader(const QByteArray &path)
{
    m_file = ::open(path.constData(), O_RDONLY | O_CLOEXEC);
    struct stat facts = {};
    if (m_file < 0 || ::fstat(m_file, &facts) != 0)
        m_error = errno;
    m_left = facts.st_size;
}

Reader::~Reader()
{
    if (m_file >= 0)
        ::close(m_file);
}

bool Reader::read(void *data, size_t size)
{
    if (m_error || size > static_cast<size_t>(m_left))
        return false;
    auto *to = static_cast<char *>(data);
    if (m_file < 0 && size > 0)
        std::memcpy(to, m_bytes.sliced(m_bytes.size() - m_left).data(), size);
    for (size_t have = 0; m_file >= 0 && have < size;) {
        const ssize_t got = ::read(m_file, to + have, size - have);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0) {
            m_error = got < 0 ? errno : EIO; // shorter than it was a moment ago
            return false;
        }
        have += static_cast<size_t>(got);
    }
    m_left -= static_cast<qint64>(size);
    m_sum = mixed(m_sum, checksum(QByteArrayView(to, static_cast<qsizetype>(size))));
    return true;
}

bool Reader::read(QByteArray *bytes, quint64 size)
{
    if (size > static_cast<quint64>(m_left))
        return false;
    *bytes = QByteArray(static_cast<qsizetype>(size), Qt::Uninitialized);
    return read(bytes->data(), size);
}

} // namespace IndexSegment

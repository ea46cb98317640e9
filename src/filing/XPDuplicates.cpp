#include "XPDuplicates.h"

#include "XPFileDescriptor.h"
#include "XPFileInfo.h"
#include "XPPath.h"

#include <QCryptographicHash>
#include <QHash>
#include <QSet>
#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

using XPDuplicates::Group;
using XPDuplicates::Progress;
using XPDuplicates::Result;

static constexpr qint64 beginning = 16 << 10; // tells nearly all apart that are not the same
static constexpr qint64 pieceSize = 1 << 20;
static constexpr qsizetype looksBetweenQuestions = 256;

namespace {

class Search
{
public:
    explicit Search(const Progress &progress) : m_progress(progress) {}

    Result run(const QStringList &paths);

private:
    QHash<qint64, QStringList> bySize(const QStringList &paths);
    void splitByHash(const QStringList &paths, qint64 size, qint64 most);
    std::optional<QByteArray> hash(const QString &path, qint64 most);
    bool goesOn()
    {
        m_result.stopped = m_result.stopped || (m_progress && !m_progress(m_done, m_total));
        return !m_result.stopped;
    }

    const Progress &m_progress;
    qint64 m_done = 0;
    qint64 m_total = 0;
    Result m_result;
};

QHash<qint64, QStringList> Search::bySize(const QStringList &paths)
{
    QHash<qint64, QStringList> files;
    QSet<std::pair<quint64, quint64>> linked;
    qsizetype looks = 0;
    for (const QString &path : paths) {
        if (++looks % looksBetweenQuestions == 0 && !goesOn())
            return {};
        const auto info = XPFileInfo::read(path);
        if (!info) {
            m_result.failures.append(info.error());
            continue;
        }
        if (!info->isRegular() || info->size == 0)
            continue;
        const std::pair<quint64, quint64> file{info->device, info->inode};
        if (info->links > 1 && linked.contains(file))
            continue;
        if (info->links > 1)
            linked.insert(file);
        files[info->size].append(path);
    }
    files.removeIf([](const auto &each) { return each.value().size() < 2; });
    return files;
}

// Nothing where it cannot be read.
std::optional<QByteArray> Search::hash(const QString &path, qint64 most)
{
    const XPFileDescriptor file(::open(XPPath::encode(path).constData(),
                                       O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    QCryptographicHash hash(QCryptographicHash::Sha256);
    QByteArray bytes(std::min(most, pieceSize), Qt::Uninitialized);
    ssize_t got = file.isOpen() ? 1 : -1;
    for (qint64 left = most; got > 0 && left > 0; left -= got) {
        if (!goesOn())
            return {};
        do
            got = ::read(file.get(), bytes.data(), static_cast<size_t>(std::min(left, pieceSize)));
        while (got < 0 && errno == EINTR);
        if (got > 0)
            hash.addData(QByteArrayView(bytes).first(got));
        m_done += std::max<qint64>(got, 0);
    }
    if (got < 0) {
        m_result.failures.append(XPError::fromErrno(errno, path));
        return {};
    }
    return hash.result();
}

void Search::splitByHash(const QStringList &paths, qint64 size, qint64 most)
{
    QHash<QByteArray, QStringList> parts;
    for (const QString &path : paths) {
        if (const auto found = hash(path, most))
            parts[*found].append(path);
        if (m_result.stopped)
            return;
    }
    for (QStringList &part : parts) {
        if (part.size() < 2) {
            m_total -= most < size ? size * part.size() : 0;
            continue;
        }
        if (most < size) {
            splitByHash(part, size, size);
            continue;
        }
        part.sort();
        m_result.groups.append({size, part});
    }
}

Result Search::run(const QStringList &paths)
{
    const auto files = bySize(paths);
    for (auto each = files.begin(); each != files.end(); ++each)
        m_total += (std::min(beginning, each.key()) + (each.key() > beginning ? each.key() : 0)) *
                   each.value().size();
    for (auto each = files.begin(); each != files.end() && goesOn(); ++each)
        splitByHash(each.value(), each.key(), std::min(beginning, each.key()));
    std::sort(m_result.groups.begin(), m_result.groups.end(), [](const Group &a, const Group &b) {
        const qint64 one = a.size * (a.paths.size() - 1);
        const qint64 other = b.size * (b.paths.size() - 1);
        return one != other ? one > other : a.paths < b.paths;
    });
    return std::move(m_result);
}

} // namespace

qint64 XPDuplicates::Result::bytesToFree() const
{
    qint64 bytes = 0;
    for (const Group &group : groups)
        bytes += group.size * (group.paths.size() - 1);
    return bytes;
}

Result XPDuplicates::find(const QStringList &paths, const Progress &progress)
{
    return Search(progress).run(paths);
}

#include "ZipPackage.h"

#include "DocumentSource.h"
#include "LibArchive.h"

#include <algorithm>
#include <archive.h>
#include <archive_entry.h>

static XPError tooLarge(const char *what)
{
    return XPError::make(XPError::Kind::TooLarge, QString::fromLatin1(what));
}

// "slide10.xml" comes after "slide9.xml".
static bool isBefore(const QByteArray &a, const QByteArray &b)
{
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    qsizetype i = 0;
    qsizetype j = 0;
    while (i < a.size() && j < b.size()) {
        if (isDigit(a[i]) && isDigit(b[j])) {
            const auto number = [&](const QByteArray &text, qsizetype &at) {
                quint64 value = 0;
                for (; at < text.size() && isDigit(text[at]); ++at)
                    value = value * 10 + static_cast<quint64>(text[at] - '0');
                return value;
            };
            const quint64 first = number(a, i);
            const quint64 second = number(b, j);
            if (first != second)
                return first < second;
        } else if (a[i] != b[j]) {
            return a[i] < b[j];
        } else {
            ++i;
            ++j;
        }
    }
    return a.size() - i < b.size() - j || (a.size() - i == b.size() - j && a < b);
}

// The bytes of the entry that is next; what there is of them, and why there are no more.
static std::optional<XPError> readPart(archive *open, qint64 limit, QByteArray &bytes)
{
    constexpr qsizetype step = 256 << 10;
    const qint64 first = std::min<qint64>(limit + 1, step);
    bytes.resize(first);
    qsizetype have = 0;
    while (true) {
        const la_ssize_t got =
            archive_read_data(open, bytes.data() + have, static_cast<size_t>(bytes.size() - have));
        if (got < 0) {
            bytes.truncate(have);
            return XPError::malformed(QStringLiteral("a part is broken"));
        }
        have += got;
        if (got == 0 || have > limit) {
            bytes.truncate(std::min<qint64>(have, limit));
            if (have > limit)
                return tooLarge("a part is too large");
            return {};
        }
        if (have == bytes.size())
            bytes.resize(std::min<qint64>(limit + 1, bytes.size() * 2));
    }
}

XPResult<ZipPackage> ZipPackage::read(const DocumentSource &source, const Wanted &wanted,
                                      const Limits &limits)
{
    const LibArchive::Handle open = LibArchive::open(source, LibArchive::Formats::Zip);
    if (!open)
        return XPError::malformed(QStringLiteral("no ZIP archive"));
    ZipPackage package;
    qint64 left = limits.totalBytes;
    const qint64 byRatio = std::max<qint64>(1 << 20, source.size() * limits.ratio);
    archive_entry *entry = nullptr;
    int entries = 0;
    int status = ARCHIVE_OK;
    while (!package.m_ending && !source.mustStop() &&
           (status = archive_read_next_header(open.get(), &entry)) >= ARCHIVE_WARN &&
           status != ARCHIVE_EOF) {
        if (++entries > limits.entries) {
            package.m_ending = tooLarge("too many entries");
            break;
        }
        const QByteArray name(archive_entry_pathname(entry));
        if (archive_entry_is_data_encrypted(entry)) {
            package.m_hasEncryptedParts = true;
            continue;
        }
        if (!wanted(name) || package.m_parts.contains(name))
            continue;
        QByteArray bytes;
        package.m_ending = readPart(open.get(), std::min({limits.partBytes, left, byRatio}), bytes);
        left -= bytes.size();
        package.m_names.append(name);
        package.m_parts.insert(name, bytes);
    }
    if (status < ARCHIVE_WARN && entries == 0)
        return XPError::malformed(QStringLiteral("no ZIP archive"));
    if (status < ARCHIVE_WARN && !package.m_ending)
        package.m_ending = XPError::malformed(QStringLiteral("the archive is broken"));
    std::sort(package.m_names.begin(), package.m_names.end(), isBefore);
    return package;
}

QByteArray ZipPackage::resolved(const QByteArray &from, const QByteArray &reference)
{
    if (reference.startsWith('/'))
        return reference.mid(1);
    QList<QByteArray> folders = from.split('/');
    folders.removeLast();
    for (const QByteArray &name : reference.split('/')) {
        if (name == ".." && folders.isEmpty())
            return {};
        if (name == "..")
            folders.removeLast();
        else if (name != "." && !name.isEmpty())
            folders.append(name);
    }
    return folders.join('/');
}

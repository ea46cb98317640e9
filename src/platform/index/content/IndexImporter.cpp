#include "IndexImporter.h"

#include "KPContentTypes.h"
#include "XPFileDescriptor.h"
#include "XPPath.h"

#include <QStringDecoder>
#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

static const QString markdownType = QStringLiteral("net.daringfireball.markdown");
// A file that is written to all the time is taken as it was after so many attempts.
static constexpr int mostAttempts = 3;

bool IndexPlainTextImporter::accepts(const QString &type) const
{
    return type == markdownType ||
           KPContentTypes::conformsTo(type, QStringLiteral("public.plain-text")) ||
           KPContentTypes::conformsTo(type, QStringLiteral("public.source-code"));
}

// --- Reading

static qint64 modifiedOf(const struct stat &facts)
{
    return qint64{facts.st_mtim.tv_sec} * 1'000'000'000 + facts.st_mtim.tv_nsec;
}

static XPResult<QByteArray> readStart(int file, const QByteArray &path, const struct stat &facts)
{
    QByteArray bytes(std::min<qint64>(facts.st_size, IndexPlainTextImporter::maximumBytes),
                     Qt::Uninitialized);
    qsizetype have = 0;
    while (have < bytes.size()) {
        const ssize_t got =
            ::pread(file, bytes.data() + have, static_cast<size_t>(bytes.size() - have), have);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return XPError::fromErrno(errno, XPPath::decode(path));
        if (got == 0)
            break;
        have += got;
    }
    bytes.truncate(have);
    return bytes;
}

// --- Decoding

static bool isMostlyControls(const QByteArray &bytes)
{
    const QByteArrayView start =
        QByteArrayView(bytes).first(std::min<qsizetype>(bytes.size(), 4096));
    const auto controls = std::count_if(start.begin(), start.end(), [](char byte) {
        const auto code = static_cast<uchar>(byte);
        return (code < 0x20 && !(code >= '\t' && code <= '\r') && code != 0x1B) || code == 0x7F;
    });
    return controls * 20 > start.size();
}

// Without a last character that the limit cut in two.
static QByteArrayView withoutCutCharacter(QByteArrayView bytes)
{
    qsizetype start = bytes.size();
    while (start > 0 && bytes.size() - start < 4 &&
           (static_cast<uchar>(bytes[start - 1]) & 0xC0) == 0x80)
        --start;
    if (start == 0 || static_cast<uchar>(bytes[start - 1]) < 0xC0)
        return bytes;
    const auto lead = static_cast<uchar>(bytes[start - 1]);
    const qsizetype length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    return bytes.size() - start + 1 < length ? bytes.first(start - 1) : bytes;
}

QByteArray IndexPlainTextImporter::decoded(const QByteArray &bytes, bool cut)
{
    const auto encoding = QStringConverter::encodingForData(bytes);
    if (encoding && *encoding != QStringConverter::Utf8) {
        const QString text = QStringDecoder(*encoding)(bytes);
        return text.contains(QChar(u'\0')) ? QByteArray() : text.toUtf8();
    }
    if (bytes.contains('\0') || isMostlyControls(bytes))
        return {};
    const QByteArrayView whole = cut ? withoutCutCharacter(bytes) : QByteArrayView(bytes);
    if (whole.isValidUtf8())
        return whole.size() == bytes.size() ? bytes : whole.toByteArray();
    return QString::fromLatin1(bytes).toUtf8();
}

static QString firstHeading(const QByteArray &text)
{
    qsizetype start = text.startsWith("\xEF\xBB\xBF") ? 3 : 0;
    const qsizetype end = std::min<qsizetype>(text.size(), 4096);
    while (start < end) {
        qsizetype lineEnd = text.indexOf('\n', start);
        lineEnd = lineEnd < 0 || lineEnd > end ? end : lineEnd;
        const QByteArrayView line = QByteArrayView(text).sliced(start, lineEnd - start);
        if (line.startsWith("# "))
            return QString::fromUtf8(line.sliced(2)).trimmed();
        start = lineEnd + 1;
    }
    return {};
}

XPResult<IndexImporter::Content> IndexPlainTextImporter::import(const QByteArray &path,
                                                                const QString &type,
                                                                const std::stop_token &stop)
{
    const XPFileDescriptor file(
        ::open(path.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOATIME | O_CLOEXEC));
    const XPFileDescriptor other(
        file.isOpen() || errno != EPERM
            ? -1 // O_NOATIME is for the owner only
            : ::open(path.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    const int open = file.isOpen() ? file.get() : other.get();
    struct stat before = {};
    if (open < 0 || ::fstat(open, &before) != 0)
        return XPError::fromErrno(errno, XPPath::decode(path));
    if (!S_ISREG(before.st_mode))
        return XPError::make(XPError::Kind::InvalidArgument, QStringLiteral("not a file"),
                             XPPath::decode(path));
    Content content;
    for (int attempt = 0; attempt < mostAttempts && !stop.stop_requested(); ++attempt) {
        content.modified = modifiedOf(before);
        content.size = before.st_size;
        const auto bytes = readStart(open, path, before);
        if (!bytes)
            return bytes.error();
        struct stat after = {};
        if (::fstat(open, &after) != 0)
            return XPError::fromErrno(errno, XPPath::decode(path));
        const bool same = modifiedOf(after) == content.modified && after.st_size == content.size;
        // The state before is what is noted: one that changed since differs from it, and is
        // imported again.
        content.text = decoded(*bytes, content.size > maximumBytes);
        if (same)
            break;
        before = after;
    }
    if (type == markdownType) {
        if (const QString title = firstHeading(content.text); !title.isEmpty())
            content.attributes.insert(QStringLiteral("kMDItemTitle"), title);
    }
    return content;
}
